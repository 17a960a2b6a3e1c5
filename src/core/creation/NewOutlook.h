#pragma once

#include <string>
#include <vector>

#include "core/catalogue/Kind.h"
#include "core/plist/Plist.h"
#include "core/support/Localize.h"

namespace mirvel {

/// What will come of a new job once it is saved, as one sentence: "“backup” runs as you every weekday at 21:00, at
/// every login, and once when it is saved."
std::string newJobSentence(Kind kind, const launchd::Plist& plist, const Localize& localize);

/// What the last page tells before the job is saved.
struct NewOutlook {
  std::string sentence;
  std::vector<std::string> nextRuns;  ///< the coming three of its schedule, such as "tomorrow 9:00 AM"
};

}  // namespace mirvel
