#include "core/files/URL.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace mirvel
