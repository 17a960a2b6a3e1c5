#include "core/text/Strings.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "core/text/Digits.h"
#include "core/text/Octal.h"
#include "core/text/Text.h"

namespace mirvel {
namespace {

using namespace std::string_literals;
using String::Edge;

TEST(StringsTest, LastPathComponentIgnoresSlashesAtTheEnd) {
  const std::vector<std::pair<std::string, std::string>> rows{
      {"/a/b", "b"}, {"/a/b//", "b"}, {"b", "b"}, {"b/", "b"}, {"/", "/"}, {"//", "/"}, {"", ""}, {"/a b", "a b"},
  };
  for (const auto& [path, component] : rows) EXPECT_EQ(String::lastPathComponent(path), component) << path;
}

TEST(StringsTest, TrimKeepsLineEndsUnlessAsked) {
  EXPECT_EQ(String::trim(" \t a b\n "), "a b\n");
  EXPECT_EQ(String::trim(" \n a b\r\n ", true), "a b");
  EXPECT_EQ(String::trim(" \t "), "");
  EXPECT_EQ(String::trim(" a b ", false, Edge::Start), "a b ");
  EXPECT_EQ(String::trim(" a b ", false, Edge::End), " a b");
  EXPECT_EQ(String::trim(" ", false, Edge::End), "");
  EXPECT_EQ(String::chop("''a''", "'", Edge::Both), "'a'");
  EXPECT_EQ(String::chop("'a'", "'", Edge::Start), "a'");
  EXPECT_EQ(String::chop("'a'", "'", Edge::End), "'a");
  EXPECT_EQ(String::chop("'", "'", Edge::Both), "");
  EXPECT_EQ(String::chop("a", "bc", Edge::Both), "a");
}

TEST(StringsTest, OnlyTheHomeFolderItselfIsShortened) {
  const std::vector<std::pair<std::string, std::string>> rows{
      {"/Users/x", "~"},
      {"/Users/x/a", "~/a"},
      {"rsync -a /Users/x/a /Users/x/b", "rsync -a ~/a ~/b"},
      {"cp --to=/Users/x '/Users/x/a b'", "cp --to=~ '~/a b'"},
      {"/Users/xavier/a", "/Users/xavier/a"},
      {"/Users/x-y /Users/x.old", "/Users/x-y /Users/x.old"},
      {"/Users/x\u00e9", "/Users/x\u00e9"},
      {"/Volumes/Users/x /mnt//Users/x", "/Volumes/Users/x /mnt//Users/x"},
  };
  for (const auto& [text, shortened] : rows) {
    EXPECT_EQ(String::shortenHomeFolder(text, "/Users/x"), shortened);
    EXPECT_EQ(String::shortenHomeFolder(text, "/Users/x/"), shortened);
  }
  EXPECT_EQ(String::shortenHomeFolder("/a/b", "/"), "/a/b");
  EXPECT_EQ(String::shortenHomeFolder("/a/b", ""), "/a/b");
}

TEST(StringsTest, CharactersAreCodePoints) {
  const std::string text = "K\u00e4\u4e16\U0001F600";
  EXPECT_EQ(String::characterCount(text), 4U);
  const std::pair<std::size_t, std::string> rows[] = {{0, ""}, {2, "K\u00e4"}, {4, text}, {9, text}};
  for (const auto& [count, first] : rows) EXPECT_EQ(String::firstCharacters(text, count), first) << count;
}

TEST(StringsTest, SplitKeepsEmptyParts) {
  const std::pair<const char*, std::vector<std::string_view>> rows[] = {
      {"", {""}}, {"a", {"a"}}, {"a:b", {"a", "b"}}, {":a::b:", {"", "a", "", "b", ""}}};
  for (const auto& [text, parts] : rows) EXPECT_EQ(String::split(text, ':'), parts) << text;
}

TEST(StringsTest, OnlyTheFirstLetterChangesItsCase) {
  const std::vector<std::pair<std::string, std::string>> rows{
      {"no selection", "No selection"},
      {"\u00e9tat ABC", "\u00c9tat ABC"},
      {"\U00010428x", "\U00010400x"},
      {"\u01c6ep", "\u01c5ep"},
      {"1a", "1a"},
      {"", ""},
  };
  for (const auto& [text, raised] : rows) EXPECT_EQ(String::firstUppercased(text), raised);
  EXPECT_EQ(String::firstLowercased("\u00c9tat ABC"), "\u00e9tat ABC");
}

TEST(StringsTest, FoldingIgnoresCaseAndAccentsOnly) {
  const std::vector<std::vector<std::string>> alike{
      {"resume", "R\u00e9sum\u00e9", "RE\u0301SUME\u0301"},
      {"strasse", "STRASSE", "Stra\u00dfe", "STRA\u1e9eE"},
      {"i", "I", "\u0130", "i\u0307"},
      {"\u03bf\u03b4\u03bf\u03c3", "\u039f\u0394\u039f\u03a3", "\u03bf\u03b4\u03cc\u03c2"},
      {"\uac00", "\u1100\u1161"},
  };
  for (const auto& row : alike) {
    for (const auto& text : row) EXPECT_EQ(String::fold(text), String::fold(row[0])) << text;
  }
  EXPECT_NE(String::fold("\u304b"), String::fold("\u304c"));  // ka and ga
  EXPECT_NE(String::fold("o"), String::fold("0"));
  EXPECT_EQ(String::fold("bad \xff utf-8 \xe2\x82").find("bad "), 0U);
}

TEST(StringsTest, TextIsCutBetweenCharacters) {
  const struct {
    const char* text;
    std::size_t most;
    const char* first;
    const char* last;
  } rows[] = {
      {"abc", 3, "abc", "abc"},
      {"abc", 2, "ab", "bc"},
      {"abc", 0, "", ""},
      {"a\u00e4b", 2, "a", "b"},
      {"\u00e4", 1, "", ""},
      {"a\U0001f600b", 4, "a", "b"},
      {"a\U0001f600b", 5, "a\U0001f600", "\U0001f600b"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(String::firstBytes(row.text, row.most), row.first) << row.text;
    EXPECT_EQ(String::lastBytes(row.text, row.most), row.last) << row.text;
  }
}

TEST(StringsTest, ATextIsMadeReadable) {
  struct Row {
    std::string text;
    std::size_t most;
    const char* result;
  };
  constexpr auto all = std::string::npos;
  const Row rows[] = {
      {"", all, ""},
      {"aä€😀", all, "aä€😀"},
      {"a\xff"
       "b",
       all, "a\uFFFDb"},
      {"\xe2\x82", all, "\uFFFD\uFFFD"},                  // the beginning of a character
      {"\xc0\x80\xed\xa0\x80", 9, "\uFFFD\uFFFD\uFFFD"},  // overlong, surrogate
      {"aä€", 6, "aä€"},
      {"aä€", 5, "aä"},
      {"aä€", 0, ""},
      {"\xff", 2, ""},
  };
  for (const Row& row : rows) EXPECT_EQ(String::readableText(row.text, row.most), row.result) << row.text;
}

TEST(StringsTest, AShellWordIsQuotedOnlyIfItMustBe) {
  const std::vector<std::pair<std::string, std::string>> rows{
      {"/bin/ls", "/bin/ls"}, {"a=b,c:d@e%f+g~", "a=b,c:d@e%f+g~"},
      {"", "\"\""},           {"a b", "\"a b\""},
      {"a;b", "\"a;b\""},     {"$HOME", "'$HOME'"},
      {"it's", "\"it's\""},   {"a\nb", "\"a\nb\""},
  };
  for (const auto& [text, word] : rows) EXPECT_EQ(String::shellWord(text), word) << text;
}

TEST(StringsTest, PercentEncodingKeepsLettersDigitsAndTheGivenCharacters) {
  EXPECT_EQ(String::percentEncoded("az AZ09-._~/%\xc3\xa4\x7f", "-._~"), "az%20AZ09-._~%2f%25%c3%a4%7f");
  EXPECT_EQ(String::percentEncoded("-.", ""), "%2d%2e");
}

TEST(DigitsTest, OnlyDigitsOfTheBaseAreRead) {
  const struct {
    std::string text;
    std::optional<std::int64_t> decimal, octal;
  } rows[] = {
      {"022", 22, 18},
      {"0", 0, 0},
      {"9", 9, std::nullopt},
      {"9223372036854775807", INT64_MAX, std::nullopt},
      {"9223372036854775808", std::nullopt, std::nullopt},
      {"777777777777777777777", std::nullopt, INT64_MAX},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Decimal::toInt(row.text), row.decimal) << row.text;
    EXPECT_EQ(Octal::toInt(row.text), row.octal) << row.text;
  }
  for (const std::string& text : {""s, "0x1"s, " 22"s, "22 "s, "-22"s, "+22"s, "22\0"s, "1000000000000000000000"s}) {
    EXPECT_EQ(Decimal::toInt(text), std::nullopt) << text;
    EXPECT_EQ(Octal::toInt(text), std::nullopt) << text;
  }
}

TEST(DigitsTest, MasksHaveAtLeastThreeOctalDigits) {
  const struct {
    std::int64_t mask;
    const char* digits;
    const char* prepared;
    const char* shown;
  } rows[] = {
      {18, "22", "022", "022"}, {0, "0", "000", "000"}, {4095, "7777", "777", "7777"}, {-18, "-22", "-22", "-22"}};
  for (const auto& row : rows) {
    EXPECT_EQ(Octal::fromInt(row.mask), row.digits);
    EXPECT_EQ(Octal::preparedString(row.digits), row.prepared);
    EXPECT_EQ(Octal::displayString(row.mask), row.shown);
  }
}

TEST(DigitsTest, AMaskWithholdsPermissionsFromEachClassOfUsers) {
  using Octal::Attribute;
  using Octal::Mask;
  const Attribute all{true, true, true};
  const struct {
    std::int64_t number;
    Mask mask;
    const char* file;
    const char* folder;
  } rows[] = {
      {0, {}, "rw-rw-rw-", "rwxrwxrwx"},
      {022, {Attribute{}, Attribute{.write = true}, Attribute{.write = true}}, "rw-r--r--", "rwxr-xr-x"},
      {077, {Attribute{}, all, all}, "rw-------", "rwx------"},
      {0421, {Attribute{.read = true}, Attribute{.write = true}, Attribute{.execute = true}}, "-w-r--rw-", "-wxr-xrw-"},
      {07777, {all, all, all}, "---------", "---------"},
      {-1, {all, all, all}, "---------", "---------"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.number);
    EXPECT_EQ(Octal::mask(row.number), row.mask);
    EXPECT_EQ(Octal::withMask(row.number, row.mask), row.number) << "bits of no class are kept";
    EXPECT_EQ(Octal::newFile(row.number), row.file);
    EXPECT_EQ(Octal::newFolder(row.number), row.folder);
  }
  EXPECT_EQ(Octal::withMask(07022, Octal::mask(0)), 07000);
  for (char digit = '0'; digit <= '7'; ++digit) {
    EXPECT_EQ(Octal::maskCharacter(Octal::attribute(digit)), digit);
  }
  EXPECT_EQ(Octal::attribute('8'), Attribute());
}

TEST(TextTest, CommandsAreSplitLikeAShellDoes) {
  const std::pair<std::string, std::vector<std::string>> rows[] = {
      {"", {""}},
      {" \t\n ", {""}},
      {"/bin/ls -l", {"/bin/ls", "-l"}},
      {"  a \t b\nc\r\nd ", {"a", "b", "c", "d"}},
      {R"(echo "a b" 'c d')", {"echo", "a b", "c d"}},
      {R"(a"b c"'d e'f)", {"ab cd ef"}},
      {R"(a\ b \"c\' \\)", {"a b", "\"c'", "\\"}},
      {R"('a\b"c')", {R"(a\b"c)"}},
      {R"("a\b\$\`\"\\")", {R"(a\b$`"\)"}},
      {R"("it's")", {"it's"}},
      {"'' \"\" x", {"", "", "x"}},
      {"''", {""}},
      {"a''", {"a"}},
      {"a\\\nb \\\n c", {"ab", "c"}},
      {"\"a\\\nb\" '\\\n'", {"ab", "\\\n"}},
      {"a 'b c", {"a", "b c"}},
      {"a \"b c\\", {"a", "b c\\"}},
      {"a '", {"a", ""}},
      {"a\\", {"a\\"}},
      {"a | b > $HOME # c; ~ *", {"a", "|", "b", ">", "$HOME", "#", "c;", "~", "*"}},
      {"/Anwendungen/K\u00e4se\u3000x", {"/Anwendungen/K\u00e4se\u3000x"}},
  };
  for (const auto& [text, arguments] : rows) EXPECT_EQ(Text::separateCommand(text), arguments) << text;
}

TEST(TextTest, TheSimplestSufficientQuotesAreUsed) {
  const std::pair<const char*, const char*> rows[] = {{"/a b", R"("/a b")"},
                                                      {"/it's", R"("/it's")"},
                                                      {"/a $b", "'/a $b'"},
                                                      {"/it's $b", R"("/it's \$b")"},
                                                      {"", R"("")"}};
  for (const auto& [path, quoted] : rows) EXPECT_EQ(String::quote(path), quoted);
}

TEST(TextTest, QuotedTextIsReadBackUnchanged) {
  std::mt19937 random(20000101);
  const std::string characters = " \t\n\r'\"\\$`!~*;|<>ab/";
  for (int round = 0; round < 20000; ++round) {
    std::string path;
    for (auto length = random() % 9; length > 0; --length) path += characters[random() % characters.size()];
    std::string appended = "x";
    Text::appendArgument(appended, path);
    for (const std::string& command : {"x " + String::quote(path) + " y", appended + " y"}) {
      ASSERT_EQ(Text::separateCommand(command), (std::vector<std::string>{"x", path, "y"})) << command;
    }
  }
}

}  // namespace
}  // namespace mirvel
