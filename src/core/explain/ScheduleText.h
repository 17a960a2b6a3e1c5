#pragma once

#include <string>
#include <vector>

#include "core/explain/RuleText.h"
#include "core/jobfile/Plist.h"
#include "core/locale/Localize.h"

namespace mirvel::explain {

/// The schedule of a job, a sentence for each of its rules. Where a rule can't tell all that the file says, such as a
/// weekday in certain months, the sentence does.
std::vector<std::string> scheduleText(const jobfile::Plist& plist, const Localize& localize,
                                      TimeForm form = TimeForm::twentyFourHours);

}  // namespace mirvel::explain
