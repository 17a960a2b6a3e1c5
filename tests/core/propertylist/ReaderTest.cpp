#include "core/propertylist/Reader.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "core/propertylist/Encoding.h"
#include "core/propertylist/Value.h"
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

TEST(DictionaryTest, KeysAreSortedByUtf16CodeUnit) {
  // U+1F600 is the pair D83D DE00 in UTF-16, so it comes before U+FB01, though its UTF-8 bytes are greater.
  const Dictionary dictionary{{"\uFB01", 1}, {"\U0001F600", 2}, {"b", 3}, {"B", 4}, {"ba", 5}, {"\uD7FF", 6}, {"", 7}};
  std::vector<std::string> keys;
  for (const auto& entry : dictionary) keys.push_back(entry.key);
  EXPECT_EQ(keys, (std::vector<std::string>{"", "B", "b", "ba", "\uD7FF", "\U0001F600", "\uFB01"}));
}

TEST(DictionaryTest, SetReplacesAndRemoveReports) {
  Dictionary dictionary{{"a", 1}, {"a", 2}};
  EXPECT_EQ(dictionary.size(), 1U);
  EXPECT_EQ(*dictionary.find("a"), Value(2));
  dictionary.set("a", "three");
  EXPECT_EQ(*dictionary.find("a"), Value("three"));
  EXPECT_EQ(dictionary.find("A"), nullptr);
  EXPECT_TRUE(dictionary.remove("a"));
  EXPECT_FALSE(dictionary.remove("a"));
}

TEST(ValueTest, ValuesOfDifferentTypesAreNeverEqual) {
  EXPECT_NE(Value(1), Value(1.0));
  EXPECT_NE(Value(1), Value(true));
  EXPECT_NE(Value("x"), Value(Data{"x"}));
  EXPECT_NE(Integer::fromUnsigned(std::numeric_limits<std::uint64_t>::max()), Integer(-1));
  EXPECT_EQ(Value(std::nan("")), Value(std::nan("")));
  EXPECT_EQ(Value(Set{{1, 2}}), Value(Set{{2, 1}}));
  EXPECT_NE(Value(Array{1, 2}), Value(Array{2, 1}));
}

}  // namespace
}  // namespace mirvel::propertylist
