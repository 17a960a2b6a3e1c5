#include "core/propertylist/OldStyleText.h"

#include <gtest/gtest.h>

#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"
#include "support/HostileFiles.h"

namespace mirvel::propertylist {
namespace {

Result<std::string> textOf(const std::string& element, std::size_t maximumSize = 1000) {
  const auto document = read("<plist>" + element + "</plist>");
  if (!document) return document.error();
  return oldStyleText(document->root(), maximumSize);
}

TEST(OldStyleTextTest, EachValueIsOnALineOfItsOwn) {
  const std::vector<std::pair<std::string, std::string>> rows{
      {"<string>a \"b\" \\ c\nd\te</string>", "\"a \\\"b\\\" \\\\ c\\nd\te\";\n"},
      {"<string></string>", "\"\";\n"},
      {"<integer>-12</integer>", "-12;\n"},
      {"<integer>18446744073709551615</integer>", "18446744073709551615;\n"},
      {"<real>1.5</real>", "1.5;\n"},
      {"<true/>", "true;\n"},
      {"<false/>", "false;\n"},
      {"<date>2004-10-26T10:33:33Z</date>", "2004-10-26T10:33:33Z;\n"},
      {"<data>AP8Q</data>", "<00ff10>;\n"},
      {"<dict><key>CF$UID</key><integer>7</integer></dict>", "7;\n"},
      {"<array/>", "(\n);\n"},
      {"<dict/>", "{\n};\n"},
      {"<array><array><true/></array><dict/></array>", "(\n\t(\n\t\ttrue;\n\t);\n\t{\n\t};\n);\n"},
      {"<dict><key>z</key><true/><key>a\n\"</key><array/></dict>",
       "{\n\t\"z\" = true;\n\t\"a\\n\\\"\" = (\n\t);\n};\n"},
  };
  for (const auto& [element, text] : rows) {
    const auto written = textOf(element);
    ASSERT_TRUE(written) << element << ": " << written.error().text();
    EXPECT_EQ(*written, text);
  }
}

TEST(OldStyleTextTest, SetsAndUidsAreWrittenToo) {
  const auto document = read(writeBinary(Array{Uid{7}, Set{{"a"}}}));
  ASSERT_TRUE(document);
  const auto text = oldStyleText(document->root());
  ASSERT_TRUE(text);
  EXPECT_EQ(*text, "(\n\t7;\n\t(\n\t\t\"a\";\n\t);\n);\n");
}

TEST(OldStyleTextTest, TextUpToTheLimitIsWritten) {
  const auto nested = [](std::size_t depth, const std::string& content) {
    return hostile::repeated("<array>", depth) + content + hostile::repeated("</array>", depth);
  };
  const struct {
    std::string element;
    std::size_t limit;
    bool isWritten;
  } rows[] = {
      {"<array><string>abc</string></array>", 13, true},  // (\n\t"abc";\n);\n
      {"<array><string>abc</string></array>", 12, false},
      {nested(Limits::depth, ""), 1U << 20U, true},
      {nested(Limits::depth - 1, hostile::repeated("<true/>", 100000)), 1U << 20U, false},  // indentation is too long
  };
  for (const auto& [element, limit, isWritten] : rows) {
    const auto text = textOf(element, limit);
    ASSERT_EQ(static_cast<bool>(text), isWritten) << element.substr(0, 40);
    if (!text) {
      EXPECT_EQ(text.error().code, Error::Code::LimitExceeded);
    }
  }
}

}  // namespace
}  // namespace mirvel::propertylist
