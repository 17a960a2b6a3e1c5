#pragma once

#include <cstddef>
#include <limits>

namespace mirvel {

/// The place of a job among groups of jobs, or that of a group itself.
struct IndexPath {
  /// Stands for a group in place of an item.
  static constexpr std::size_t group = std::numeric_limits<std::size_t>::max();

  std::size_t section = 0;
  std::size_t item = group;

  bool operator==(const IndexPath&) const = default;
};

}  // namespace mirvel
