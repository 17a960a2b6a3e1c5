#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "core/propertylist/Encoding.h"
#include "core/propertylist/Positions.h"
#include "core/propertylist/Reader.h"
#include "support/HostileFiles.h"

namespace mirvel::propertylist {
namespace {

using namespace std::string_literals;

Value valueIn(const std::string& xml) {
  const auto document = read(xml);
  EXPECT_TRUE(document) << xml << ": " << document.error().text();
  return document ? document->value() : Value("rejected");
}

std::vector<std::string> warningsIn(const std::string& xml) {
  const auto document = read(xml);
  EXPECT_TRUE(document) << xml;
  std::vector<std::string> texts;
  if (document) {
    for (const Warning& warning : document->warnings()) texts.push_back(warning.text());
  }
  return texts;
}

TEST(XmlReaderTest, EveryTypeIsRead) {
  const struct {
    const char* element;
    Value value;
  } rows[] = {
      {"<true/>", true},
      {"<false></false>", false},
      {"<integer>-12</integer>", -12},
      {"<integer> + 0xFf</integer>", 255},
      {"<integer>18446744073709551615</integer>", Integer::fromUnsigned(std::numeric_limits<std::uint64_t>::max())},
      {"<integer>-9223372036854775808</integer>", std::numeric_limits<std::int64_t>::min()},
      {"<real>0.1</real>", 0.1},
      {"<real> -1.5e3</real>", -1500.0},
      {"<real>-InF</real>", -std::numeric_limits<double>::infinity()},
      {"<string/>", ""},
      {"<string>a &lt;b&gt; &amp; &#233;&#x1F600;</string>", "a <b> & \u00e9\U0001F600"},
      {"<string>a<![CDATA[<b>&]]>c</string>", "a<b>&c"},
      {"<string>gr\u00fcn, more than eight bytes</string>", "gr\u00fcn, more than eight bytes"},
      {"<date>2004-10-26T10:33:33Z</date>", Date{120479613}},
      {"<date>1969-12-31T23:59:59Z</date>", Date{-978307201}},
      {"<data>AAEC /w==</data>", Data{std::string("\0\1\2\xFF", 4)}},
      {"<array><true/><string>x</string></array>", Array{true, "x"}},
      {"<dict><key>b</key><true/><key>a</key><integer>1</integer></dict>", Dictionary{{"a", 1}, {"b", true}}},
      {"<dict><key>CF$UID</key><integer>7</integer></dict>", Uid{7}},
      {"<dict><key>CF$UID</key><real>-1.5</real></dict>", Uid{4294967295}},
      {"<dict><key>CF$UID</key><real>1e300</real></dict>", Uid{2147483648}},
      {"<dict><key>CF$UID</key><string>7</string></dict>", Dictionary{{"CF$UID", "7"}}},
      {"<dict><key>CF$UID</key><integer>7</integer><key>CF$UID</key><integer>8</integer></dict>", Uid{8}},
      {"<dict><key>CF$UID</key><integer>7</integer><key>a</key><true/></dict>", Dictionary{{"CF$UID", 7}, {"a", true}}},
      {"<data>QQ=\v\f=</data>", Data{"A"}},
  };
  for (const auto& [element, value] : rows) {
    EXPECT_EQ(valueIn(element), value) << element;
    EXPECT_EQ(valueIn("<?xml version='1.0'?>\n<!DOCTYPE plist>\n<plist>\n " + std::string(element) + "\n</plist>\n"),
              value);
    EXPECT_EQ(valueIn("<array a='b'>" + std::string(element) + "<!-- - --></array >"), Value(Array{value})) << element;
  }
}

TEST(XmlReaderTest, AnyUnicodeWhiteSpaceMayPrecedeANumberAndNoneMayFollowIt) {
  const struct {
    const char* text;
    bool isSpace;
  } rows[] = {
      {" \t\r\n", true}, {"\v", true},     {"\f", true},      {"\u0085", true},  {"\u00A0", true},  {"\u1680", true},
      {"\u2003", true},  {"\u200B", true}, {"\u2028", true},  {"\u2029", true},  {"\u202F", true},  {"\u205F", true},
      {"\u3000", true},  {"\x1F", false},  {"\u180E", false}, {"\u200C", false}, {"\uFEFF", false}, {"\xC2", false},
  };
  for (const auto& [space, isSpace] : rows) {
    const std::string text = space;
    EXPECT_EQ(static_cast<bool>(read("<integer>" + text + "7</integer>")), isSpace) << testing::PrintToString(text);
    EXPECT_EQ(static_cast<bool>(read("<integer>-" + text + "7</integer>")), isSpace) << testing::PrintToString(text);
    EXPECT_EQ(static_cast<bool>(read("<real>" + text + "1.5</real>")), isSpace) << testing::PrintToString(text);
    for (const char* const refused : {"<integer>7@</integer>", "<integer>@</integer>", "<real>1.5@</real>",
                                      "<real>-@1.5</real>", "<real>@nan</real>", "<real>nan@</real>",
                                      "<date>@2001-01-01T00:00:00Z</date>", "<date>2001-01-01T00:00:00Z@</date>"}) {
      std::string xml = refused;
      xml.replace(xml.find('@'), 1, text);
      EXPECT_FALSE(read(xml)) << testing::PrintToString(xml);
    }
  }
  EXPECT_EQ(valueIn("<integer>\u3000-\u00A0\v0x1F</integer>"), Value(-31));
  EXPECT_EQ(valueIn("<real>&#x2003; -1.5e1</real>"), Value(-15.0)) << "a reference counts as its character";
}

TEST(XmlReaderTest, RealsAreDecimalOrOneOfAFewWords) {
  const double infinity = std::numeric_limits<double>::infinity();
  const std::pair<const char*, double> rows[] = {
      {"NaN", std::numeric_limits<double>::quiet_NaN()},
      {"Infinity", infinity},
      {"+inf", infinity},
      {"-INFINITY", -infinity},
      {"1e999", infinity},
      {"-1e999", -infinity},
      {"1e-999", 0.0},
      {".5", 0.5},
      {"5.", 5.0},
      {"+5.e-1", 0.5},
      {"00012", 12.0},
      {"<![CDATA[1.5]]>", 1.5},
  };
  for (const auto& [text, value] : rows) EXPECT_EQ(valueIn("<real>" + std::string(text) + "</real>"), Value(value));
  for (const std::string text :
       {"+nan", "-nan", "nan(1)", "infinit", "0x10", ".", "-", "1e", "1e+", "1.5.2", "--1", "1_000", ""}) {
    EXPECT_FALSE(read("<real>" + text + "</real>")) << text;
  }
}

TEST(XmlReaderTest, ATagNameEndsAtWhiteSpaceOrAtTheLastSlash) {
  const struct {
    const char* xml;
    bool isRead;
  } rows[] = {
      {"<array/>", true},           {"<array />", true},        {"<array\n/>", true}, {"<array a='/'></array>", true},
      {"<array a/></array>", true}, {"<array/ >", false},       {"<array//>", false}, {"<array/a></array>", false},
      {"< array/>", false},         {"<Array/>", false},        {"</array>", false},  {"<true/ ></true>", false},
      {"<array></ array>", false},  {"<array></array >", true},
  };
  for (const auto& [xml, isRead] : rows) EXPECT_EQ(static_cast<bool>(read(xml)), isRead) << xml;
}

TEST(XmlReaderTest, ErrorsHaveAMessageAndAPosition) {
  const struct {
    const char* xml;
    const char* text;
  } rows[] = {
      {"{ Label = x; }", "line 1, column 1: an XML property list can't start with `{`"},
      {"\n\x01", "line 2, column 1: an XML property list can't start with the byte 0x01"},
      {"   ", "line 1, column 4: the text ends where <plist> was expected"},
      {"</plist>", "line 1, column 1: expected <plist>, found a closing tag"},
      {"<plist>\n\t<integer>12x</integer>", "line 2, column 2: <integer> contains `12x`, which isn't a number"},
      {"<integer>18446744073709551616</integer>",
       "line 1, column 1: <integer> contains `18446744073709551616`, which is too large"},
      {"<integer>-9223372036854775809</integer>",
       "line 1, column 1: <integer> contains `-9223372036854775809`, which is too small"},
      {"<integer>12 </integer>", "line 1, column 1: <integer> contains `12 `, which isn't a number"},
      {"<integer/>", "line 1, column 1: <integer> is empty"},
      {"<real>1,5</real>", "line 1, column 1: <real> contains `1,5`, which isn't a number"},
      {"<date>2004-10-26</date>",
       "line 1, column 1: <date> contains `2004-10-26`, which isn't a date like `2004-10-26T10:33:33Z`"},
      {"<data/>", "line 1, column 1: <data> is empty"},
      {"<plist/>", "line 1, column 1: <plist> is empty"},
      {"<array><sting>x</sting></array>", "line 1, column 8: <sting> isn't an element of a property list"},
      {"<dict>\n<string>x</string></dict>", "line 2, column 1: expected <key> in a <dict>, found <string>"},
      {"<dict>\n<key>a</key></dict>", "line 2, column 1: <key> has no value"},
      {"<dict>\n<key>a&amp;</key></dict>", "line 1, column 1: <key> has no value"},
      {"<plist><true/>\n<true/></plist>", "line 2, column 1: a second value in <plist>, which may contain only one"},
      {"<array>\n</dict>", "line 2, column 1: this tag doesn't close <array>: </array> was expected"},
      {"<array>x</array>", "line 1, column 8: expected a tag, found `x`"},
      {"<array>\n", "line 2, column 1: the text ends where a tag was expected"},
      {"<true> </true>", "line 1, column 7: expected </true>"},
      {"<string>a", "line 1, column 10: the text ends where </string> was expected"},
      {"<string>a<b/></string>", "line 1, column 10: expected </string>"},
      {"<string>a<!-- b --></string>", "line 1, column 10: only text and CDATA sections are allowed here"},
      {"<string><![CDATA[a</string>", "line 1, column 18: the CDATA section isn't closed by `]]>`"},
      {"<string>R&D</string>",
       "line 1, column 10: `&` doesn't start a known reference; a plain ampersand is written `&amp;`"},
      {"<string>&#x110000;</string>", "line 1, column 9: the character reference is beyond U+10FFFF"},
      {"<string>&#xD800;</string>", "line 1, column 9: the character reference is half of a surrogate pair"},
      {"<string>&#;</string>", "line 1, column 9: the character reference has no number"},
      {"<string>&#1a;</string>", "line 1, column 9: expected a digit or `;` in the character reference, found `a`"},
      {"<string>\xFFmore text</string>", "line 1, column 9: the text here isn't valid in its encoding"},
      {"<array><!-- ", "line 1, column 12: the comment isn't closed by `-->`"},
      {"<!ENTITY a>", "line 1, column 1: `<!` starts neither a comment nor a DOCTYPE"},
      {"<!DOCTYPE plist [ ]><true/>",
       "line 1, column 17: the DOCTYPE contains declarations, which property lists can't have"},
      {"<array", "line 1, column 1: the tag isn't closed by `>`"},
      {"<", "line 1, column 1: the tag isn't closed by `>`"},
      {"<?xml encoding='foobar'?><true/>", "line 1, column 1: unknown encoding `foobar`"},
      {"", "the file is empty"},
  };
  for (const auto& [xml, text] : rows) {
    const auto document = read(xml);
    ASSERT_FALSE(document) << xml;
    EXPECT_EQ(document.error().text(), text) << xml;
  }
  for (const std::string name : {"''", "\"\"", "' '", "'utf-8,version=1'", "'../x'"}) {
    EXPECT_EQ(read("<?xml encoding=" + name + "?><true/>").error().text(),
              "line 1, column 1: the XML declaration names an unknown encoding")
        << name;
  }
}

TEST(XmlReaderTest, DefectsThatMacOsToleratesAreReadWithAWarning) {
  const std::pair<const char*, std::vector<std::string>> rows[] = {
      {"<plist><true/></plist>\n<!-- -->\n<?p?>", {}},
      {"<plist><true/></plist>\n</plist>", {"line 1, column 23: data after the end of the list, which macOS ignores"}},
      {"<dict>\n<key>a</key><true/>\n<key>a</key><true/></dict>",
       {"line 3, column 1: the key `a` is repeated; the last one counts"}},
      {"<data>QU!FB</data>", {"line 1, column 1: <data> contains characters that aren't base64; they are skipped"}},
      {"<data>QUE</data>",
       {"line 1, column 1: <data> ends with an incomplete group of four characters; its last bytes are lost"}},
      {"<date>2002-13-01T00:00:00Z</date>",
       {"line 1, column 1: the date `2002-13-01T00:00:00Z` doesn't exist; it is read as 2003-01-01T00:00:00Z"}},
      {"<array><key>a</key></array>", {"line 1, column 8: <key> in place of a value; it is read as a string"}},
      {"<?xml encoding='us-ascii'?>\n<string>\xE9</string>",
       {"line 2, column 9: the list is declared as ASCII but contains other bytes; it is read as Latin-1"}},
  };
  for (const auto& [xml, warnings] : rows) EXPECT_EQ(warningsIn(xml), warnings) << xml;
}

TEST(XmlReaderTest, TheLastOfRepeatedKeysCountsHoweverMany) {
  EXPECT_EQ(valueIn("<dict><key>a</key><true/><key>b</key><true/><key>a</key><false/></dict>"),
            Value(Dictionary{{"a", false}, {"b", true}}));
  std::string many = "<dict>";
  Dictionary expected;
  for (int i = 0; i < 240; ++i) {
    many += "<key>k" + std::to_string(i % 120) + "</key><integer>" + std::to_string(i) + "</integer>";
    expected.set("k" + std::to_string(i % 120), i);
  }
  EXPECT_EQ(valueIn(many + "</dict>"), Value(expected));
  EXPECT_EQ(warningsIn(many + "</dict>").size(), Limits::warnings) << "of 120";
}

TEST(XmlReaderTest, TheEncodingIsFoundByMarkByZerosOrByDeclaration) {
  const std::string utf8 = "<string>\u00e9\u20ac</string>";
  const std::string bigEndian = utf16BigEndian("<string>") + "\x00\xE9\x20\xAC"s + utf16BigEndian("</string>");
  std::string littleEndian = bigEndian;
  for (std::size_t i = 0; i < bigEndian.size(); ++i) littleEndian[i] = bigEndian[i ^ 1U];
  const std::string rows[] = {
      "\xEF\xBB\xBF" + utf8,
      "\xFF\xFE" + littleEndian,
      "\xFE\xFF" + bigEndian,
      littleEndian,
      bigEndian,
      "<?xml version=\"1.0\" encoding=\"ISO-8859-15\"?><string>\xE9\xA4</string>",
      "<?xml version=\"1.0\" encoding='x-mac-utf-8'?>" + utf8,
      "<?xml version=\"1.0\" ENCODING='latin1' encoding='Utf-8'?>" + utf8,
      // Names that aren't quoted and directly after `encoding=` within the declaration are ignored.
      "<?xml encoding = 'latin1'?>" + utf8,
      "<?xml encoding=latin1?>" + utf8,
      "<?xml encoding=?>" + utf8,
      "<?xml version='1.0'?><?x encoding='latin1'?>" + utf8,
      "<?xml encoding='latin1?>" + utf8,
  };
  for (const auto& bytes : rows) EXPECT_EQ(valueIn(bytes), Value("\u00e9\u20ac")) << testing::PrintToString(bytes);
  std::string many;  // characters that take one byte in the list and four in UTF-8
  for (int i = 0; i < 200; ++i) many += "\U00010D00";
  EXPECT_EQ(valueIn("<?xml encoding='SCSU'?><string>\x0B\x20\x1A" + std::string(200, '\x80') + "</string>"),
            Value(many));
  EXPECT_FALSE(read("\xFF\xFE" + littleEndian + "\xD8"));  // half a character at the end
  EXPECT_FALSE(read("<?xml version=\"1.0\" encoding=\"UTF-16\"?>" + utf8));
}

TEST(XmlReaderTest, EveryPrefixOfAListIsRejectedWithAPositionWithinIt) {
  const std::string xml =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist PUBLIC \"a\" \"b\">\n<plist "
      "version=\"1.0\">\n<dict>\n"
      "\t<key>a</key><array><integer>1</integer><data>AA==</data></array>\n\t<key>b &lt;</key>\n"
      "\t<string>x<![CDATA[y]]>&#65;</string>\n\t<!-- c "
      "-->\n\t<key>d</key><date>2001-01-01T00:00:00Z</date>\n</dict>\n</plist>";
  ASSERT_TRUE(read(xml));
  for (std::size_t size = 0; size < xml.size(); ++size) {
    const auto document = read(xml.substr(0, size));
    ASSERT_FALSE(document) << size;
    EXPECT_LE(document.error().line, 11U) << size;
  }
}

TEST(XmlReaderTest, NestingAndTheNumberOfValuesAreLimited) {
  const auto nested = [](std::size_t depth, const std::string& open, const std::string& close) {
    return hostile::repeated(open, depth) + "<true/>" + hostile::repeated(close, depth);
  };
  EXPECT_TRUE(read(nested(512, "<array>", "</array>")));
  EXPECT_TRUE(read(nested(512, "<dict><key>a</key>", "</dict>")));
  for (const std::string& xml :
       {nested(513, "<array>", "</array>"), "<array>" + hostile::repeated("<true/>", Limits::objects) + "</array>"}) {
    const auto refused = read(xml);
    ASSERT_FALSE(refused) << xml.size();
    EXPECT_EQ(refused.error().code, Error::Code::LimitExceeded) << xml.size();
  }
  EXPECT_FALSE(read(nested(200000, "<dict><key>a</key>", "")));
  EXPECT_TRUE(read(nested(200000, "<plist>", "</plist>")));  // adds no depth to the value
}

TEST(XmlReaderTest, LinesAndColumnsAreCountedFromOneInAnyOrder) {
  const std::string text = "ab\n\ncd\r\ne";
  const LineStarts lines(text);
  const std::pair<std::size_t, Position> rows[] = {{9, {4, 2}}, {0, {1, 1}}, {2, {1, 3}}, {3, {2, 1}},
                                                   {4, {3, 1}}, {7, {3, 4}}, {8, {4, 1}}, {1, {1, 2}}};
  for (const auto& [offset, position] : rows) {
    EXPECT_EQ(lines.positionOf(offset), position) << offset;
    EXPECT_EQ(positionOf(text, offset), position) << offset;
  }
}

TEST(XmlReaderTest, PositionsAreThoseOfKeysAndValues) {
  Positions positions;
  ASSERT_TRUE(
      read("<plist>\n<dict>\n\t<key>a</key>\n\t<array><true/> <dict><key>b</key>\n<true/></dict></array>\n"
           "<key>c&amp;d</key><dict><key></key><true/></dict>\n"
           "<key>r</key><true/><key>r</key><false/>\n"
           "<key>p</key><plist><array><plist><true/></plist><true/><true/><true/><true/><true/><true/><true/><true/>"
           "<true/><true/></array></plist></dict></plist>",
           &positions));
  const struct {
    const char* path;
    Position key, value;
  } rows[] = {{"", {2, 1}, {2, 1}},        {"a", {3, 2}, {4, 2}},        {"a[0]", {4, 9}, {4, 9}},
              {"a[1].b", {4, 23}, {5, 1}}, {"c&d", {6, 1}, {6, 19}},     {"c&d.", {6, 25}, {6, 36}},
              {"r", {7, 20}, {7, 32}},     {"p", {8, 1}, {8, 20}},       {"p[0]", {8, 34}, {8, 34}},
              {"p[1]", {8, 49}, {8, 49}},  {"p[10]", {8, 112}, {8, 112}}};
  for (const auto& row : rows) {
    const auto location = positions.find(row.path);
    ASSERT_TRUE(location) << row.path;
    EXPECT_EQ(location->key, row.key) << row.path;
    EXPECT_EQ(location->value, row.value) << row.path;
  }
  EXPECT_FALSE(positions.find("b"));
}

}  // namespace
}  // namespace mirvel::propertylist
