#pragma once

#include <bitset>
#include <string>

namespace mirvel::Scheduled {

/// A set of days of the week: bit 0 is Sunday, bit 6 is Saturday.
using Days = std::bitset<7>;

/// The weekdays and weekends of a region. A day on which the weekend begins or ends is classified by its noon.
struct Week {
  Days weekends;
  Days weekdays;  ///< all other days

  /// The week of a locale such as "en_US". Without a region, that of the main region of its language; without locale
  /// data, Saturday and Sunday are the weekend.
  static Week of(const std::string& locale);
  /// The week of the user's locale, cached on first use. Thread-safe.
  static const Week& current();

  bool operator==(const Week&) const = default;
};

}  // namespace mirvel::Scheduled
