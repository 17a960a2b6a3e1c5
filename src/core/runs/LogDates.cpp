#include "core/runs/LogDates.h"

#include <algorithm>
#include <cmath>

#include "core/locale/MomentFormat.h"

namespace mirvel {

struct LogDates::Format {
  std::unique_ptr<icu::DateFormat> format;
};

LogDates::LogDates(const std::string& locale, const std::string& zone) {
  std::unique_ptr<icu::DateFormat> format(icu::DateFormat::createDateTimeInstance(
      icu::DateFormat::kShortRelative, icu::DateFormat::kMedium, icu::Locale(locale.c_str())));
  UErrorCode status = U_ZERO_ERROR;  // a failure leaves "today" as it is within a sentence
  if (format) format->setContext(UDISPCTX_CAPITALIZATION_FOR_BEGINNING_OF_SENTENCE, status);
  if (format) format->adoptTimeZone(rulesOfZone(zone).release());
  m_format = std::make_unique<Format>(Format{std::move(format)});
}

LogDates::~LogDates() = default;

std::string LogDates::text(double seconds) const {
  constexpr double farthest = 1e11;  // beyond that, ICU's calendar ends
  const double moment = std::isfinite(seconds) ? std::clamp(std::floor(seconds), -farthest, farthest) : 0;
  return formatted(m_format->format.get(), std::chrono::sys_seconds(std::chrono::seconds(std::llround(moment))));
}

}  // namespace mirvel
