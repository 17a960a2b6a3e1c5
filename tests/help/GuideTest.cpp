#include "help/Guide.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>

#include "support/TestData.h"

namespace mirvel::help {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

TEST(GuideTest, HeadingsAndImagesAreFound) {
  const auto guide = readGuide(
      "# Find a “Key” & `go`\n\nSee [below](#x) and [there](https://x/).\n\n- a\n\n  ![b](images/c.png)\n\n"
      "<a id=\"x\"></a>\n## The *next*\n");
  ASSERT_TRUE(guide) << guide.error().text();
  ASSERT_EQ(guide->headings.size(), 2U);
  EXPECT_EQ(guide->headings[0].id, "find-a-key--go");
  EXPECT_EQ(guide->headings[0].title, "Find a “Key” & go");
  EXPECT_EQ(guide->headings[0].level, 1);
  EXPECT_EQ(guide->headings[1].id, "x");
  EXPECT_EQ(guide->headings[1].title, "The next");
  EXPECT_EQ(guide->images, std::vector<std::string>{"images/c.png"});
  EXPECT_THAT(guide->html, testing::StartsWith("<a id=\"find-a-key--go\"></a>\n<h1>"));
  EXPECT_THAT(pageOf(*guide), HasSubstr("<a href=\"#x\">The next</a>"));
  EXPECT_THAT(pageLeadingTo({2, "x", "<b>"}), HasSubstr("<title>&#60;b&#62;</title>"));
}

TEST(GuideTest, AMissingOrRepeatedSectionIsReportedWithItsLine) {
  const std::pair<const char*, std::size_t> rows[] = {
      {"# A\n\n# A", 3}, {"a\n\n[b](#c)", 3}, {"# A\n\n<a id=\"a\"></a>\n## B", 4}};
  for (const auto& [markdown, line] : rows) {
    const auto guide = readGuide(markdown);
    ASSERT_FALSE(guide) << markdown;
    EXPECT_EQ(guide.error().code, Error::Code::Malformed) << markdown;
    EXPECT_EQ(guide.error().line, line) << markdown;
  }
}

/// The pages that are installed.
TEST(HelpPagesTest, EachSectionHasAPageThatLeadsToIt) {
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

TEST(HelpPagesTest, NothingNeedsANetwork) {
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
}  // namespace mirvel::help
