#pragma once

#include <string_view>

#include "core/jobfile/Plist.h"

namespace mirvel {

/// Takes a deprecated key out of the record. False: the key isn't one, or isn't there.
bool deleteDeprecated(jobfile::Plist& plist, std::string_view key);
/// Takes out of the file at the next save what the editor has no control for: a key that isn't known, or the path of an
/// opaque value. False: there is no such thing.
bool deleteUnknown(jobfile::Plist& plist, std::string_view key);

}  // namespace mirvel
