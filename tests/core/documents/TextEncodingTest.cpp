#include "core/documents/TextEncoding.h"

#include <gtest/gtest.h>

#include "core/documents/Iconv.h"
#include "core/documents/ReadText.h"

namespace mirvel {
namespace {

using namespace std::string_view_literals;

TEST(TextEncodingTest, KeepsAsciiInAllEncodingsOfOneByteUnits) {
  // The DOS encodings exchange three control characters, in both directions.
  std::string ascii = "\t\n\r\x1B";
  for (char c = ' '; c < 127; ++c) ascii += c;
  for (const KnownEncoding& known : knownEncodings()) {
    const std::string name = known.name;
    if (name.starts_with("utf-16") || name.starts_with("utf-32")) continue;
    const auto text = decode(ascii, {.name = name});
    ASSERT_TRUE(text) << name;
    EXPECT_EQ(*text, ascii) << name;
    EXPECT_EQ(encode(ascii, {.name = name})->bytes, ascii) << name;
  }
}

TEST(TextEncodingTest, AgreesWithIconv) {
  struct Row {
    const char* encoding;
    const char* text;
  };
  const Row rows[] = {
      {"utf-16le", "aé😀\n"},       {"utf-16be", "aé😀\n"},      {"utf-32le", "aé😀\n"},     {"utf-32be", "aé😀\n"},
      {"iso-8859-1", "aé÷\n"},     {"windows-1252", "“€”\n"},  {"iso-8859-15", "5 €\n"},  {"macintosh", "äé†\n"},
      {"ibm850", "äéñ\n"},         {"iso-8859-2", "łőž\n"},    {"windows-1250", "łőž\n"}, {"ibm852", "łőž\n"},
      {"iso-8859-13", "ąžų\n"},    {"windows-1257", "ąžų\n"},  {"windows-1251", "Яёґ\n"}, {"koi8-r", "Яё\n"},
      {"koi8-u", "Яґї\n"},         {"iso-8859-5", "Яёў\n"},    {"ibm866", "Яё\n"},        {"windows-1253", "Ωάς\n"},
      {"iso-8859-7", "Ωάς\n"},     {"windows-1254", "ışğ\n"},  {"iso-8859-9", "ışğ\n"},   {"windows-1255", "אבת\n"},
      {"iso-8859-8", "אבת\n"},     {"windows-1256", "سلام\n"}, {"iso-8859-6", "سلام\n"},  {"windows-874", "กขค\n"},
      {"shift_jis", "日本カナ\n"}, {"euc-jp", "日本カナ\n"},   {"gb18030", "中文😀\n"},    {"big5", "中文\n"},
      {"euc-kr", "한글\n"},
  };
  for (const Row& row : rows) {
    const auto expected = testdata::byIconv(row.text, row.encoding);
    ASSERT_TRUE(expected) << row.encoding;
    const auto bytes = encode(row.text, {.name = row.encoding});
    ASSERT_TRUE(bytes) << row.encoding;
    EXPECT_EQ(bytes->bytes, *expected) << row.encoding;
    EXPECT_EQ(*decode(*expected, {.name = row.encoding}), row.text) << row.encoding;
  }
}

TEST(TextEncodingTest, NamesTheFirstCharacterThatAnEncodingLacks) {
  struct Row {
    const char* encoding;
    const char* text;
    Unencodable expected;
  };
  const Row rows[] = {
      {"iso-8859-1", "aé\nb€c“\n", {2, "€"}}, {"iso-8859-1", "a\r\nb\rc\n日", {4, "日"}},
      {"windows-1252", "Ω", {1, "Ω"}},        {"shift_jis", "日本\n😀", {2, "😀"}},
      {"koi8-r", "Я\n\nа\xFF", {3, "\xFF"}},  {"utf-8", "a\nb\xFFz", {2, "\xFF"}},
      {"utf-16le", "a\xC3", {1, "\xC3"}},
  };
  for (const Row& row : rows) {
    const auto result = encode(row.text, {.name = row.encoding});
    ASSERT_TRUE(result) << row.encoding;
    ASSERT_TRUE(result->firstUnencodable) << row.encoding << ": " << row.text;
    EXPECT_EQ(*result->firstUnencodable, row.expected) << row.encoding << ": " << row.text;
    EXPECT_EQ(result->bytes, "");
  }
}

/// ICU skips invisible characters that an encoding lacks, without an error.
TEST(TextEncodingTest, DropsNoInvisibleCharacter) {
  struct Row {
    const char* character;
    const char* in;  ///< the encodings that have it, besides those of Unicode
  };
  const Row rows[] = {
      {"\u00ad",
       " iso-8859-1 windows-1252 iso-8859-15 ibm850 iso-8859-2 windows-1250 ibm852 iso-8859-13 windows-1257 "
       "windows-1251 iso-8859-5 windows-1253 iso-8859-7 windows-1254 iso-8859-9 windows-1255 iso-8859-8 windows-1256 "
       "iso-8859-6 euc-kr "},
      {"\u034f", ""},
      {"\u200b", ""},
      {"\u200c", " windows-1256 "},
      {"\u200d", " windows-1256 "},
      {"\u200e", " windows-1255 windows-1256 iso-8859-8 "},
      {"\u2060", ""},
      {"\ufe0f", ""},
      {"\ufeff", ""},
      {"\U000e0001", ""},
      {"\uf86f", ""},  // private; ICU has a replacement in Shift JIS
  };
  for (const KnownEncoding& known : knownEncodings()) {
    const std::string name = known.name;
    const bool isUnicode = *known.region == '\0' || name == "gb18030";
    for (const Row& row : rows) {
      const bool has = isUnicode || std::string(row.in).find(' ' + name + ' ') != std::string::npos;
      const auto result = encode("a\n" + std::string(row.character) + "b", {.name = name});
      ASSERT_TRUE(result) << name;
      const auto lacking = has ? std::nullopt : std::optional(Unencodable{2, row.character});
      EXPECT_EQ(result->firstUnencodable, lacking) << name << " and " << testing::PrintToString(row.character);
    }
  }
}

TEST(TextEncodingTest, WritesAndReadsTheAttribute) {
  struct Row {
    TextEncoding encoding;
    const char* value;
  };
  const Row rows[] = {
      {{.name = "utf-8"}, "utf-8;134217984"},       {{.name = "iso-8859-1"}, "iso-8859-1;513"},
      {{.name = "macintosh"}, "macintosh;0"},       {{.name = "windows-1252"}, "windows-1252;1280"},
      {{.name = "utf-16le"}, "utf-16le;335544576"}, {{.name = "shift_jis"}, "shift_jis;2561"},
      {{.name = "euc-jp"}, "euc-jp;2336"},          {{.name = "koi8-r"}, "koi8-r;2562"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(attributeValue(row.encoding), row.value);
    EXPECT_EQ(encodingOfAttribute(row.value, ""), row.encoding) << row.value;
  }
  EXPECT_EQ(attributeValue({.name = "utf-16le", .hasMark = true}), "utf-16;256");
  EXPECT_EQ(encodingOfAttribute("utf-16;256",
                                "\xFF\xFE"
                                "a")
                ->name,
            "utf-16le");
  EXPECT_EQ(encodingOfAttribute("UTF-16;256", "\xFE\xFF")->name, "utf-16be");
  EXPECT_EQ(encodingOfAttribute(";134217984", "")->name, "utf-8");
  EXPECT_EQ(encodingOfAttribute(";2561", "")->name, "shift_jis");
  for (const char* bad : {"", ";", "x-unknown;12", ";99999", "utf-8x;134217984", "/etc/passwd;1", ";2561x"}) {
    EXPECT_FALSE(encodingOfAttribute(bad, "")) << bad;
  }
}

struct ReadRow {
  const char* name;
  std::string bytes;
  const char* attribute;
  std::string text;
  TextEncoding encoding;
  bool isExact = true;
};

std::string everyHighByte() {
  std::string bytes;
  for (int byte = 0x80; byte < 0x100; ++byte) bytes += static_cast<char>(byte);
  return bytes;
}

TEST(ReadTextTest, ChoosesTheEncodingInTheRightOrder) {
  const ReadRow rows[] = {
      {"empty", "", "", "", {}},
      {"ASCII with a stale attribute", "a\n", "shift_jis;2561", "a\n", {}},
      {"valid UTF-8 with a stale attribute", "é\n", "macintosh;0", "é\n", {}},
      {"UTF-8 with a mark",
       "\xEF\xBB\xBF"
       "é\n",
       "",
       "é\n",
       {.name = "utf-8", .hasMark = true}},
      {"the attribute instead of a guess", "caf\xE9\n", "macintosh;0", "cafÈ\n", {.name = "macintosh"}},
      {"an attribute in which the bytes are invalid", "caf\xE9\n", "utf-16;256", "café\n", {.name = "iso-8859-1"}},
      {"escape sequences", "\x1B[1m\n", "", "\x1B[1m\n", {}},
      {"escape sequences and a stale attribute", "\x1B[1mé€\n", "macintosh;0", "\x1B[1mé€\n", {}},
      {"a mark",
       std::string("\xFF\xFE"
                   "a\0\n\0"sv),
       "",
       "a\n",
       {.name = "utf-16le", .hasMark = true}},
      {"a mark of four bytes", std::string("\xFF\xFE\0\0a\0\0\0"sv), "", "a", {.name = "utf-32le", .hasMark = true}},
      {"UTF-16 without a mark", std::string("\0a\0b\0\n"sv), "", "ab\n", {.name = "utf-16be"}},
      {"UTF-16 with an unpaired surrogate, which is no text", "\xFF\xFE\x41\xD8", "", "\xFF\xFE\x41\xD8", {}, false},
      {"every byte above ASCII, which is plausible in no encoding", everyHighByte(), "", everyHighByte(), {}, false},
  };
  for (const ReadRow& row : rows) {
    const auto read = readText(row.bytes, row.attribute, "en_US");
    ASSERT_TRUE(read) << row.name << ": " << read.error().message;
    EXPECT_EQ(read->text, row.text) << row.name;
    EXPECT_EQ(read->encoding, row.encoding) << row.name << ": " << read->encoding.name;
    EXPECT_EQ(read->isExact, row.isExact) << row.name;
  }
}

TEST(ReadTextTest, RefusesWhatIsNoText) {
  const std::string rows[] = {
      "\x7F"
      "ELF\2\1\1",
      "\xCF\xFA\xED\xFE\7",
      "\xCA\xFE\xBA\xBE",
      std::string("#!/bin/sh\necho \0 a\n"sv),
      std::string("\0\0\0\0"sv),
      std::string("PK\3\4\0\0\xFF\xFE\0\x81"sv),
  };
  for (const std::string& bytes : rows) {
    const auto read = readText(bytes, "", "en_US");
    ASSERT_FALSE(read) << bytes;
    EXPECT_EQ(read.error().code, Error::Code::Malformed);
  }
}

TEST(ReadTextTest, AChosenEncodingIsUsedAsItIs) {
  const auto greek = readTextAs("\xE1", "iso-8859-7");
  ASSERT_TRUE(greek);
  EXPECT_EQ(greek->text, "α");
  const auto marked = readTextAs(
      "\xFF\xFE"
      "a\0"sv,
      "utf-16le");
  ASSERT_TRUE(marked);
  EXPECT_TRUE(marked->encoding.hasMark);
  EXPECT_EQ(marked->text, "a");
  const auto invalid = readTextAs("a\nb\x81\x20\n", "shift_jis");
  ASSERT_FALSE(invalid);
  EXPECT_EQ(invalid.error().code, Error::Code::UnsupportedEncoding);
  EXPECT_EQ(invalid.error().line, 2U);
  EXPECT_EQ(readTextAs("a", "no-such").error().code, Error::Code::UnsupportedEncoding);
}

}  // namespace
}  // namespace mirvel
