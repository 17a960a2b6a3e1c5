#pragma once

#include <unicode/datefmt.h>
#include <unicode/timezone.h>

#include <chrono>
#include <memory>
#include <string>

namespace mirvel {

/// A moment as ICU's format writes it, in UTF-8; empty without a format.
std::string formatted(const icu::DateFormat* format, std::chrono::sys_seconds moment);

/// The rules of a time zone such as "Europe/Berlin"; those of GMT for a name that isn't known. Never null.
std::unique_ptr<icu::TimeZone> rulesOfZone(const std::string& zone);

}  // namespace mirvel
