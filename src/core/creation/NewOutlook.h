#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/catalogue/Kind.h"
#include "core/jobfile/Plist.h"
#include "core/locale/Localize.h"

namespace mirvel {

/// What will come of a new job once it is saved, as one sentence: "“backup” runs as you every day at 9:00 PM, at
/// every login, and once when it is saved." The home folder's path reads "~".
std::string newJobSentence(Kind kind, const jobfile::Plist& plist, const Localize& localize, std::string_view home);

/// What the last page tells before the job is saved.
struct NewOutlook {
  std::string sentence;
  std::vector<std::string> nextRuns;  ///< the coming three of its schedule, such as "tomorrow 9:00 AM"
};

}  // namespace mirvel
