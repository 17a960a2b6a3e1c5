#pragma once

#include <array>
#include <chrono>
#include <string>

/// Names of days and months, and times of day.
namespace mirvel::Date {

/// The day names of a locale as they stand by themselves in a list, Sunday first.
std::array<std::string, 7> weekdays(const std::string& locale);
/// The month names likewise, January first. In languages that decline them this is the nominative.
std::array<std::string, 12> months(const std::string& locale);

/// The program's usual form of a moment, in seconds since 1970: date and time of medium length, in the user's zone.
std::string standardText(double seconds, const std::string& locale);

/// A time of day as the schedule rules carry it: that time on 1 January 2000, in no time zone, so that no hour shifts.
std::chrono::local_seconds timeOfDay(int hour, int minute);
int hour(std::chrono::local_seconds time);
int minute(std::chrono::local_seconds time);

}  // namespace mirvel::Date
