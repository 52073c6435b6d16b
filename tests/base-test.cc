// SPDX-License-Identifier: GPL-3.0-or-later
// Tests of secrets, of signals, and of replacing a file that somebody else writes too.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

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
  // The kernel also reads memory that has been freed.
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
  EXPECT_DEATH(connect([](GObject* /*sender*/, const char* /*property*/) {}), "wrong arguments");
  EXPECT_DEATH(connect([](GObject*, GParamSpec* /*property*/) { return 1; }), "wrong arguments");
}

TEST(ReplaceFile, KeepsWhatSomebodyWritesMeanwhile) {
  const std::string path = varnholt::scratch_folder() + "/file";
  std::signal(SIGXFSZ, SIG_IGN);
  const rlimit no_room{1U << 26U, RLIM_INFINITY};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &no_room), 0);
  for (const std::size_t writers : {0U, 1U, 2U, 3U}) {
    const bool fails = writers == 3;
    std::size_t written = 0;
    const auto write = [&] {
      g_file_set_contents(path.c_str(), ("ax" + std::string(written, 'b')).c_str(), -1, nullptr);
    };
    write();
    const auto error =
        varnholt::store::replace_file(path.c_str(), 0640, [&](std::string_view text) {
          std::string rest{text};
          std::erase(rest, 'x');
          // Until the replacement anybody may write the file.
          if (written++ < writers) write();
          return fails && written > 1 ? std::string(no_room.rlim_cur + 1, 'b') : rest;
        });
    EXPECT_EQ(error != nullptr, fails);
    EXPECT_EQ(varnholt::read_file(path.c_str()).text(),
              (fails ? "ax" : "a") + std::string(fails ? 2 : writers, 'b'));
  }
  // A folder that has taken the place of the file is not replaced.
  EXPECT_TRUE(varnholt::store::replace_file(path.c_str(), 0640, [&](std::string_view text) {
    std::filesystem::remove(path);
    std::filesystem::create_directory(path);
    return std::string{text};
  }));
  std::filesystem::remove(path);
  EXPECT_TRUE(std::filesystem::is_empty(varnholt::scratch_folder())) << "files are left";
}
