#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace mirvel {

/// The order in which a person expects names: that of the locale's language, with numbers inside names by their value
/// ("job 2" before "job 10"). Making one is slow, so there is one for the program; it may be used from any thread.
class Collator {
 public:
  /// A locale that isn't known gets the root order of Unicode.
  explicit Collator(const std::string& locale);
  ~Collator();
  Collator(const Collator&) = delete;
  Collator& operator=(const Collator&) = delete;

  /// Below 0: `a` comes first; 0: they are the same in order.
  int localizedStandardCompare(std::string_view a, std::string_view b) const;
  /// Bytes that compare as the texts do, for sorting long lists.
  std::string sortKey(std::string_view text) const;

 private:
  struct Implementation;
  std::unique_ptr<const Implementation> m_implementation;
};

}  // namespace mirvel
