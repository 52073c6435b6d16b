// SPDX-License-Identifier: GPL-3.0-or-later
// Checks that the note of unfinished work is read only when every byte of it is as it was written,
// and that deciding about what it says, in a small folder, removes only what is whole elsewhere.
#include <filesystem>
#include <fstream>

#include "linkbuilder/remedy.h"
#include "scratch/scratch-paths.h"
#include "target.h"

namespace fs = std::filesystem;

namespace {

/** Makes a folder in which the paths of a note lead to something, and returns its name. */
std::string small_folder() {
  auto folder = varnholt::scratch_folder();
  for (const auto* name : {"/s", "/b", "/b.bak_0", "/home"}) {
    fs::create_directory(folder + name);
    std::ofstream{folder + name + "/file"} << "content";
  }
  fs::create_symlink("s", folder + "/u");
  return folder;
}

/** Moves the paths of a work into the folder. Returns false when they lead out of it. */
bool bring_into(const std::string& folder, varnholt::linkbuilder::Work& work) {
  for (auto* path : {&work.from, &work.to, &work.other}) {
    if (path->find("..") != std::string::npos) return false;
    path->insert(0, folder + '/');
  }
  return true;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const auto folder = small_folder();
  const std::string bytes{reinterpret_cast<const char*>(data), size};
  const auto works = varnholt::linkbuilder::read_note(bytes);
  if (!works) return 0;
  must_hold(varnholt::linkbuilder::note_text(*works) == bytes, "written as it was read");
  must_hold(!varnholt::linkbuilder::read_note(bytes.substr(0, size - 1)),
            "a part of a note is none");
  for (auto work : *works) {
    if (!bring_into(folder, work)) continue;
    const auto remedy = varnholt::linkbuilder::remedy_for(work, {});
    must_hold(!remedy || remedy->removed.empty() || fs::exists(remedy->whole_at),
              "whole elsewhere");
  }
  return 0;
}
