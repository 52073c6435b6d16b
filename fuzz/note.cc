// SPDX-License-Identifier: GPL-3.0-or-later
// Checks that the note of unfinished work is read only when every byte of it is as it was written,
// and that going on with its works, in a small folder, removes only files that are whole elsewhere.
#include <filesystem>
#include <fstream>

#include "linkbuilder/unfinished.h"
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
  for (auto* path : {&work.from, &work.to, &work.backup}) {
    if (path->find("..") != std::string::npos) return false;
    path->insert(0, folder + '/');
  }
  return true;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const auto folder = small_folder();
  const std::string bytes{reinterpret_cast<const char*>(data), size};
  const auto note = varnholt::linkbuilder::read_note(bytes);
  if (!note) return 0;
  must_hold(varnholt::linkbuilder::note_text(*note) == bytes, "written as it was read");
  must_hold(!varnholt::linkbuilder::read_note(bytes.substr(0, size - 1)),
            "a part of a note is none");
  for (auto work : note->works) {
    if (!bring_into(folder, work)) continue;
    // An adoption is left alone without a line that asks for it.
    const varnholt::store::Definitions lines{
        {.from = work.from, .to = work.to, .op = VH_FILE_OPERATION_TYPE_FOT_Symbolic}};
    const auto next = varnholt::linkbuilder::continuation_of(work, lines, lines);
    must_hold(next.removed.empty() || fs::exists(next.whole_at), "whole elsewhere");
  }
  return 0;
}
