#include <gtest/gtest.h>

#include <numeric>
#include <string>
#include <vector>

#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"

namespace mirvel::plist {
namespace {

using namespace std::string_literals;

/// A list of these objects, the first being the root, with offsets and references of one byte.
std::string listOf(const std::vector<std::string>& objects) {
  std::string list = "bplist00";
  std::string offsets;
  for (const std::string& object : objects) {
    offsets += static_cast<char>(list.size());
    list += object;
  }
  const char table = static_cast<char>(list.size());
  return list + offsets + "\0\0\0\0\0\0\1\1"s + std::string(7, '\0') + static_cast<char>(objects.size()) +
         std::string(15, '\0') + table;
}

TEST(BinaryReaderTest, EveryTypeIsRead) {
  const struct {
    std::vector<std::string> objects;
    Value value;
  } rows[] = {
      {{"\x08"}, false},
      {{"\x09"}, true},
      {{"\x10\xFF"}, 255},
      {{"\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFE"}, -2},
      {{"\x14"s + std::string(8, '\0') + std::string(8, '\xFF')}, Integer::fromUnsigned(~std::uint64_t{0})},
      {{"\x22\x3F\xC0\0\0"s}, 1.5},
      {{"\x33\x41\0\0\0\0\0\0\0"s}, Date{131072}},
      {{"\x42\0\xFF"s}, Data{"\0\xFF"s}},
      {{"\x5F\x10\x10"s + "abcdefghijklmnop"}, "abcdefghijklmnop"},
      {{"\x52"s + "a\xE9"}, "a\u00e9"},
      {{"\x62\x20\xAC\0\x41"s},
       "\u20ac"
       "A"},
      {{"\x62\xD8\x3D\xDE\x00"s}, "\U0001F600"},
      {{"\x81\x01\x00"s}, Uid{256}},
      {{"\xA2\1\1", "\x51"s + "x"}, Array{"x", "x"}},
      {{"\xC1\1", "\x09"}, Set{{true}}},
      {{"\xD2\1\2\3\3", "\x51"s + "b", "\x51"s + "a", "\xA0"}, Dictionary{{"a", Array{}}, {"b", Array{}}}},
      {{"\xA2\1\1", "\xD1\2\2", "\x51"s + "k"}, Array{Dictionary{{"k", "k"}}, Dictionary{{"k", "k"}}}},
  };
  for (const auto& [objects, value] : rows) {
    const auto document = read(listOf(objects));
    ASSERT_TRUE(document) << document.error().text();
    EXPECT_EQ(document->format(), Format::Binary);
    EXPECT_EQ(document->value(), value) << testing::PrintToString(objects);
  }
}

TEST(BinaryReaderTest, RefusalsTellWhatAndWhere) {
  const struct {
    std::string list;
    const char* text;
  } rows[] = {
      {listOf({"\0"s}), "offset 8: null is no value of a property list"},
      {listOf({"\x0F"}), "offset 8: no object begins with 0x0f"},
      {listOf({"\xB0"}), "offset 8: no object begins with 0xb0"},
      {listOf({"\x15"}), "offset 8: no integer begins with 0x15"},
      {listOf({"\x13\1"}), "offset 8: the integer runs out of the list"},
      {listOf({"\x21"}), "offset 8: no real begins with 0x21"},
      {listOf({"\x33\x7F\xF0\0\0\0\0\0\0"s}), "offset 8: the date lies outside of any calendar"},
      {listOf({"\x84\1\0\0\0\0"s}), "offset 8: the UID doesn't fit 32 bits"},
      {listOf({"\x55"s + "abcd"}), "offset 8: the object runs out of the list"},
      {listOf({"\x5F\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"}), "offset 8: the object runs out of the list"},
      {listOf({"\x5F\x09"}), "offset 8: the count of the object is no integer"},
      {listOf({"\x61\xD8\0"s}), "offset 8: the string holds half of a surrogate pair"},
      {listOf({"\xA1\1"}), "offset 9: the reference here is to an object that doesn't exist"},
      {listOf({"\xA1\0"s}), "offset 8: the container here holds itself"},
      {listOf({"\xA1\1", "\xD1\2\0"s, "\x51"s + "k"}), "offset 8: the container here holds itself"},
      {listOf({"\xD1\1\1", "\x09"}), "offset 11: a dictionary's key is no string"},
      {"bplist10" + std::string(40, '\0'), "offset 6: the version of the binary list isn't 0: `bplist0` was expected"},
      {"bplist00", "offset 8: the binary list ends before its trailer"},
  };
  for (const auto& [list, text] : rows) {
    const auto document = read(list);
    ASSERT_FALSE(document) << text;
    EXPECT_EQ(document.error().text(), text);
  }
}

/// Every byte of the trailer changed in every way: refused or the same list, and never anything worse.
TEST(BinaryReaderTest, AnyDamageOfTheTrailerIsSafe) {
  const std::string list = writeBinary(Dictionary{{"a", Array{1, "x", true}}, {"b", Data{"xyz"}}});
  for (std::size_t at = list.size() - 32; at < list.size(); ++at) {
    for (int byte = 0; byte < 256; ++byte) {
      std::string damaged = list;
      damaged[at] = static_cast<char>(byte);
      const auto document = read(damaged);
      if (document) (void)document->value();  // it may be another object of the list
    }
  }
  for (std::size_t size = 6; size < list.size(); ++size) EXPECT_FALSE(read(list.substr(0, size))) << size;
}

TEST(BinaryReaderTest, SharedContainersMayNotGrowBeyondTheLimits) {
  std::vector<std::string> doubling;
  for (char i = 0; i < 40; ++i) doubling.push_back("\xA2"s + static_cast<char>(i + 1) + static_cast<char>(i + 1));
  doubling.emplace_back("\x09");
  const auto tooLarge = read(listOf(doubling));  // 2^40 values
  ASSERT_FALSE(tooLarge);
  EXPECT_EQ(tooLarge.error().code, Error::Code::LimitExceeded);

  doubling.erase(doubling.begin() + 10, doubling.end());
  doubling.emplace_back("\x09");
  const auto small = read(listOf(doubling));  // 2^10 values
  ASSERT_TRUE(small);
  EXPECT_EQ(small->value().as<Array>()->size(), 2U);
}

TEST(BinaryReaderTest, OfRepeatedKeysTheFirstWins) {
  const auto document = read(listOf({"\xD2\1\2\3\4", "\x51"s + "a", "\x51"s + "a", "\x09", "\x08"}));
  ASSERT_TRUE(document);
  EXPECT_EQ(document->value(), Value(Dictionary{{"a", true}}));
  ASSERT_EQ(document->warnings().size(), 1U);
  EXPECT_EQ(document->warnings()[0].text(), "offset 8: the key `a` is repeated; the first one counts");
}

TEST(BinaryReaderTest, AnIntegerOfSixteenBytesIsReadByItsLowerHalfWithAWarning) {
  const auto document = read(listOf({"\x14\0\0\0\0\0\0\0\1\0\0\0\0\0\0\0\5"s}));
  ASSERT_TRUE(document);
  EXPECT_EQ(document->value(), Value(5));
  EXPECT_EQ(document->warnings().size(), 1U);
}

}  // namespace
}  // namespace mirvel::plist
