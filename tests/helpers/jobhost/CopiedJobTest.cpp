#include <filesystem>

#include "helpers/host/HostFixture.h"

namespace mirvel::host {
namespace {

namespace fs = std::filesystem;

using CopiedJobTest = HostFixture;

TEST_F(CopiedJobTest, UnloadingACopyLeavesTheOriginalAndAMovedJobIsTheSame) {
  const fs::path original = job("org.example.a", "exit 0");
  const fs::path copy = original.parent_path() / "copy.plist", moved = original.parent_path() / "moved.plist";
  load(original);
  fs::copy_file(original, copy);
  EXPECT_TRUE(embedded.unload(copy, "org.example.a"));
  EXPECT_EQ(status().size(), 1U);
  fs::remove(copy);
  fs::create_symlink(original, copy);  // another way to the same file
  EXPECT_TRUE(embedded.unload(copy, "org.example.a"));
  EXPECT_EQ(status().size(), 0U);
  load(original);
  fs::rename(original, moved);
  EXPECT_TRUE(embedded.unload(moved, "org.example.a"));
  EXPECT_EQ(status().size(), 0U);
}

TEST_F(CopiedJobTest, AnEmptyLabelIsRefused) {
  EXPECT_FALSE(embedded.unload("/a.plist", ""));
  EXPECT_FALSE(embedded.waitForEnd("", seconds(0)));
}

}  // namespace
}  // namespace mirvel::host
