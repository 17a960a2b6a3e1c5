#pragma once

#include <functional>
#include <memory>
#include <string>

#include "core/locale/Localize.h"
#include "core/schedule/MomentTexts.h"
#include "core/schedule/ZoneStretches.h"

namespace mirvel {

/// Formats the times of runs, relative to today. Follows a change of the time zone within a minute. For the main
/// thread.
class RunMoments {
 public:
  /// Returns the name of a time zone, such as "Europe/Berlin".
  using Zone = std::function<std::string()>;

  /// `localize` must outlive this object. Nothing is loaded before the first use.
  explicit RunMoments(const Localize& localize, Zone zone = zoneOfThisMachine);

  /// "yesterday 9:00 AM"; see `MomentTexts`. Both are seconds since 1970. Empty for a time out of the range of a date.
  std::string text(double moment, double now) const;

  /// A local day, in seconds since 1970.
  struct Day {
    double begin = 0;
    double end = 0;

    bool contains(double moment) const { return moment >= begin && moment < end; }
  };
  /// The day of a moment, which must be in the range of a date.
  Day dayOf(double moment) const;

 private:
  const Localize& m_localize;
  const Zone m_zone;
  mutable std::unique_ptr<const MomentTexts> m_texts;  // null before the first use
  mutable double m_checked = 0;                        // when the zone was last compared
};

}  // namespace mirvel
