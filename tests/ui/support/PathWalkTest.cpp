#include "ui/support/PathWalk.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "support/TestData.h"

namespace mirvel::ui {

namespace fs = std::filesystem;

TEST(PathWalk, ResolvesPathsLikeTheKernel) {
  const testdata::TemporaryFolder temporary;
  const fs::path root = fs::canonical(temporary.path());
  fs::create_directories(root / "real/inner/deep");
  fs::create_directory_symlink("real/inner", root / "relative");
  fs::create_directory_symlink(root / "real", root / "absolute");
  fs::create_directory_symlink("loop", root / "loop");
  fs::create_directory_symlink("nowhere", root / "dangling");
  temporary.write("file", "");

  const struct {
    const char* path;
    std::optional<const char*> end;
  } rows[] = {
      {"real/inner", "real/inner"},     {"real//inner/./", "real/inner"},    {"relative/deep", "real/inner/deep"},
      {"absolute/inner", "real/inner"}, {"relative/../inner", "real/inner"}, {"loop", std::nullopt},
      {"dangling", std::nullopt},       {"missing/inner", std::nullopt},     {"file", std::nullopt},
  };
  for (const auto& row : rows) {
    const auto end = walkTo(root / row.path, [](const fs::path&, const std::string&) {});
    EXPECT_EQ(end, row.end ? std::optional(root / *row.end) : std::nullopt) << row.path;
  }
}

TEST(PathWalk, VisitsTheFoldersOnBothSidesOfALink) {
  const testdata::TemporaryFolder temporary;
  const fs::path root = fs::canonical(temporary.path());
  fs::create_directories(root / "real/inner");
  fs::create_directory_symlink(root / "real", root / "link");

  std::vector<fs::path> entries;
  (void)walkTo(root / "link/inner",
               [&](const fs::path& folder, const std::string& name) { entries.push_back(folder / name); });

  for (const char* entry : {"link", "real", "real/inner"}) {
    EXPECT_NE(std::find(entries.begin(), entries.end(), root / entry), entries.end()) << entry;
  }
}

}  // namespace mirvel::ui
