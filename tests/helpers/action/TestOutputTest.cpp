#include "helpers/action/TestOutput.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace mirvel {
namespace {

/// Cuts the text into pieces of a size.
std::vector<std::string> pieces(const std::string& text, std::size_t size) {
  std::vector<std::string> result;
  for (std::size_t i = 0; i < text.size(); i += size) result.push_back(text.substr(i, size));
  return result;
}

TEST(TestOutputTest, BeginningAndEndAreKeptAndTheRestIsCounted) {
  const struct {
    std::string printed;
    std::string beginning;
    std::optional<std::string> end;
    int lines = 0;
    int bytes = 0;
  } rows[] = {
      {"", "", {}},
      {"short", "short", {}},
      {"12345678", "12345678", {}},
      {"123456789", "123456789", {}},
      {"1234567890123456", "1234567890123456", {}},
      {"12345678a01234567", "12345678", "01234567", 0, 1},
      {"12345678\na\n01234567", "12345678", "01234567", 2, 3},
      {"1234567\xC3\xA9", "1234567\xC3\xA9", {}},
      {"1234567\xC3\xA9"
       "abc1234567",
       "1234567", "c1234567", 0, 4},
      {"123456\xE6\x97\xA5"
       "abcde\xE6\x97\xA5zyxvu",
       "123456", "\xE6\x97\xA5zyxvu", 0, 8},
      {"12345678abcdefg\xE6\x97\xA5zyxvuts", "12345678", "zyxvuts", 0, 10},
      {"12345678" + std::string(1000, '\n') + "12345678", "12345678", "12345678", 1000, 1000},
      {"a\xFF\xC3", "a\xEF\xBF\xBD\xEF\xBF\xBD", {}},
      {"1234567\xE6", "1234567\xEF\xBF\xBD", {}},
  };
  for (const auto& row : rows) {
    for (const std::size_t size : {1U, 2U, 3U, 7U, 8U, 9U, 1000U}) {
      TestOutput output(8);
      for (const auto& piece : pieces(row.printed, size)) output.append(piece);
      const auto result = output.result();
      EXPECT_EQ(result.text, row.beginning) << row.printed << " in pieces of " << size;
      EXPECT_EQ(result.end, row.end) << row.printed << " in pieces of " << size;
      EXPECT_EQ(result.droppedLines, row.lines) << row.printed << " in pieces of " << size;
      EXPECT_EQ(result.droppedBytes, row.bytes) << row.printed << " in pieces of " << size;
    }
  }
}

TEST(TestOutputTest, ThePiecesOfABeginningAreTheBeginning) {
  const std::string printed = "gr\xC3\xBCn \xE6\x97\xA5\xE6\x9C\xAC\xF0\x9F\x98\x80 \xFF\xE6 end\n";
  for (const std::size_t size : {1U, 2U, 3U, 5U, 100U}) {
    TestOutput output(100);
    std::string shown;
    bool isLost = false;
    for (const auto& piece : pieces(printed, size)) {
      output.append(piece);
      const auto sent = output.takePiece();
      isLost = !isLost;
      if (sent && isLost) {
        output.putBack();
      } else if (sent) {
        shown += sent->beginning;
        EXPECT_EQ(sent->end, std::nullopt);
      }
    }
    if (const auto last = output.takePiece()) shown += last->beginning;
    EXPECT_EQ(shown, output.result().text) << size;
    EXPECT_EQ(output.takePiece(), std::nullopt) << "nothing is new";
  }
}

TEST(TestOutputTest, APieceOfTheEndIsShortAndCountsWhatItLeavesOut) {
  TestOutput output;
  std::string lines;
  while (lines.size() < 2 * TestOutput::usualLimit) lines += "y\n";
  output.append(lines);
  const auto piece = output.takePiece();
  ASSERT_TRUE(piece && piece->end);
  EXPECT_EQ(piece->beginning.size(), TestOutput::usualLimit);
  EXPECT_EQ(piece->end->size(), TestOutput::passingEnd);
  EXPECT_EQ(piece->droppedBytes + static_cast<std::int64_t>(TestOutput::passingEnd + TestOutput::usualLimit),
            static_cast<std::int64_t>(lines.size()));
  EXPECT_EQ(piece->droppedLines * 2, piece->droppedBytes);
  EXPECT_EQ(output.result().text.size(), lines.size()) << "nothing is left out of the result";
}

}  // namespace
}  // namespace mirvel
