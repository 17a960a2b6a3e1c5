#include "core/editor/LineDiff.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace mirvel {
namespace {

/// As "=a -b +c".
std::string shown(const std::vector<DiffLine>& lines) {
  std::string result;
  for (const DiffLine& line : lines) {
    const char sign = line.in == DiffLine::In::Both ? '=' : line.in == DiffLine::In::Mine ? '-' : '+';
    result += (result.empty() ? "" : " ") + std::string(1, sign) + std::string(line.text);
  }
  return result;
}

TEST(LineDiffTest, CommonLinesAreAligned) {
  const struct {
    const char* mine;
    const char* theirs;
    const char* diff;
  } table[] = {
      {"", "", ""},
      {"a\nb\n", "a\nb\n", "=a =b"},
      {"a", "a\n", "=a"},
      {"a\nb\nc", "a\nx\nc", "=a -b +x =c"},
      {"a\nb\nc\nd", "b\nd\ne", "-a =b -c =d +e"},
      {"a\na", "a", "=a -a"},
      {"", "x\n\ny", "+x + +y"},
  };
  for (const auto& row : table) EXPECT_EQ(shown(lineDiff(row.mine, row.theirs)), row.diff);
}

TEST(LineDiffTest, BothTextsCanBeReconstructed) {
  std::minstd_rand random(1);
  const auto makeText = [&](std::size_t lines) {
    std::string text;
    for (std::size_t i = 0; i < lines; ++i) text += std::string(1, static_cast<char>('a' + random() % 4)) + "\n";
    return text;
  };
  for (int round = 0; round < 200; ++round) {
    const bool isLong = round == 0;  // too long to be compared line by line
    const std::string mine = makeText(isLong ? 3000 : random() % 20);
    const std::string theirs = makeText(isLong ? 3000 : random() % 20);
    std::string first;
    std::string second;
    for (const DiffLine& line : lineDiff(mine, theirs)) {
      if (line.in != DiffLine::In::Theirs) first += std::string(line.text) + "\n";
      if (line.in != DiffLine::In::Mine) second += std::string(line.text) + "\n";
    }
    EXPECT_EQ(first, mine);
    EXPECT_EQ(second, theirs);
  }
}

}  // namespace
}  // namespace mirvel
