#include "core/files/URL.h"

#include <gtest/gtest.h>

#include "core/files/Roots.h"

namespace mirvel {
namespace {

TEST(URLTest, PathsAreEqualAfterNormalization) {
  const struct {
    const char* a;
    const char* b;
    bool isEqual;
  } table[] = {
      {"/a/b", "/a/b", true},      {"/a/b", "/a/b/", true},  {"/a/b", "/a//b", true},  {"/a/b", "/a/./b/.", true},
      {"/a/b", "/a/c/../b", true}, {"/a/.b", "/a/.b", true}, {"/a/.b", "/a/b", false}, {"/a/b", "/a/B", false},
      {"/a/b", "/a", false},       {"/", "//", true},        {"/", "/..", true},       {"/a\xFF", "/a\xFF", true},
      {"/a\xFF", "/a\xFE", false}, {"./a", "a", true},
  };
  for (const auto& row : table) {
    EXPECT_EQ(URL::file(row.a).equalTo(URL::file(row.b)), row.isEqual) << row.a << " " << row.b;
    EXPECT_EQ(URL::file(row.b).equalTo(URL::file(row.a)), row.isEqual) << row.b << " " << row.a;
  }
  EXPECT_TRUE(URL::address("x").equalTo(URL::address("x")));
  EXPECT_FALSE(URL::address("x/").equalTo(URL::address("x")));
  EXPECT_FALSE(URL::address("/x").equalTo(URL::file("/x")));
}

TEST(URLTest, PathsInTheHomeFolderAreShortened) {
  const struct {
    const char* path;
    const char* home;
    const char* shown;
  } table[] = {
      {"/home/a/b c", "/home/a", "~/b c"},         {"/home/a", "/home/a/", "~"},   {"/home/ab", "/home/a", "/home/ab"},
      {"/x /home/a/b", "/home/a", "/x /home/a/b"}, {"/home/a/b", "", "/home/a/b"}, {"/home/a/b", "/", "/home/a/b"},
  };
  for (const auto& row : table) EXPECT_EQ(localizedDisplayPath(row.path, row.home), row.shown) << row.path;
}

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
