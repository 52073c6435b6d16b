// SPDX-License-Identifier: GPL-3.0-or-later
// Gives each test a machine of its own: the program really removes and moves files, so it runs with
// the real commands in its own root folder, in its own mount namespace.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

/** The standard output of a command, and its wait status. */
struct CommandResult {
  std::string output;
  int status = -1;
};
CommandResult result_of(std::vector<const char*> words);

/** Returns the standard output of a command that must not fail. */
std::string output_of(std::vector<const char*> words);

/**
 * Enters new namespaces (see clone(2)) and makes an ordinary user root of one of them. Returns
 * false, with the reason in errno, where the machine allows none.
 */
bool enter_namespaces(int kinds);

/** Returns whether this process can give files to that user: some namespaces map only root. */
bool knows_user(uid_t user);

/** Gives each test an empty machine of its own below `root`. */
class PrivateRoot : public testing::Test {
 protected:
  /** Creates an empty root, or skips the test where the machine allows no namespaces. */
  void SetUp() override;
  void TearDown() override;

  /** Runs a command line in the root and returns its output and its errors. */
  std::string shell(const std::string& command) const;

  /** Makes this process enter the root for good; its commands then find their programs there. */
  void enter() const;

  /** These write and read one file below the root, byte for byte; a missing one reads as empty. */
  void write(const std::string& path, const std::string& text) const;
  std::string read(const std::string& path) const;

  /**
   * Creates what each line of `listing` names: "path: content" is a file, "path -> content" a link,
   * "path|" a FIFO, "path/" a folder. tree() returns such a listing, sorted, without the profile
   * and without folders that are not empty.
   */
  void plant(const std::string& listing) const;
  std::string tree() const;

  std::filesystem::path root;
};

/** The path of the installed program's profile. */
constexpr auto* profile = "/etc/.varnholt.ini";
