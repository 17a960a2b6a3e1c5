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
  const std::string list = "<array><string>abc</string></array>";  // (\n\t"abc";\n);\n
  EXPECT_TRUE(textOf(list, 13));
  const auto refused = textOf(list, 12);
  ASSERT_FALSE(refused);
  EXPECT_EQ(refused.error().code, Error::Code::LimitExceeded);
}

TEST(OldStyleTextTest, TheDeepestDocumentIsWrittenUnlessItsIndentationIsTooLong) {
  const std::size_t depth = Limits::depth;
  EXPECT_TRUE(textOf(hostile::repeated("<array>", depth) + hostile::repeated("</array>", depth), 1U << 20U));
  const std::string many = hostile::repeated("<array>", depth - 1) + hostile::repeated("<true/>", 100000);
  const auto refused = textOf(many + hostile::repeated("</array>", depth - 1), 1U << 20U);
  ASSERT_FALSE(refused);
  EXPECT_EQ(refused.error().code, Error::Code::LimitExceeded);
}

}  // namespace
}  // namespace mirvel::propertylist
