#pragma once

#include <bitset>
#include <string>

namespace mirvel::Scheduled {

/// Days of the week by number: 0 is Sunday, 6 is Saturday.
using Days = std::bitset<7>;

/// Which days a region works on and which it rests on. A day on which the weekend begins or ends counts as the region
/// has it at noon.
struct Week {
  Days weekends;
  Days weekdays;  ///< all others

  /// The week of a locale such as "en_US"; one without a region of its own gets that of its language's main region.
  static Week of(const std::string& locale);
  /// The week of the user's locale, as it was when first asked for. Any thread may ask.
  static const Week& current();

  bool operator==(const Week&) const = default;
};

}  // namespace mirvel::Scheduled
