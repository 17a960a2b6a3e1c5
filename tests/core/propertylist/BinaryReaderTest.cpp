#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"

namespace mirvel::propertylist {
namespace {

using namespace std::string_literals;

/// A big-endian number of `width` bytes, of which all but the last eight are `front`.
std::string wideNumber(std::uint64_t number, int width, char front) {
  std::string bytes(static_cast<std::size_t>(width), front);
  for (std::size_t i = 0; i < std::min<std::size_t>(8, bytes.size()); ++i) {
    bytes[bytes.size() - 1 - i] = static_cast<char>(number >> (8 * i));
  }
  return bytes;
}

std::string trailer(int offsetSize, int referenceSize, std::uint64_t objects, std::uint64_t table) {
  return std::string(6, '\0') + static_cast<char>(offsetSize) + static_cast<char>(referenceSize) +
         wideNumber(objects, 8, 0) + wideNumber(0, 8, 0) + wideNumber(table, 8, 0);
}

/// A list of these objects, of which the first is the root, with offsets and references of one byte.
std::string listOf(const std::vector<std::string>& objects) {
  std::string list = "bplist00";
  std::string offsets;
  for (const std::string& object : objects) {
    offsets += static_cast<char>(list.size());
    list += object;
  }
  return list + offsets + trailer(1, 1, objects.size(), list.size());
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

TEST(BinaryReaderTest, ErrorsHaveAMessageAndAnOffset) {
  const struct {
    std::string list;
    const char* text;
  } rows[] = {
      {listOf({"\0"s}), "offset 8: null isn't a property-list value"},
      {listOf({"\x0F"}), "offset 8: invalid object marker 0x0f"},
      {listOf({"\xB0"}), "offset 8: invalid object marker 0xb0"},
      {listOf({"\x15"}), "offset 8: invalid integer marker 0x15"},
      {listOf({"\x13\1"}), "offset 8: the integer extends beyond the end of the objects"},
      {listOf({"\x21"}), "offset 8: invalid real marker 0x21"},
      {listOf({"\x33\x7F\xF0\0\0\0\0\0\0"s}), "offset 8: the date is outside the supported range"},
      {listOf({"\x84\1\0\0\0\0"s}), "offset 8: the UID doesn't fit into 32 bits"},
      {listOf({"\x55"s + "abcd"}), "offset 8: the object extends beyond the end of the objects"},
      {listOf({"\x5F\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"}),
       "offset 8: the object extends beyond the end of the objects"},
      {listOf({"\x5F\x09"}), "offset 8: the count of the object isn't an integer"},
      {listOf({"\x61\xD8\0"s}), "offset 8: the string contains an unpaired surrogate"},
      {listOf({"\xA1\1"}), "offset 9: reference to an object that doesn't exist"},
      {listOf({"\xA1\0"s}), "offset 8: the container contains itself"},
      {listOf({"\xA1\1", "\xD1\2\0"s, "\x51"s + "k"}), "offset 8: the container contains itself"},
      {listOf({"\xD1\1\1", "\x09"}), "offset 11: the dictionary key isn't a string"},
      {"bplist10" + std::string(40, '\0'), "offset 6: unsupported version of the binary format: expected `bplist0`"},
      {"bplist00", "offset 8: the binary list ends before its trailer"},
  };
  for (const auto& [list, text] : rows) {
    const auto document = read(list);
    ASSERT_FALSE(document) << text;
    EXPECT_EQ(document.error().text(), text);
  }
}

TEST(BinaryReaderTest, TheLastEightBytesOfOffsetsAndReferencesCount) {
  const struct {
    int offsetSize, referenceSize;
    char front;
    bool isRead;
  } rows[] = {
      {1, 1, 0, true},        {3, 5, 0, true},     {8, 8, 0, true},   {9, 1, 0, true},  {1, 9, 0, true},
      {16, 16, '\xFF', true}, {255, 255, 7, true}, {255, 1, 0, true}, {0, 1, 0, false}, {1, 0, 0, false},
  };
  for (const auto& [offsetSize, referenceSize, front, isRead] : rows) {
    // [true, {"k": true}]
    const auto reference = [size = referenceSize, byte = front](std::uint64_t object) {
      return wideNumber(object, size, byte);
    };
    std::string list = "bplist00";
    std::string offsets;
    for (const std::string& object :
         {"\xA2" + reference(1) + reference(2), "\x09"s, "\xD1" + reference(3) + reference(1), "\x51k"s}) {
      offsets += wideNumber(list.size(), offsetSize, front);
      list += object;
    }
    const auto document = read(list + offsets + trailer(offsetSize, referenceSize, 4, list.size()));
    ASSERT_EQ(static_cast<bool>(document), isRead) << offsetSize << ' ' << referenceSize;
    if (!isRead) continue;
    EXPECT_EQ(document->value(), Value(Array{true, Dictionary{{"k", true}}})) << offsetSize;
  }
}

/// Every byte of the trailer is replaced by every other: the list is rejected or read, without undefined behaviour.
TEST(BinaryReaderTest, AnyDamageOfTheTrailerIsSafe) {
  const std::string list = writeBinary(Dictionary{{"a", Array{1, "x", true}}, {"b", Data{"xyz"}}});
  for (std::size_t at = list.size() - 32; at < list.size(); ++at) {
    for (int byte = 0; byte < 256; ++byte) {
      std::string damaged = list;
      damaged[at] = static_cast<char>(byte);
      const auto document = read(damaged);
      if (document) (void)document->value();  // visits everything that was read
    }
  }
  // A table of 2^60 + 1 offsets of 16 bytes would end at the trailer, if its size were computed in 64 bits.
  EXPECT_FALSE(read("bplist00\x09" + wideNumber(8, 16, 0) + trailer(16, 8, (std::uint64_t{1} << 60U) + 1, 9)));
  for (std::size_t size = 6; size < list.size(); ++size) EXPECT_FALSE(read(list.substr(0, size))) << size;
}

TEST(BinaryReaderTest, TheSizeOfSharedContainersIsLimited) {
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

/// Nested arrays that all use the same bytes as their references.
TEST(BinaryReaderTest, TheSizeOfOverlappingContainersIsLimited) {
  constexpr std::uint64_t count = 100000;
  constexpr std::size_t arrays = 100;
  std::string list = "bplist00";
  std::string offsets;
  for (std::size_t i = 0; i < arrays; ++i) {
    offsets += wideNumber(list.size(), 4, 0);
    list += "\xAF\x12" + wideNumber(count, 4, 0) + static_cast<char>(i + 1);
  }
  offsets += wideNumber(list.size(), 4, 0);
  list += std::string(count, '\x09');
  const auto document = read(list + offsets + trailer(4, 1, arrays + 1, list.size()));
  ASSERT_FALSE(document);
  EXPECT_EQ(document.error().code, Error::Code::LimitExceeded);
  EXPECT_EQ(document.error().text().find("offset 8: "), std::string::npos) << "the first one is valid";
}

TEST(BinaryReaderTest, DefectsThatMacOsToleratesAreReadWithAWarning) {
  const std::string number = "\0\0\0\0\0\0\0\1\0\0\0\0\0\0\0\5"s;
  const struct {
    std::vector<std::string> objects;
    Value value;
    const char* warning;
  } rows[] = {
      {{"\xD2\1\2\3\4", "\x51"s + "a", "\x51"s + "a", "\x09", "\x08"},
       Dictionary{{"a", true}},
       "offset 8: the key `a` is repeated; the first one counts"},
      {{"\x14" + number}, 5, "offset 8: the integer doesn't fit into 64 bits; only the low 64 are read"},
      {{"\x8F" + number}, Uid{5}, "offset 8: the UID doesn't fit into 64 bits; only the low 64 are read"},
      {{"\x8F" + std::string(15, '\0') + "\5"}, Uid{5}, nullptr},
      {{"\x88" + std::string(8, '\0') + "\5"}, Uid{5}, nullptr},
  };
  for (const auto& [objects, value, warning] : rows) {
    const auto document = read(listOf(objects));
    ASSERT_TRUE(document) << document.error().text();
    EXPECT_EQ(document->value(), value);
    ASSERT_EQ(document->warnings().size(), warning ? 1U : 0U);
    if (warning) {
      EXPECT_EQ(document->warnings()[0].text(), warning);
    }
  }
}

}  // namespace
}  // namespace mirvel::propertylist
