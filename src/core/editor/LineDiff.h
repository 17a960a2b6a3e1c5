#pragma once

#include <string_view>
#include <vector>

namespace mirvel {

/// A line of one or both of two texts.
struct DiffLine {
  enum class In { both, mine, theirs };

  In in = In::both;
  std::string_view text;

  bool operator==(const DiffLine&) const = default;
};

/// The lines of both texts in their order, with as many in common as there are. Texts that are very long and differ all
/// over count as wholly different from the first to the last line that differs. The texts outlive the result.
std::vector<DiffLine> lineDiff(std::string_view mine, std::string_view theirs);

}  // namespace mirvel
