// SPDX-License-Identifier: GPL-3.0-or-later
// The least that a start can cost: a program with the libraries of the link builder that ends at
// once.
int main(void) {
  return 0;
}
