#pragma once

#include <string_view>
#include <vector>

namespace mirvel {

/// A line of a comparison, without its line break.
struct DiffLine {
  enum class In { Both, Mine, Theirs };

  In in = In::Both;
  std::string_view text;  ///< refers to one of the compared texts

  bool operator==(const DiffLine&) const = default;
};

/// The lines of both texts in their order, with a longest common subsequence as `Both`. To bound time and memory, the
/// part between the first and the last difference counts as completely different if it is very long in both texts. The
/// texts must outlive the result.
///
///     lineDiff("a\nb", "b\nc") → Mine a, Both b, Theirs c
std::vector<DiffLine> lineDiff(std::string_view mine, std::string_view theirs);

}  // namespace mirvel
