#include "helpers/host/FileSystemWatch.h"

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>

#include "support/FewDescriptors.h"
#include "support/RecordingConsole.h"
#include "support/TestData.h"

#ifdef __linux__
#include <sched.h>
#endif

namespace mirvel::host {
namespace {

namespace fs = std::filesystem;
using Changes = std::set<std::string>;

class FileSystemWatchTest : public testing::Test {
 protected:
  fs::path write(const std::string& name) const { return folder.write(name, "something"); }

  const testdata::TemporaryFolder folder;
  testdata::RecordingConsole console;
};

#ifndef MIRVEL_SANITIZED  // the sanitizers need descriptors themselves

TEST_F(FileSystemWatchTest, WithoutAnInstancePathsArePolled) {
  std::unique_ptr<PathWatch> watch;
  {
    const testdata::FewDescriptors none(0);
    watch = makePathWatch(&console);
  }
  EXPECT_TRUE(watch->isPolling());
  const auto file = folder.path() / "file";
  watch->add(file);
  watch->add(folder.path() / "other");
  EXPECT_EQ(watch->take(), Changes());
  write("file");
  EXPECT_EQ(watch->take(), Changes{file});
  watch->remove(file);
  fs::remove(file);
  EXPECT_EQ(watch->take(), Changes());
}

#endif

#ifdef __linux__

TEST_F(FileSystemWatchTest, WhatCantExistIsWaitedForWithoutPolling) {
  const auto watch = makePathWatch(&console);
  fs::create_symlink("loop", folder.path() / "loop");
  watch->add(folder.path() / "a" / "b" / "c");
  watch->add(folder.path() / "loop");
  watch->add(write("file") / "below a file");
  EXPECT_FALSE(watch->isPolling());
  EXPECT_TRUE(console.logged.empty());
}

/// In a process of its own, whose user may have only three watches; how many of its expectations failed.
int failuresWithoutRoom(const testdata::TemporaryFolder& folder, testdata::RecordingConsole& console) {
  constexpr int isSkipped = 77;
  if (::unshare(CLONE_NEWUSER) != 0) return isSkipped;
  if (!(std::ofstream("/proc/sys/user/max_inotify_watches") << "3" << std::flush)) return isSkipped;
  const auto watch = makePathWatch(&console);
  const fs::path first = folder.path() / "first" / "file", second = folder.path() / "second" / "file";
  watch->add(first);
  int failures = watch->isPolling() ? 1 : 0;
  watch->add(second);
  failures += watch->isPolling() && console.logged.size() == 1 ? 0 : 1;
  (void)watch->take();
  std::ofstream(first) << "something else";
  std::ofstream(second) << "something else";
  failures += watch->take() == Changes{first, second} ? 0 : 1;
  failures += watch->take().empty() ? 0 : 1;
  return failures;
}

TEST_F(FileSystemWatchTest, WithoutRoomForMoreWatchesPathsArePolled) {
  write("first/file");
  write("second/file");
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) ::_exit(failuresWithoutRoom(folder, console));
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  if (WEXITSTATUS(status) == 77) GTEST_SKIP() << "user namespaces aren't permitted";
  EXPECT_EQ(WEXITSTATUS(status), 0) << "failed expectations";
}

#endif

}  // namespace
}  // namespace mirvel::host
