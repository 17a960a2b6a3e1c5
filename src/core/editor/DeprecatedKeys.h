#pragma once

#include <string_view>

#include "core/plist/Plist.h"

namespace mirvel {

/// Takes a deprecated key out of the record. False: the key isn't one, or isn't there.
bool deleteDeprecated(launchd::Plist& plist, std::string_view key);
/// Takes a key that isn't known out of those that are kept at the next save. False: it isn't among them.
bool deleteUnknown(launchd::Plist& plist, std::string_view key);

}  // namespace mirvel
