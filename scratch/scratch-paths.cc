// SPDX-License-Identifier: GPL-3.0-or-later
// The fixed paths inside a scratch folder.
#include "scratch/scratch-paths.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include <glib.h>

#include "base/paths.h"

namespace varnholt {
namespace {

class ScratchFolder {
 public:
  ScratchFolder() {
    const char* const given = std::getenv("VARNHOLT_SCRATCH");
    m_own = given == nullptr || *given == '\0';
    if (!m_own) {
      path = given;
    } else if (mkdtemp(path.data()) == nullptr) {
      std::abort();
    }
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder() {
    std::error_code ignored;
    if (m_own && getpid() == m_maker) std::filesystem::remove_all(path, ignored);
  }

  std::string path = "/tmp/varnholt-XXXXXX";

 private:
  bool m_own = false;
  pid_t m_maker = getpid();
};

/** Returns a path in the scratch folder as a C string that lives as long as the process. */
const char* in_scratch(const char* path) noexcept {
  return g_intern_string((scratch_folder() + path).c_str());
}

}  // namespace

const std::string& scratch_folder() {
  static const ScratchFolder folder;
  return folder.path;
}

namespace paths {

const char* const profile = in_scratch("/etc/.varnholt.ini");
const char* const unfinished = in_scratch("/etc/.varnholt.unfinished");
const char* const lock = in_scratch("/run/varnholt.lock");
const char* const temporary_profile = in_scratch("/tmp/varnholt.tmp");
const char* const backup_script = in_scratch("/usr/bin/nollacrest.sh");
const char* const catalogues = VARNHOLT_CATALOGUES;

}  // namespace paths
}  // namespace varnholt
