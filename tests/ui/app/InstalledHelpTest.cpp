#include <gmock/gmock.h>

#include <filesystem>

#include "support/TestData.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

TEST(InstalledHelpTest, EachSectionHasAPageThatLeadsToIt) {
  const fs::path folder = MIRVEL_HELP;
  const std::string index = testdata::bytes(folder / "index.html");
  int sections = 0;
  for (auto at = index.find(" id=\""); at != std::string::npos; at = index.find(" id=\"", at + 1)) {
    const auto begin = at + 5;
    const std::string id = index.substr(begin, index.find('"', begin) - begin);
    EXPECT_THAT(testdata::bytes(folder / (id + ".html")), HasSubstr("url=index.html#" + id + "\""));
    const bool isInContents = index.find("href=\"#" + id + "\"") != std::string::npos;
    EXPECT_EQ(isInContents, sections > 0) << id << ": the title of the page isn't a section";
    ++sections;
  }
  EXPECT_GT(sections, 8);
}

TEST(InstalledHelpTest, NothingNeedsANetwork) {
  const fs::path folder = MIRVEL_HELP;
  const std::string index = testdata::bytes(folder / "index.html");
  for (const char* attribute : {"src=\"", "<link", "@import", "url(", "<script"}) {
    for (auto at = index.find(attribute); at != std::string::npos; at = index.find(attribute, at + 1)) {
      ASSERT_STREQ(attribute, "src=\"");
      const auto begin = at + 5;
      EXPECT_TRUE(fs::is_regular_file(folder / index.substr(begin, index.find('"', begin) - begin)));
    }
  }
}

}  // namespace
}  // namespace mirvel
