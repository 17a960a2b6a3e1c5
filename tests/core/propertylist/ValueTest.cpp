#include "core/propertylist/Value.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace mirvel::propertylist {
namespace {

std::vector<std::string> keys(const Dictionary& dictionary) {
  std::vector<std::string> result;
  for (const auto& entry : dictionary) result.push_back(entry.key);
  return result;
}

TEST(DictionaryTest, KeysAreSortedByUtf16CodeUnit) {
  // U+1F600 is the pair D83D DE00 in UTF-16, so it comes before U+FB01, though its UTF-8 bytes are greater.
  const Dictionary dictionary{{"\uFB01", 1}, {"\U0001F600", 2}, {"b", 3}, {"B", 4}, {"ba", 5}, {"\uD7FF", 6}, {"", 7}};
  EXPECT_EQ(keys(dictionary), (std::vector<std::string>{"", "B", "b", "ba", "\uD7FF", "\U0001F600", "\uFB01"}));
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

TEST(DictionaryTest, GetReturnsValuesOfTheRequestedTypeOnly) {
  Dictionary dictionary{{"yes", true}, {"one", 1}, {"inner", Dictionary{{"text", "x"}}}};
  EXPECT_EQ(*dictionary.get<bool>("yes"), true);
  EXPECT_EQ(dictionary.get<Integer>("yes"), nullptr);
  EXPECT_EQ(dictionary.get<double>("one"), nullptr);
  EXPECT_EQ(dictionary.get<Integer>("two"), nullptr);
  dictionary.get<Dictionary>("inner")->set("text", "y");
  EXPECT_EQ(*dictionary.get<Dictionary>("inner")->get<std::string>("text"), "y");
}

TEST(ValueTest, ValuesOfDifferentTypesAreNeverEqual) {
  EXPECT_NE(Value(1), Value(1.0));
  EXPECT_NE(Value(1), Value(true));
  EXPECT_NE(Value("x"), Value(Data{"x"}));
  EXPECT_EQ(Value(std::nan("")), Value(std::nan("")));
  EXPECT_EQ(Value(Set{{1, 2}}), Value(Set{{2, 1}}));
  EXPECT_NE(Value(Array{1, 2}), Value(Array{2, 1}));
}

TEST(ValueTest, IntegersRangeFromMinus2To63To2To64) {
  const Integer most = Integer::fromUnsigned(std::numeric_limits<std::uint64_t>::max());
  EXPECT_EQ(most.text(), "18446744073709551615");
  EXPECT_FALSE(most.toInt64());
  EXPECT_NE(most, Integer(-1));
  EXPECT_EQ(Integer(std::numeric_limits<std::int64_t>::min()).text(), "-9223372036854775808");
}

}  // namespace
}  // namespace mirvel::propertylist
