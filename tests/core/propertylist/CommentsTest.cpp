#include "core/propertylist/Comments.h"

#include <gtest/gtest.h>

#include "core/propertylist/Encoding.h"
#include "core/propertylist/Writer.h"

namespace mirvel::propertylist {
namespace {

TEST(CommentsTest, OnlyCommentsCount) {
  const std::pair<std::string, bool> table[] = {
      {"", false},
      {"<plist><dict/></plist>", false},
      {"<!-- of the head --><plist><dict/></plist>", true},
      {"<plist><dict><!----></dict></plist>", true},
      {"<plist><dict/></plist>\n<!-- at the end -->", true},
      {"<plist><string>&lt;!-- no --&gt; <x</string></plist>", false},
      {"<plist><string><![CDATA[<!-- no -->]]></string></plist>", false},
      {"<plist><string><![CDATA[<!-- no -->]]><!-- yes --></string></plist>", true},
      {"<plist><string><![CDATA[<!-- never closed", false},
      {"<?xml version=\"1.0\"?><?note <!-- no --> ?><plist><true/></plist>", false},
      {"<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\"><plist><true/></plist>", false},
      {"\xFE\xFF" + utf16BigEndian("<plist><!-- x --><true/></plist>"), true},
      {writeBinary("<!-- a text -->"), false},
  };
  for (const auto& [bytes, expected] : table) EXPECT_EQ(hasComments(bytes), expected) << bytes;
}

}  // namespace
}  // namespace mirvel::propertylist
