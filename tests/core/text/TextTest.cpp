#include "core/text/Text.h"

#include <gtest/gtest.h>

#include <random>

#include "core/text/Strings.h"

namespace mirvel {
namespace {

TEST(TextTest, CommandsAreSplitLikeAShellDoes) {
  struct Row {
    std::string text;
    std::vector<std::string> arguments;
  };
  const std::vector<Row> rows{
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
  for (const auto& row : rows) EXPECT_EQ(Text::separateCommand(row.text), row.arguments) << row.text;
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
