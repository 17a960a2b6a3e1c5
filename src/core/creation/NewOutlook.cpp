#include "core/creation/NewOutlook.h"

#include "core/explain/Occasions.h"
#include "core/text/ListText.h"
#include "core/text/Strings.h"

namespace mirvel {

std::string newJobSentence(Kind kind, const jobfile::Plist& plist, const Localize& localize, std::string_view home) {
  std::vector<std::string> times = explain::laterOccasions(plist, localize, explain::TimeForm::OfTheLocale);
  for (std::string& time : times) time = String::shortenHomeFolder(String::firstLowercased(time), home);
  if (plist.runAtLoad == true) {
    const auto words = localize.lowercase();
    times.push_back(kind.isDaemon() ? words.atEverySystemStart() : words.atEveryLogin());
    times.push_back(words.onceWhenSaved());
  }
  if (times.empty()) times.push_back(String::firstLowercased(localize.onlyWhenStartedByHand()));
  const std::string list = listText(times, localize.locale());
  if (kind.isDaemon()) return localize.runsAsRoot(plist.name, list);
  return kind == Kind::userAgent ? localize.runsAsYou(plist.name, list) : localize.runsForEveryone(plist.name, list);
}

}  // namespace mirvel
