// SPDX-License-Identifier: GPL-3.0-or-later
// A machine of the tests' own: the program removes and moves what it is told, so it runs in a root
// folder of its own, in a mount namespace of its own, with the real commands.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

/** Runs a command and returns what it printed to standard output. */
std::string output_of(std::vector<const char*> words);

/**
 * Enters new namespaces (see clone(2)) and makes an ordinary user root of one of them; false where
 * the machine allows none.
 */
bool enter_namespaces(int kinds);

/** Gives each test an empty machine of its own below `root`. */
class PrivateRoot : public testing::Test {
 protected:
  /** Makes an empty root, or skips the test where the machine allows no namespaces. */
  void SetUp() override;
  void TearDown() override;

  /** Runs a command line in the root and returns what it printed, both streams in one pipe. */
  std::string shell(const std::string& command) const;

  /** One file below the root, byte for byte; a missing one reads as empty. */
  void write(const std::string& path, const std::string& text) const;
  std::string read(const std::string& path) const;

  /**
   * Makes what `listing` names, a line each: "path: content" a file, "path -> content" a link,
   * "path|" a FIFO, "path/" a folder. tree() lists in the same words, sorted, folders only when
   * empty, without the profile.
   */
  void plant(const std::string& listing) const;
  std::string tree() const;

  std::filesystem::path root;
};

/** Where the installed program has its profile. */
constexpr auto* profile = "/etc/.varnholt.ini";
