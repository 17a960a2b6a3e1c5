#include "core/propertylist/Writer.h"

#include <gtest/gtest.h>
#include <locale.h>
#ifdef __APPLE__
#include <xlocale.h>
#endif

#include <cmath>
#include <cstring>
#include <limits>

#include "core/propertylist/OldStyleText.h"
#include "core/propertylist/Reader.h"
#include "support/HostileFiles.h"

namespace mirvel::propertylist {
namespace {

constexpr const char* head =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";

/// The XML of the value without the parts that are the same for all values.
std::string bodyOf(const Value& value) {
  const auto xml = writeXml(value);
  if (!xml) return xml.error().text();
  EXPECT_EQ(xml->rfind(head, 0), 0U);
  const std::string body = xml->substr(std::string(head).size());
  EXPECT_EQ(body.substr(body.size() - 9), "</plist>\n");
  return body.substr(0, body.size() - 9);
}

TEST(WriterTest, XmlIsWhatTheMacOsWriterWrites) {
  const struct {
    Value value;
    const char* body;
  } rows[] = {
      {true, "<true/>\n"},
      {Integer::fromUnsigned(std::numeric_limits<std::uint64_t>::max()), "<integer>18446744073709551615</integer>\n"},
      {std::numeric_limits<std::int64_t>::min(), "<integer>-9223372036854775808</integer>\n"},
      {0.1, "<real>0.10000000000000001</real>\n"},
      {1.0, "<real>1</real>\n"},
      {-0.0, "<real>0.0</real>\n"},
      {1e100, "<real>1e+100</real>\n"},
      {std::nan(""), "<real>nan</real>\n"},
      {-std::numeric_limits<double>::infinity(), "<real>-infinity</real>\n"},
      {"", "<string></string>\n"},
      {"<a> & \"b\" 'c'", "<string>&lt;a&gt; &amp; \"b\" 'c'</string>\n"},
      {"eight by & then > some more", "<string>eight by &amp; then &gt; some more</string>\n"},
      {Date{-0.5}, "<date>2000-12-31T23:59:59Z</date>\n"},
      {Date{-63300000000.0}, "<date>-005-02-08T02:40:00Z</date>\n"},
      {Data{}, "<data>\n</data>\n"},
      {Array{Data{"ab"}}, "<array>\n\t<data>\n\tYWI=\n\t</data>\n</array>\n"},
      {Array{}, "<array/>\n"},
      {Dictionary{{"b", Dictionary{}}, {"a&", Array{1}}},
       "<dict>\n\t<key>a&amp;</key>\n\t<array>\n\t\t<integer>1</integer>\n\t</array>\n\t<key>b</key>\n\t<dict/>\n</"
       "dict>\n"},
      {Uid{7}, "<dict>\n\t<key>CF$UID</key>\n\t<integer>7</integer>\n</dict>\n"},
      {Array{Set{}}, "the list contains a set, which has no XML form"},
  };
  for (const auto& [value, body] : rows) EXPECT_EQ(bodyOf(value), body);
}

TEST(WriterTest, RealsHaveADecimalPointInEveryLocale) {
  for (const char* name : {"de_DE.UTF-8", "ps_AF.UTF-8"}) {  // a comma, and a character of two bytes
    const locale_t locale = newlocale(LC_ALL_MASK, name, nullptr);
    if (!locale) continue;  // isn't installed
    const locale_t before = uselocale(locale);
    EXPECT_EQ(bodyOf(1.5), "<real>1.5</real>\n") << name;
    EXPECT_EQ(read("<real>1.5</real>")->value(), Value(1.5)) << name;
    uselocale(before);
    freelocale(locale);
  }
}

TEST(WriterTest, DataLinesGetShorterWithTheIndentationUpToEightLevels) {
  const auto lineLength = [](int depth) {
    Value value = Data{std::string(200, 'x')};
    for (int i = 0; i < depth; ++i) value = Array{value};
    const std::string body = bodyOf(value);
    const std::size_t start = body.find("eHh");  // base64 of x
    return body.find('\n', start) - start;
  };
  const std::pair<int, std::size_t> rows[] = {{0, 76}, {1, 68}, {8, 12}, {9, 12}};
  for (const auto& [depth, length] : rows) EXPECT_EQ(lineLength(depth), length) << depth;
}

TEST(WriterTest, OnlyDataIsIndentedByNoMoreThanEightTabs) {
  const struct {
    Value value;
    const char* lines;  ///< within ten arrays, without eight tabs at the start of each line
  } rows[] = {
      {Data{"ab"}, "\t\t<data>\nYWI=\n\t\t</data>\n"},
      {Data{"0123456789"}, "\t\t<data>\nMDEyMzQ1Njc4\nOQ==\n\t\t</data>\n"},
      {Data{}, "\t\t<data>\n\t\t</data>\n"},
      {"ab", "\t\t<string>ab</string>\n"},
      {Array{}, "\t\t<array/>\n"},
      {Dictionary{{"a", true}}, "\t\t<dict>\n\t\t\t<key>a</key>\n\t\t\t<true/>\n\t\t</dict>\n"},
  };
  for (const auto& [value, lines] : rows) {
    Value nested = value;
    for (int i = 0; i < 10; ++i) nested = Array{nested};
    std::string expected = "<array>\n";
    for (const char* line = lines; *line; line = std::strchr(line, '\n') + 1) {
      expected += std::string(8, '\t').append(line, std::strchr(line, '\n') + 1);
    }
    EXPECT_NE(bodyOf(nested).find(expected + std::string(9, '\t') + "</array>\n"), std::string::npos) << lines;
  }
}

TEST(WriterTest, BothFormsAreReadAsTheSameValue) {
  Array many;
  for (int i = 0; i < 70000; ++i) many.emplace_back(i);  // references of four bytes
  const Value values[] = {
      Dictionary{{"text", "a\u00e9\u20ac\U0001F600\r\n\t"}, {"numbers", Array{-1, 255, 256, 65536, 1.5, std::nan("")}}},
      Array{Data{std::string("\0\xFF", 2)}, Date{1e9}, Uid{70000}, true, Array{}, Dictionary{}, ""},
      many,
      std::string(100000, 'x'),
  };
  for (const Value& value : values) {
    const auto xml = writeXml(value);
    ASSERT_TRUE(xml);
    const auto fromXml = read(*xml);
    ASSERT_TRUE(fromXml) << fromXml.error().text();
    EXPECT_EQ(fromXml->value(), value);
    const auto fromBinary = read(writeBinary(value));
    ASSERT_TRUE(fromBinary) << fromBinary.error().text();
    EXPECT_EQ(fromBinary->value(), value);
  }
  EXPECT_EQ(read(writeBinary(Set{{1, 2}}))->value(), Value(Set{{2, 1}}));
}

/// Text is checked, searched and copied in words of eight bytes.
TEST(WriterTest, ACharacterIsRecognisedAtEveryPositionOfAWord) {
  for (std::size_t at = 0; at < 40; ++at) {
    for (const char* character : {"<", ">", "&", "\u00e9"}) {
      const std::string text = std::string(at, 'a') + character + std::string(40 - at, 'b');
      EXPECT_EQ(read(*writeXml(text))->value(), Value(text)) << at << ' ' << character;
      EXPECT_EQ(read(writeBinary(text))->value(), Value(text)) << at << ' ' << character;
    }
    const std::string damaged = std::string(at, 'a') + '\xFF' + std::string(40 - at, 'b');
    EXPECT_FALSE(read("<string>" + damaged + "</string>")) << at;
    EXPECT_EQ(read("bplist00\x5F\x10\x29" + damaged + '\x08' + std::string(6, '\0') + "\1\1" + std::string(7, '\0') +
                   '\1' + std::string(15, '\0') + '\x34')
                  ->value(),
              Value(std::string(at, 'a') + "\u00ff" + std::string(40 - at, 'b')))
        << at << ": it is Latin-1 there";
  }
}

TEST(WriterTest, LeapYearsAreThoseOfTheGregorianCalendar) {
  const std::pair<double, std::string> rows[] = {
      {-3182198400, "1900-03-01"},    {-26524800, "2000-02-29"},
      {126144000, "2004-12-31"},      {3129235200, "2100-03-01"},
      {12596256000, "2400-02-29"},    {-63113904000, "0001-01-01"},
      {-63140428800, "0000-02-29"},   {-63145612800, "-001-12-31"},
      {3092523148800, "99999-02-28"}, {67767975255139200, "2147483647-12-31"},
  };
  for (const auto& [seconds, day] : rows) {
    const std::string element = "<date>" + day + "T00:00:00Z</date>";
    EXPECT_EQ(bodyOf(Date{seconds}), element + '\n');
    const auto document = read(element);
    ASSERT_TRUE(document) << day;
    EXPECT_EQ(document->value(), Value(Date{seconds})) << day;
    EXPECT_TRUE(document->warnings().empty()) << day;
  }
  for (const char* day : {"1900-02-29", "2001-02-29", "2100-02-29", "2001-04-31", "2001-00-01", "2001-01-00"}) {
    EXPECT_EQ(read("<date>" + std::string(day) + "T00:00:00Z</date>")->warnings().size(), 1U) << day;
  }
}

TEST(WriterTest, EqualStringsAreStoredOnceInTheBinaryForm) {
  const std::string text(1000, 'x');
  EXPECT_LT(writeBinary(Array{text, text, Dictionary{{text, text}}}).size(), 1200U);
}

Result<std::string> textOf(const std::string& list, std::size_t maximumSize = 1000) {
  const auto document = read(list);
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
      {writeBinary(Array{Uid{7}, Set{{"a"}}}), "(\n\t7;\n\t(\n\t\t\"a\";\n\t);\n);\n"},
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
