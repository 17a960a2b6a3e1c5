#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace mirvel::jobfile {

/// Where in the file a value stands: a key of a dictionary or an index of an array, below another place. Made on the
/// stack while decoding goes down, so that only an error pays for a text; it must not outlive what it points to.
class Place {
 public:
  Place() = default;  ///< the top
  /// The top, where entries that don't fit are left out instead of failing the whole.
  static Place tolerant() {
    Place top;
    top.m_isTolerant = true;
    return top;
  }
  Place key(std::string_view key) const { return {this, key, 0}; }
  Place index(std::size_t index) const { return {this, {}, index}; }
  bool isTolerant() const { return m_isTolerant; }

  /// Such as `ProgramArguments[2]`; a key with a dot or bracket of its own isn't marked. Very long keys are
  /// cut, since a file can bring a place for each of thousands of errors under one of them.
  std::string text() const;

 private:
  Place(const Place* above, std::string_view key, std::size_t index)
      : m_above(above), m_key(key), m_index(index), m_isTolerant(above->m_isTolerant) {}

  const Place* m_above = nullptr;
  std::string_view m_key;  // data() is null for an index
  std::size_t m_index = 0;
  bool m_isTolerant = false;
};

}  // namespace mirvel::jobfile
