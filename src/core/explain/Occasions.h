#pragma once

#include <string>
#include <vector>

#include "core/explain/RuleText.h"
#include "core/jobfile/Plist.h"
#include "core/locale/Localize.h"

namespace mirvel::explain {

/// When launchd runs a job, in sentences without a full stop, one for each occasion: first loading and restarts, then
/// the rules of the schedule, then what else can start it. Never empty.
std::vector<std::string> occasions(const jobfile::Plist& plist, const Localize& localize);

/// Likewise, of all that comes after the first loading. May be empty.
std::vector<std::string> laterOccasions(const jobfile::Plist& plist, const Localize& localize, TimeForm form);

}  // namespace mirvel::explain
