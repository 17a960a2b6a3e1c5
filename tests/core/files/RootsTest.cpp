#include "core/files/Roots.h"

#include <gtest/gtest.h>

namespace mirvel {
namespace {

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

}  // namespace
}  // namespace mirvel
