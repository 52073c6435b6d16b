// SPDX-License-Identifier: GPL-3.0-or-later
// What the rest stands on: secrets, signals, and a file that two programs write.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "base/descriptor.h"
#include "base/file.h"
#include "base/secret.h"
#include "base/signal.h"
#include "scratch/scratch-paths.h"
#include "store/replace-file.h"

using varnholt::take_object;

TEST(Secret, LeavesNothingInTheMemory) {
  const std::string password = "a password that is longer than what the allocator writes";
  varnholt::SecretPtr secret{g_strdup(password.c_str())};
  const auto address = reinterpret_cast<off_t>(secret.get());
  secret.reset();
  // The kernel reads what belongs to nobody any more.
  const varnholt::Descriptor memory{open("/proc/self/mem", O_RDONLY | O_CLOEXEC)};
  std::string left(password.size(), '\0');
  ASSERT_EQ(pread(memory.number(), left.data(), left.size(), address), left.size());
  for (std::size_t at = 0; at < left.size(); ++at) {
    EXPECT_FALSE(left.compare(at, 4, password, at, 4) == 0 && at + 4 < left.size()) << left;
  }
}

TEST(Signal, EndsTheProgramForAHandlerThatDoesNotFit) {
  const auto object = take_object(g_object_new(G_TYPE_OBJECT, nullptr));
  const auto connect = [&object](auto handler) {
    varnholt::connect(object.get(), "notify", object.get(), handler);
  };
  connect([](GObject* /*sender*/, GParamSpec* /*property*/) {});
  const auto* const told = "wrong arguments for \"notify\"";
  EXPECT_DEATH(connect([](GObject* /*sender*/) {}), told);
  EXPECT_DEATH(connect([](GObject* /*sender*/, int /*property*/) {}), told);
  EXPECT_DEATH(connect([](GObject* /*sender*/, const char* /*property*/) {}), told);
  EXPECT_DEATH(connect([](GObject* /*sender*/, GParamSpec* /*property*/) { return 1; }), told);
}

class ReplaceFile : public testing::Test {
 protected:
  void write(const std::string& text) {
    ASSERT_TRUE(g_file_set_contents(path.c_str(), text.c_str(), -1, nullptr));
  }

  static std::string without_x(std::string_view text) {
    std::string rest{text};
    std::erase(rest, 'x');
    return rest;
  }

  const std::string path = varnholt::scratch_folder() + "/file";
};

TEST_F(ReplaceFile, LosesNothingThatSomebodyWritesMeanwhile) {
  for (const std::size_t writers : {0U, 1U, 2U, 3U}) {
    write("ax");
    const auto mask = umask(077);
    std::size_t written = 0;
    const auto error = varnholt::replace_file(path.c_str(), 0644, [&](std::string_view text) {
      auto rest = without_x(text);
      // From here to the replacement the file is anybody's.
      if (written < writers) write("ax" + std::string(++written, 'b'));
      return rest;
    });
    umask(mask);
    EXPECT_FALSE(error);
    EXPECT_EQ(varnholt::read_file(path.c_str()).text(), "a" + std::string(writers, 'b'));
    struct stat status {};
    EXPECT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0644);
  }
  const auto left = std::filesystem::directory_iterator{varnholt::scratch_folder()};
  EXPECT_EQ(std::distance(begin(left), end(left)), 1) << "files are left beside it";
}

TEST_F(ReplaceFile, LeavesAloneWhatIsGoneOrNoFile) {
  for (const bool folder : {false, true}) {
    write("x");
    const auto error = varnholt::replace_file(path.c_str(), 0644, [&](std::string_view text) {
      std::filesystem::remove(path);
      if (folder) std::filesystem::create_directory(path);
      return without_x(text);
    });
    ASSERT_TRUE(folder || error);
    EXPECT_EQ(std::filesystem::exists(path), folder);
    EXPECT_EQ(std::filesystem::is_directory(path), folder);
    std::filesystem::remove(path);
  }
}
