#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "core/locale/Localize.h"

namespace mirvel {

/// Formats moments relative to today. Slow to construct, fast to use. Not thread-safe.
class MomentTexts {
 public:
  /// `localize` must outlive it. `zone` is a name such as "Europe/Berlin"; unknown names count as UTC.
  MomentTexts(const Localize& localize, std::string zone);
  ~MomentTexts();
  MomentTexts(const MomentTexts&) = delete;
  MomentTexts& operator=(const MomentTexts&) = delete;

  /// The texts and locales in use.
  const Localize& localize() const { return m_localize; }
  /// The name as given to the constructor, known or not.
  const std::string& zone() const { return m_zone; }

  /// "today 9:00 AM", "tomorrow 9:00 AM" or "yesterday 9:00 AM", "Monday 9:00 AM" within a coming week, otherwise "Dec
  /// 24, 9:00 AM", with the year if it isn't the current one. Words are those of the language, formats those of the
  /// time locale. `day` is the day of the moment in the zone.
  std::string text(std::chrono::sys_seconds moment, std::chrono::local_days day, std::chrono::local_days today) const;
  /// The same, with the days of both moments in the zone.
  std::string text(std::chrono::sys_seconds moment, std::chrono::sys_seconds now) const;

 private:
  struct Formats;

  const Localize& m_localize;
  const std::string m_zone;
  std::unique_ptr<const Formats> m_formats;
};

}  // namespace mirvel
