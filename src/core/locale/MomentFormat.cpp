#include "core/locale/MomentFormat.h"

#include <unicode/unistr.h>

namespace mirvel {

std::string formatted(const icu::DateFormat* format, std::chrono::sys_seconds moment) {
  icu::UnicodeString text;
  if (format) format->format(static_cast<UDate>(moment.time_since_epoch().count()) * 1000, text);
  std::string result;
  return text.toUTF8String(result);
}

// createTimeZone never returns null: an unknown name yields a zone with the rules of GMT.
std::unique_ptr<icu::TimeZone> rulesOfZone(const std::string& zone) {
  return std::unique_ptr<icu::TimeZone>(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(zone)));
}

}  // namespace mirvel
