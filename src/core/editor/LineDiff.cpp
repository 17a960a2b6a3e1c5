#include "core/editor/LineDiff.h"

#include <algorithm>
#include <cstdint>
#include <span>

namespace mirvel {

namespace {

using Lines = std::vector<std::string_view>;
using Part = std::span<const std::string_view>;

Lines linesOf(std::string_view text) {
  Lines lines;
  while (!text.empty()) {
    const auto end = text.find('\n');
    lines.push_back(text.substr(0, end));
    text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
  }
  return lines;
}

void add(std::vector<DiffLine>& result, DiffLine::In in, Part lines) {
  for (const std::string_view line : lines) result.push_back({.in = in, .text = line});
}

/// The length of the longest common subsequence of the rests of both texts, for each pair of positions.
class CommonLines {
 public:
  CommonLines(Part mine, Part theirs) : m_width(theirs.size() + 1), m_counts((mine.size() + 1) * m_width) {
    for (std::size_t i = mine.size(); i-- > 0;) {
      for (std::size_t j = theirs.size(); j-- > 0;) {
        m_counts[i * m_width + j] = mine[i] == theirs[j] ? of(i + 1, j + 1) + 1 : std::max(of(i + 1, j), of(i, j + 1));
      }
    }
  }

  std::uint32_t of(std::size_t i, std::size_t j) const { return m_counts[i * m_width + j]; }

 private:
  std::size_t m_width;
  std::vector<std::uint32_t> m_counts;
};

void addDifferent(std::vector<DiffLine>& result, Part mine, Part theirs) {
  constexpr std::size_t mostPairs = 4'000'000;  // 16 MB of counts
  std::size_t i = 0;
  std::size_t j = 0;
  if (mine.size() * theirs.size() <= mostPairs) {
    const CommonLines common(mine, theirs);
    while (i < mine.size() && j < theirs.size()) {
      if (mine[i] == theirs[j]) {
        result.push_back({.in = DiffLine::In::Both, .text = mine[i]});
        ++i, ++j;
      } else if (common.of(i + 1, j) >= common.of(i, j + 1)) {
        result.push_back({.in = DiffLine::In::Mine, .text = mine[i++]});
      } else {
        result.push_back({.in = DiffLine::In::Theirs, .text = theirs[j++]});
      }
    }
  }
  add(result, DiffLine::In::Mine, mine.subspan(i));
  add(result, DiffLine::In::Theirs, theirs.subspan(j));
}

}  // namespace

std::vector<DiffLine> lineDiff(std::string_view mine, std::string_view theirs) {
  const Lines mineLines = linesOf(mine);
  const Lines theirLines = linesOf(theirs);
  const auto [differs, alsoDiffers] =
      std::mismatch(mineLines.begin(), mineLines.end(), theirLines.begin(), theirLines.end());
  const auto first = static_cast<std::size_t>(differs - mineLines.begin());
  const Part restOfMine = Part(mineLines).subspan(first);
  const Part restOfTheirs = Part(theirLines).subspan(first);
  const auto [last, alsoLast] =
      std::mismatch(restOfMine.rbegin(), restOfMine.rend(), restOfTheirs.rbegin(), restOfTheirs.rend());
  const auto equalAtEnd = static_cast<std::size_t>(last - restOfMine.rbegin());

  std::vector<DiffLine> result;
  add(result, DiffLine::In::Both, Part(mineLines).first(first));
  addDifferent(result, restOfMine.first(restOfMine.size() - equalAtEnd),
               restOfTheirs.first(restOfTheirs.size() - equalAtEnd));
  add(result, DiffLine::In::Both, restOfMine.last(equalAtEnd));
  return result;
}

}  // namespace mirvel
