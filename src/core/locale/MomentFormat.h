#pragma once

// For sources that use ICU formats themselves. Not for headers, since it includes ICU.
#include <unicode/datefmt.h>
#include <unicode/timezone.h>

#include <chrono>
#include <memory>
#include <string>

namespace mirvel {

/// Formats a moment in UTF-8; empty if `format` is null.
std::string formatted(const icu::DateFormat* format, std::chrono::sys_seconds moment);

/// Creates a time zone by its name such as "Europe/Berlin"; GMT for an unknown name. Never null.
std::unique_ptr<icu::TimeZone> rulesOfZone(const std::string& zone);

}  // namespace mirvel
