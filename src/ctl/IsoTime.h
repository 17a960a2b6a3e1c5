#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace mirvel::ctl {

/// Parses an ISO 8601 date, optionally followed by `T` or a space and a time: hours and minutes, optional seconds, and
/// an optional fraction, which is ignored; then `Z`, an offset such as `+01:00`, or nothing for local time in the zone.
/// A local time that the zone skips means the moment of the skip; one that occurs twice means the first. Returns
/// nullopt for anything else.
std::optional<std::chrono::sys_seconds> isoMoment(std::string_view text, const std::string& zone);

/// "2026-11-21T09:00:00+01:00".
std::string isoText(std::chrono::local_seconds time, std::chrono::seconds offset);

}  // namespace mirvel::ctl
