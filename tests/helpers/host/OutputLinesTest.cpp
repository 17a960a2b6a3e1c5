#include "helpers/host/OutputLines.h"

#include <gmock/gmock.h>

namespace mirvel::host {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

std::string repeated(std::size_t count) {
  return std::string(count, 'x');
}

TEST(OutputLines, AreTheSameHoweverTheOutputIsCut) {
  constexpr std::size_t longest = OutputLines::longestLine;
  const struct {
    std::string output;
    std::vector<std::string> lines;
    std::string rest;
  } rows[] = {
      {"", {}, ""},
      {"one\n\nthree\nfour", {"one", "", "three"}, "four"},
      {"\n", {""}, ""},
      {std::string("a\0b\x01\xff\r\n", 7), {std::string("a\0b\x01\xff\r", 6)}, ""},
      {repeated(longest) + "\n", {repeated(longest)}, ""},
      {repeated(longest) + "\n\n", {repeated(longest), ""}, ""},
      {repeated(longest + 1) + "\n", {repeated(longest), "x"}, ""},
      {repeated(2 * longest), {repeated(longest)}, repeated(longest)},
  };
  for (const auto& row : rows) {
    for (std::size_t cut = 0; cut <= row.output.size(); ++cut) {
      OutputLines output;
      auto lines = output.add(std::string_view(row.output).substr(0, cut));
      for (auto& line : output.add(std::string_view(row.output).substr(cut))) lines.push_back(std::move(line));
      ASSERT_EQ(lines, row.lines) << cut;
      EXPECT_EQ(output.isWithinLine(), !row.rest.empty());
      EXPECT_EQ(output.finish(), row.rest.empty() ? std::vector<std::string>() : std::vector{row.rest});
      EXPECT_THAT(output.finish(), ElementsAre());
    }
  }
}

TEST(OutputBudget, CountsWhatItDropsUntilThePeriodIsOver) {
  OutputBudget budget;
  const std::string half = repeated(OutputBudget::size / 2);
  EXPECT_TRUE(budget.admit(half, 5s));
  EXPECT_TRUE(budget.admit(half, 6s)) << "exactly the size";
  EXPECT_EQ(budget.droppedAt(), std::nullopt);
  EXPECT_FALSE(budget.admit("a\nb\nc", 7s));
  EXPECT_TRUE(budget.isExceeded(7s));
  EXPECT_FALSE(budget.admit("\n", 14999ms));
  EXPECT_FALSE(budget.admit("d", 14999ms));
  EXPECT_EQ(budget.takeDropped(14999ms), std::nullopt);
  EXPECT_EQ(budget.droppedAt(), 15s);
  EXPECT_FALSE(budget.isExceeded(15s));
  EXPECT_EQ(budget.takeDropped(15s), (OutputBudget::Dropped{.lines = 4, .bytes = 7}));
  EXPECT_EQ(budget.takeDropped(), std::nullopt);
  EXPECT_TRUE(budget.admit("again\n", 15s));
}

TEST(OutputBudget, KeepsNothingAfterTheFirstBytesThatExceedIt) {
  OutputBudget budget;
  EXPECT_TRUE(budget.admit(repeated(OutputBudget::size - 1), 0s));
  EXPECT_FALSE(budget.admit("xx", 1s));
  EXPECT_FALSE(budget.admit("\n", 2s)) << "which would fit, but in the middle of what is dropped";
  budget.skip(1000);
  const auto dropped = budget.takeDropped();
  EXPECT_EQ(dropped, (OutputBudget::Dropped{.lines = 1, .bytes = 1003, .uncounted = 1000}));
  EXPECT_EQ(dropped->text(), "[dropped 1 line or more (1003 bytes): the job prints too much]");
}

}  // namespace
}  // namespace mirvel::host
