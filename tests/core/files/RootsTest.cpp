#include "core/files/Roots.h"

#include <gtest/gtest.h>

namespace mirvel {
namespace {

TEST(RootsTest, RelativePathsInXdgVariablesAreIgnored) {
  const struct {
    Environment environment;
    const char *config, *support, *autostart;
  } rows[] = {
      {{{"XDG_CONFIG_HOME", "relative"}, {"XDG_DATA_HOME", ""}, {"XDG_CONFIG_DIRS", "x::"}},
       "/home/x/.config/mirvel",
       "/home/x/.local/share/mirvel",
       "/etc/xdg/autostart"},
      {{{"XDG_CONFIG_HOME", "/c"}, {"XDG_DATA_HOME", "/d"}, {"XDG_CONFIG_DIRS", "y:/e"}},
       "/c/mirvel",
       "/d/mirvel",
       "/e/autostart"},
  };
  for (const auto& row : rows) {
    const Roots roots = Roots::ofLinux("/home/x", row.environment);
    EXPECT_EQ(roots.userLibrary, row.config);
    EXPECT_EQ(roots.defaultsFile, std::filesystem::path(row.config) / "preferences.plist");
    EXPECT_EQ(roots.applicationSupport, row.support);
    EXPECT_EQ(roots.installedAutostart, std::vector<std::filesystem::path>{row.autostart});
  }
}

TEST(RootsTest, HomeIsAbsoluteWhateverTheEnvironmentSays) {
  for (const Environment& environment : {Environment{}, Environment{{"HOME", "x"}}, Environment{{"HOME", ""}}}) {
    EXPECT_TRUE(Roots::forThisMachine(environment).home.is_absolute());
  }
}

}  // namespace
}  // namespace mirvel
