#pragma once

#include <string>
#include <vector>

#include "core/explain/RuleText.h"
#include "core/jobfile/Plist.h"
#include "core/locale/Localize.h"

namespace mirvel::explain {

/// The schedule of a job, one sentence per rule. Unlike rules, the sentences include months without a day of the month;
/// intervals that differ only in such a month share a sentence: "Every Monday at 09:00, only in October, December".
/// Empty without a schedule.
std::vector<std::string> scheduleText(const jobfile::Plist& plist, const Localize& localize,
                                      TimeForm form = TimeForm::TwentyFourHours);

}  // namespace mirvel::explain
