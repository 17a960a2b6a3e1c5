#include "core/files/DisplayPath.h"

#include <gtest/gtest.h>

namespace mirvel {
namespace {

TEST(DisplayPathTest, APathIsShortenedByTheHomeFolderItLiesIn) {
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
