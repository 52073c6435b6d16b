// SPDX-License-Identifier: GPL-3.0-or-later
// Secrets, signals, and a file that somebody else writes too.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "base/descriptor.h"
#include "base/file.h"
#include "base/secret.h"
#include "base/signal.h"
#include "scratch/scratch-paths.h"
#include "store/replace-file.h"

TEST(Secret, LeavesNothingInTheMemory) {
  const std::string letters(64, 'p');
  varnholt::SecretPtr secret{g_strdup(letters.c_str())};
  const auto address = reinterpret_cast<off_t>(secret.get());
  secret.reset();
  // The kernel reads also what belongs to nobody any more.
  const varnholt::Descriptor memory{open("/proc/self/mem", O_RDONLY | O_CLOEXEC)};
  std::string left(letters.size(), '\0');
  ASSERT_EQ(pread(memory.number(), left.data(), left.size(), address), 64);
  EXPECT_EQ(left.find("ppp"), std::string::npos) << left;
}

TEST(Signal, EndsTheProgramForAHandlerThatDoesNotFit) {
  const auto object = varnholt::take_object(g_object_new(G_TYPE_OBJECT, nullptr));
  const auto connect = [&object](auto handler) {
    varnholt::connect(object.get(), "notify", object.get(), handler);
  };
  connect([](GObject* /*sender*/, GParamSpec* /*property*/) {});
  EXPECT_DEATH(connect([](GObject* /*sender*/) {}), "wrong arguments");
  EXPECT_DEATH(connect([](GObject* /*sender*/, guint /*property*/) {}), "wrong arguments");
  EXPECT_DEATH(connect([](GObject* /*sender*/, const char* /*property*/) {}), "wrong arguments");
  EXPECT_DEATH(connect([](GObject*, GParamSpec* /*property*/) { return 1; }), "wrong arguments");
}

TEST(ReplaceFile, KeepsWhatSomebodyWritesMeanwhile) {
  const std::string path = varnholt::scratch_folder() + "/file";
  for (const std::size_t writers : {0U, 1U, 2U, 3U}) {
    std::size_t written = 0;
    const auto write = [&] {
      g_file_set_contents(path.c_str(), ("ax" + std::string(written, 'b')).c_str(), -1, nullptr);
    };
    write();
    const auto error = varnholt::replace_file(path.c_str(), 0640, [&](std::string_view text) {
      std::string rest{text};
      std::erase(rest, 'x');
      // From here to the replacement the file is anybody's.
      if (written++ < writers) write();
      return rest;
    });
    EXPECT_FALSE(error);
    EXPECT_EQ(varnholt::read_file(path.c_str()).text(), 'a' + std::string(writers, 'b'));
    struct stat status {};
    EXPECT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640);
  }
  // What is no file any more stays so.
  EXPECT_TRUE(varnholt::replace_file(path.c_str(), 0640, [&](std::string_view text) {
    std::filesystem::remove(path);
    std::filesystem::create_directory(path);
    return std::string{text};
  }));
  std::filesystem::remove(path);
  EXPECT_TRUE(std::filesystem::is_empty(varnholt::scratch_folder())) << "files are left";
}
