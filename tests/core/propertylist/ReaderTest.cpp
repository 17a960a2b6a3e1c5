#include "core/propertylist/Reader.h"

#include <gtest/gtest.h>

#include "core/propertylist/Encoding.h"
#include "core/propertylist/Writer.h"
#include "support/TestData.h"

namespace mirvel::propertylist {
namespace {

TEST(ReaderTest, AFileIsReadAsADictionaryOrRejectedWithItsPath) {
  const testdata::TemporaryFolder folder;
  const std::string list = *writeXml(Dictionary{{"a", 1}});
  const struct {
    const char* name;
    std::string bytes;
    std::optional<Error::Code> failure;
  } rows[] = {
      {"xml", list, std::nullopt},
      {"binary", writeBinary(Dictionary{{"a", 1}}), std::nullopt},
      {"array", *writeXml(Array{1}), Error::Code::WrongType},
      {"damaged", list.substr(0, list.size() / 2), Error::Code::Malformed},
      {"large", list + std::string(1000, ' '), Error::Code::LimitExceeded},
  };
  for (const auto& row : rows) {
    const auto file = folder.write(row.name, row.bytes);
    const auto read = readDictionary(file, 500);
    ASSERT_EQ(static_cast<bool>(read), !row.failure) << row.name;
    if (read) {
      EXPECT_EQ(*read, (Dictionary{{"a", 1}})) << row.name;
    } else {
      EXPECT_EQ(read.error().code, *row.failure) << row.name;
      EXPECT_EQ(read.error().file, file) << row.name;
    }
  }
  EXPECT_EQ(readDictionary(folder.path() / "none", 500).error().code, Error::Code::NotFound);
}

TEST(ReaderTest, OnlyXmlCommentsAreComments) {
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
