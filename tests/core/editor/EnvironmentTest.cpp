#include <gtest/gtest.h>

#include "core/editor/LooksSecret.h"
#include "core/editor/ParseEnvironment.h"
#include "core/text/Strings.h"

namespace mirvel {
namespace {

TEST(ParseEnvironmentTest, LinesAreReadAsAShellReadsAssignments) {
  const struct {
    const char* text;
    Variables variables;
  } table[] = {
      {"", {}},
      {"\n \t\n# A=1\n  # B\n", {}},
      {"A=1", {{"A", "1"}}},
      {"A=1\nB=2\n", {{"A", "1"}, {"B", "2"}}},
      {"A=1\r\nB=2\r\n", {{"A", "1"}, {"B", "2"}}},
      {"B=1\nA=2\nB=3", {{"B", "3"}, {"A", "2"}}},
      {"  export  A=1", {{"A", "1"}}},
      {"export=1", {{"export", "1"}}},
      {"exported=1", {{"exported", "1"}}},
      {"A=", {{"A", ""}}},
      {"A=''", {{"A", ""}}},
      {"A=b=c", {{"A", "b=c"}}},
      {"A='b c'", {{"A", "b c"}}},
      {"A=\"b c\"", {{"A", "b c"}}},
      {"A=b'c \"d'\"e f\"g", {{"A", "bc \"de fg"}}},
      {"A=\"\\\"\\\\\\$\\`\\n\"", {{"A", "\"\\$`\\n"}}},
      {"A='\\n'", {{"A", "\\n"}}},
      {"A=b\\ c\\\"", {{"A", "b c\""}}},
      {"A=b # c", {{"A", "b"}}},
      {"A=b#c", {{"A", "b#c"}}},
      {"A=$HOME/`x`;y", {{"A", "$HOME/`x`;y"}}},
      {"U=http://x/?a=1&b=2", {{"U", "http://x/?a=1&b=2"}}},
      {"A='b\nc'\nD=e", {{"A", "b\nc"}, {"D", "e"}}},
      {"A=b\\\nc", {{"A", "bc"}}},
      {"my.name-1=x", {{"my.name-1", "x"}}},
      {"A=K\u00e4se", {{"A", "K\u00e4se"}}},
  };
  for (const auto& row : table) {
    const auto parsed = parseEnvironment(row.text);
    ASSERT_TRUE(parsed) << row.text;
    EXPECT_EQ(*parsed, row.variables) << row.text;
  }
}

TEST(ParseEnvironmentTest, TheFirstOtherLineIsRefused) {
  const struct {
    const char* text;
    std::size_t line;
  } table[] = {
      {"x", 1},           {"A=1\n\nx y", 3}, {"A=b c", 1},          {"A =b", 1},   {"=b", 1},
      {"1A=b", 1},        {"A+=b", 1},       {"A=1\nB='c\nd", 2},   {"A=\"b", 1},  {"A=1 B=2", 1},
      {"A='b'#c d", 1},   {"export A", 1},   {"export A=1 B=2", 1}, {"A=1\n{", 2}, {"see http://x?a=b", 1},
      {"A='\n'\nB C", 3},
  };
  for (const auto& row : table) {
    const auto parsed = parseEnvironment(row.text);
    ASSERT_FALSE(parsed) << row.text;
    EXPECT_EQ(parsed.error().code, Error::Code::Malformed);
    EXPECT_EQ(parsed.error().line, row.line) << row.text;
  }
}

TEST(ParseEnvironmentTest, QuotedValuesAreReadBackUnchanged) {
  for (const std::string value : {"a b", "it's", "\"$x\"", "back\\slash", "two\nlines", "#", "a\tb", "~", "!x", ""}) {
    const auto parsed = parseEnvironment("A=" + String::shellWord(value) + "\nB=2");
    ASSERT_TRUE(parsed) << value;
    EXPECT_EQ(*parsed, (Variables{{"A", value}, {"B", "2"}}));
  }
}

TEST(LooksSecretTest, AWordOfTheNameSaysSo) {
  for (const char* name : {"PASSWORD", "db_password", "dbPassword", "PGPASSWORD", "REDIS_PASSWD", "GITHUB_TOKEN",
                           "tokens", "AWS_SECRET_ACCESS_KEY", "ClientSecret", "API_KEY", "apikey", "api-keys",
                           "SSH_PRIVATE_KEY", "ENCRYPTION_KEY", "CREDENTIALS", "TOKEN2", "AccountKey"}) {
    EXPECT_TRUE(looksSecret(name)) << name;
  }
  for (const char* name : {"", "KEYBOARD", "MONKEY", "KEY", "MONKEY_KEY", "TOKENIZERS_PARALLELISM", "SECRETARY", "PATH",
                           "PASSENGER", "ACCESS_LOG", "PUBLIC_KEY", "SSH_AUTH_SOCK"}) {
    EXPECT_FALSE(looksSecret(name)) << name;
  }
}

}  // namespace
}  // namespace mirvel
