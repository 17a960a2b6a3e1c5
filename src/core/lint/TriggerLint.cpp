#include "core/lint/TriggerLint.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace mirvel::lint {

namespace {

/// Keys that start a job, whatever they hold.
constexpr auto startingKeys = std::to_array<std::string_view>({
    "StartInterval",
    "StartCalendarInterval",
    "WatchPaths",
    "QueueDirectories",
    "Sockets",
    "MachServices",
    "LaunchEvents",
    "EventMonitor",
    "PublishesEvents",
    "BundleProgram",
});

/// Keys that start it unless they are false, and what was refused of them may be anything.
bool startsByItself(const Subject& subject) {
  const jobfile::Plist& record = subject.record;
  const bool isRefused = subject.refusedKeys.count("RunAtLoad") + subject.refusedKeys.count("KeepAlive") +
                             subject.refusedKeys.count("StartOnMount") + subject.refusedKeys.count("OnDemand") !=
                         0;
  const bool isKeptAlive = record.keepAlive && record.keepAlive->bool_ != false;
  return isRefused || isKeptAlive || record.runAtLoad == true || record.startOnMount == true ||
         record.onDemand == false;
}

}  // namespace

void checkTriggers(const Subject& subject, Findings& findings) {
  const bool isStarted =
      std::any_of(startingKeys.begin(), startingKeys.end(), [&](std::string_view key) { return subject.has(key); });
  if (isStarted || startsByItself(subject)) return;
  findings.warning("", "nothing in the file ever starts the job; it runs only when it is started by hand");
}

}  // namespace mirvel::lint
