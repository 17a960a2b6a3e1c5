#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace mirvel::ctl {

/// A moment as ISO 8601 writes it: a date, alone or with a time behind `T` or a blank, of hours and minutes, perhaps
/// with seconds and a fraction, which is dropped; then `Z`, an offset such as `+01:00`, or nothing, which means the
/// clock on the wall in the zone. A time that this clock skips means when it is skipped, one that it shows twice the
/// first. None: the text is no such moment.
std::optional<std::chrono::sys_seconds> isoMoment(std::string_view text, const std::string& zone);

/// "2026-11-21T09:00:00+01:00".
std::string isoText(std::chrono::local_seconds time, std::chrono::seconds offset);

}  // namespace mirvel::ctl
