#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace mirvel {

/// Compares names in the order that users expect: that of the locale's language, with numbers inside names compared by
/// value ("job 2" before "job 10"). Slow to construct, so the program shares one. Thread-safe.
class Collator {
 public:
  /// Unknown locales use the root collation of Unicode.
  explicit Collator(const std::string& locale);
  ~Collator();
  Collator(const Collator&) = delete;
  Collator& operator=(const Collator&) = delete;

  /// Negative if `a` sorts before `b`, positive if after, 0 if they are equivalent. Invalid UTF-8 sorts like U+FFFD.
  int localizedStandardCompare(std::string_view a, std::string_view b) const;
  /// A key whose bytes compare as the texts do; for sorting long lists.
  std::string sortKey(std::string_view text) const;
  /// Appends a key to `keys` that takes a tenth of the time of `sortKey`. These keys compare with each other as the
  /// texts do, but not with those of `sortKey`. False, without any effect, for a text that isn't printable ASCII, and
  /// for all texts in a locale with rules of its own for ASCII, such as the Czech "ch".
  bool appendAsciiKey(std::string& keys, std::string_view text) const;

 private:
  struct Implementation;
  std::unique_ptr<const Implementation> m_implementation;
};

}  // namespace mirvel
