#pragma once

#include <string>
#include <vector>

#include "core/explain/RuleText.h"
#include "core/jobfile/Plist.h"
#include "core/locale/Localize.h"

namespace mirvel::explain {

/// The occasions on which launchd runs a job, as sentences without a full stop: loading and restarts, then the rules of
/// the schedule, then other triggers. Never empty: a job without triggers yields one sentence that says so. A disabled
/// job is described as if it were enabled, after a sentence that says that it isn't.
std::vector<std::string> occasions(const jobfile::Plist& plist, const Localize& localize);

/// The same without the run at load and without mentioning `Disabled`. May be empty.
std::vector<std::string> laterOccasions(const jobfile::Plist& plist, const Localize& localize, TimeForm form);

}  // namespace mirvel::explain
