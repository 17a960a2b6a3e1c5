#include "core/process/Commands.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "support/TestData.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;

TEST(CommandsTest, ToolsAreFoundInTheSearchPathOrKeepTheirDefaultPath) {
  for (const char* tool : {"osascript", "automator", "swift", "open"}) {
    if (fs::exists(fs::path("/usr/bin") / tool)) GTEST_SKIP() << "this machine has " << tool;
  }
  const testdata::TemporaryFolder folder;
  for (const char* tool : {"second/osascript", "second/xdg-open", "first/xdg-open"}) {
    ASSERT_EQ(::chmod(folder.write(tool, "#!/bin/sh\n").c_str(), 0755), 0);
  }
  ASSERT_EQ(::chmod(folder.write("first/osascript", "not a program").c_str(), 0644), 0);
  fs::create_directories(folder.path() / "first/automator");
  const fs::path first = folder.path() / "first", second = folder.path() / "second";

  const Commands commands = Commands::forThisMachine(
      {{"PATH", "::" + fs::relative(second).string() + ":" + first.string() + ":" + second.string()}});
  EXPECT_EQ(commands.osascript, second / "osascript");
  EXPECT_EQ(commands.open, first / "xdg-open");
  EXPECT_EQ(commands.automator, "/usr/bin/automator");
  EXPECT_EQ(commands.swift, "/usr/bin/swift");
  EXPECT_EQ(commands.shell, "/bin/sh");
}

}  // namespace
}  // namespace mirvel
