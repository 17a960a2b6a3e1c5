#include "help/Markdown.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>

#include "support/TestData.h"

namespace mirvel::help {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

std::string html(std::string_view markdown) {
  const auto guide = readGuide(markdown);
  return guide ? guide->html : "error: " + guide.error().text();
}

TEST(MarkdownTest, EachConstructOfTheGuideBecomesHtml) {
  const std::pair<const char*, const char*> rows[] = {
      {"one\ntwo\n\nthree", "<p>one\ntwo</p>\n<p>three</p>\n"},
      {"# Find a “Key”, now", "<h1 id=\"find-a-key-now\">Find a “Key”, now</h1>\n"},
      {"<a id=\"x\"></a>\n### Y", "<h3 id=\"x\">Y</h3>\n"},
      {"- a\n  b\n- c\n", "<ul>\n<li><p>a\nb</p>\n</li>\n<li><p>c</p>\n</li>\n</ul>\n"},
      {"- a\n\n  ![b](c.png)\n- d",
       "<ul>\n<li><p>a</p>\n<p><img src=\"c.png\" alt=\"b\"></p>\n</li>\n<li><p>d</p>\n</li>\n</ul>\n"},
      {"- a\n  - b", "<ul>\n<li><p>a</p>\n<ul>\n<li><p>b</p>\n</li>\n</ul>\n</li>\n</ul>\n"},
      {"text\n- a\ntext", "<p>text</p>\n<ul>\n<li><p>a</p>\n</li>\n</ul>\n<p>text</p>\n"},
      {"**1. Name.** *A* & <b>", "<p><strong>1. Name.</strong> <em>A</em> &amp; &lt;b&gt;</p>\n"},
      {"`a*b <c>`!", "<p><code>a*b &lt;c&gt;</code>!</p>\n"},
      {"**[a `b`](https://x/?a&b)**", "<p><strong><a href=\"https://x/?a&amp;b\">a <code>b</code></a></strong></p>\n"},
      {"# A\nsee [A](#a)", "<h1 id=\"a\">A</h1>\n<p>see <a href=\"#a\">A</a></p>\n"},
      {"", ""},
  };
  for (const auto& [markdown, expected] : rows) EXPECT_EQ(html(markdown), expected) << markdown;
}

TEST(MarkdownTest, AFaultIsReportedWithItsLine) {
  const std::pair<const char*, std::size_t> rows[] = {
      {"ok\n\n**bold", 3}, {"`code", 1},         {"*a", 1},          {"ok\n\n[a](b", 3}, {"[a]", 1}, {"# A\n\n# A", 3},
      {"a\n\n[b](#c)", 3}, {"| a | b |", 1},     {"```\nx\n```", 1}, {"a\n<table>", 2},  {"#", 1},   {"#x", 1},
      {"<a id=\"x\">", 1}, {"a\n\n    code", 3},
  };
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
