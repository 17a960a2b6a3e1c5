#include "core/files/Roots.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "core/process/Commands.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;

TEST(RootsTest, XdgFoldersCountOnlyIfAbsolute) {
  const Roots plain = Roots::ofLinux("/home/x", {{"XDG_CONFIG_HOME", "relative"}, {"XDG_DATA_HOME", ""}});
  EXPECT_EQ(plain.userLibrary, "/home/x/.config/mirvel");
  EXPECT_EQ(plain.applicationSupport, "/home/x/.local/share/mirvel");
  EXPECT_EQ(plain.defaultsFile, "/home/x/.config/mirvel/preferences.plist");
  const Roots moved = Roots::ofLinux("/home/x", {{"XDG_CONFIG_HOME", "/c"}, {"XDG_DATA_HOME", "/d"}});
  EXPECT_EQ(moved.userLibrary, "/c/mirvel");
  EXPECT_EQ(moved.applicationSupport, "/d/mirvel");
  EXPECT_EQ(moved.defaultsFile, "/c/mirvel/preferences.plist");
}

TEST(RootsTest, HomeIsAbsoluteWhateverTheEnvironmentSays) {
  for (const Environment& environment : {Environment{}, Environment{{"HOME", "x"}}, Environment{{"HOME", ""}}}) {
    EXPECT_TRUE(Roots::forThisMachine(environment).home.is_absolute());
  }
}

TEST(CommandsTest, ToolsAreFoundInTheSearchPathOrKeepTheirUsualPlace) {
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

  const Commands commands =
      Commands::forThisMachine({{"PATH", "::relative:" + first.string() + ":" + second.string()}});
  EXPECT_EQ(commands.osascript, second / "osascript");
  EXPECT_EQ(commands.open, first / "xdg-open");
  EXPECT_EQ(commands.automator, "/usr/bin/automator");
  EXPECT_EQ(commands.swift, "/usr/bin/swift");
  EXPECT_EQ(commands.shell, "/bin/sh");
}

}  // namespace
}  // namespace mirvel
