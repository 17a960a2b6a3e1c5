#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "core/locale/Localize.h"

namespace mirvel {

/// Coming moments as one says them in a language and a time zone. Slow to make, quick to ask; for one thread.
class MomentTexts {
 public:
  /// `localize` outlives it. `zone` is a name such as "Europe/Berlin"; one that isn't known counts as UTC.
  MomentTexts(const Localize& localize, std::string zone);
  ~MomentTexts();
  MomentTexts(const MomentTexts&) = delete;
  MomentTexts& operator=(const MomentTexts&) = delete;

  const Localize& localize() const { return m_localize; }
  const std::string& zone() const { return m_zone; }

  /// "tomorrow 9:00 AM", "Monday 9:00 AM" for less than a week, and otherwise "Dec 24, 9:00 AM", with the year if it is
  /// another. `day` is that of the moment in the zone.
  std::string text(std::chrono::sys_seconds moment, std::chrono::local_days day, std::chrono::local_days today) const;

 private:
  struct Formats;

  const Localize& m_localize;
  const std::string m_zone;
  std::unique_ptr<const Formats> m_formats;
};

}  // namespace mirvel
