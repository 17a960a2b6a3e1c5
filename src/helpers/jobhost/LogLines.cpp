#include <sstream>

#include "core/text/Digits.h"
#include "helpers/jobhost/LaunchctlHost.h"

namespace mirvel {

namespace {

constexpr std::string_view form = "2000-01-31 12:00:00.000000+0100";

/// Seconds since 1970 of a time in that form.
std::optional<double> timeIn(std::string_view text) {
  using namespace std::chrono;
  const auto at = [&](std::size_t begin, std::size_t size) { return Decimal::toInt(text.substr(begin, size)); };
  if (text.size() < form.size() || (text[26] != '+' && text[26] != '-')) return std::nullopt;
  const auto y = at(0, 4), mo = at(5, 2), d = at(8, 2), h = at(11, 2), mi = at(14, 2), s = at(17, 2), us = at(20, 6);
  const auto offsetHours = at(27, 2), offsetMinutes = at(29, 2);
  if (!y || !mo || !d || !h || !mi || !s || !us || !offsetHours || !offsetMinutes) return std::nullopt;
  const year_month_day date{year(static_cast<int>(*y)), month(static_cast<unsigned>(*mo)),
                            day(static_cast<unsigned>(*d))};
  if (!date.ok()) return std::nullopt;
  const std::int64_t offset = (*offsetHours * 60 + *offsetMinutes) * (text[26] == '-' ? -60 : 60);
  const auto days = sys_days(date).time_since_epoch().count();
  return static_cast<double>(days * 86400 + *h * 3600 + *mi * 60 + *s - offset) + static_cast<double>(*us) / 1e6;
}

}  // namespace

std::vector<JobHost::LogLine> logLinesIn(const std::string& output) {
  std::vector<JobHost::LogLine> lines;
  std::istringstream stream(output);
  for (std::string line; std::getline(stream, line);) {
    if (const auto time = timeIn(line)) {
      const std::size_t message = line.find_first_not_of(' ', form.size());
      lines.push_back({*time, message == std::string::npos ? std::string() : line.substr(message)});
    } else if (!lines.empty()) {
      lines.back().message.append("\n").append(line);
    }  // else it is the heading
  }
  return lines;
}

}  // namespace mirvel
