#pragma once

#include <optional>
#include <string>

#include "core/files/URL.h"

namespace mirvel {

/// What stands in a job's file at this moment. None if there is no such file, or it can't be read.
std::optional<std::string> jobBytes(const URL& url);
/// Its label; none if it has none.
std::optional<std::string> jobLabel(const URL& url);
/// Whether the file is a job's that is to be loaded: it isn't disabled.
bool isEnabledOnDisk(const URL& url);
/// The mode of a file that not everybody may read, so that copies can be made no more open; none of any other.
std::optional<int> restrictedMode(const URL& url);
/// Whether there is nothing, not even a link that leads nowhere; whether there is something. Both are false if that
/// can't be told.
bool isGone(const URL& url);
bool stands(const URL& url);

}  // namespace mirvel
