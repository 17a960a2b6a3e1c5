#include "core/process/Arguments.h"

#include <gmock/gmock.h>

namespace mirvel {
namespace {

using testing::ElementsAre;
using testing::Pair;

Result<ParsedArguments> parse(const std::vector<std::string>& words) {
  return parseArguments(words, {{"--json"}, {"--root", true}});
}

TEST(ArgumentsTest, OptionsAndOperandsAreMixedUpToTheDoubleDash) {
  const auto parsed = parse({"a", "--root", "/x", "-", "--json", "--root=/y=z", "--", "--json", "-q"});
  ASSERT_TRUE(parsed);
  EXPECT_THAT(parsed->operands, ElementsAre("a", "-", "--json", "-q"));
  EXPECT_THAT(parsed->options, ElementsAre(Pair("--root", "/x"), Pair("--json", ""), Pair("--root", "/y=z")));
  EXPECT_EQ(parsed->value("--root"), "/y=z");
  EXPECT_TRUE(parsed->has("--json"));
  EXPECT_FALSE(parsed->has("--other"));
}

TEST(ArgumentsTest, UnknownOptionsAndMissingOrExtraValuesAreRejected) {
  for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
           {"--other"}, {"-j"}, {"--jso"}, {"--json=yes"}, {"--root"}, {"x", "--root"}, {"--root=/x", "---"}}) {
    const auto parsed = parse(words);
    ASSERT_FALSE(parsed) << words.front();
    EXPECT_EQ(parsed.error().code, Error::Code::BadArgument) << words.front();
  }
}

}  // namespace
}  // namespace mirvel
