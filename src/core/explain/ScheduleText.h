#pragma once

#include <string>
#include <vector>

#include "core/explain/RuleText.h"
#include "core/jobfile/Plist.h"
#include "core/locale/Localize.h"

namespace mirvel::explain {

/// The schedule of a job, one sentence per rule. Unlike rules, the sentences include months without a day of the month;
/// intervals that differ only in such a month share a sentence: "Every Monday at 09:00, only in October, December". A
/// rule that doesn't show exactly when launchd runs the job is followed by its entries: "In the job file: Hour 9".
/// Empty without a schedule, and for an interval in seconds that isn't positive.
std::vector<std::string> scheduleText(const jobfile::Plist& plist, const Localize& localize,
                                      TimeForm form = TimeForm::TwentyFourHours);

}  // namespace mirvel::explain
