#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace mirvel {

/// A stable sort that is safe whatever `before` answers, where the ones of the standard library ask for a strict weak
/// order. Two elements of which both, or neither, stand before the other keep their order.
template <typename T, typename Before>
void stableSort(std::vector<T>& elements, Before before) {
  const auto mustSwap = [&before](const T& left, const T& right) {
    return before(right, left) && !before(left, right);
  };
  std::vector<T> merged(elements.size());
  const auto at = [&elements](std::size_t index) {
    return elements.begin() + static_cast<std::ptrdiff_t>(std::min(index, elements.size()));
  };
  for (std::size_t width = 1; width < elements.size(); width *= 2) {
    auto out = merged.begin();
    for (std::size_t start = 0; start < elements.size(); start += 2 * width) {
      auto left = at(start);
      auto right = at(start + width);
      const auto leftEnd = right;
      const auto rightEnd = at(start + 2 * width);
      while (left != leftEnd && right != rightEnd) *out++ = std::move(mustSwap(*left, *right) ? *right++ : *left++);
      out = std::move(left, leftEnd, out);
      out = std::move(right, rightEnd, out);
    }
    elements.swap(merged);
  }
}

}  // namespace mirvel
