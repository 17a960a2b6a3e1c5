#pragma once

#include <array>
#include <chrono>
#include <string>

/// Names of days and months, formats of dates, and times of day.
namespace mirvel::Date {

/// The standalone names of the weekdays in a locale, Sunday first.
std::array<std::string, 7> weekdays(const std::string& locale);
/// The standalone names of the months (nominative in languages that decline them), January first.
std::array<std::string, 12> months(const std::string& locale);

/// Formats a moment, in seconds since 1970, with medium date and short time in the user's time zone: "Nov 22, 2026,
/// 8:05 PM". Empty if ICU has no data.
std::string standardText(double seconds, const std::string& locale);

/// A time of day as schedule rules store it: that time on 1 January 2000, without a time zone, so that no conversion
/// can shift it. `hour` must be 0 to 23, `minute` 0 to 59.
std::chrono::local_seconds timeOfDay(int hour, int minute);
int hour(std::chrono::local_seconds time);
int minute(std::chrono::local_seconds time);

}  // namespace mirvel::Date
