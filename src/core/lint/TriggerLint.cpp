#include "core/lint/TriggerLint.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace mirvel::lint {

namespace {

/// Keys that start a job whatever their value.
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

/// Keys that start a job unless they are false. A rejected value could have been anything, so it counts as true.
bool startsByItself(const Subject& subject) {
  const jobfile::Plist& record = subject.record;
  const bool isRejected = subject.rejectedKeys.count("RunAtLoad") + subject.rejectedKeys.count("KeepAlive") +
                              subject.rejectedKeys.count("StartOnMount") + subject.rejectedKeys.count("OnDemand") !=
                          0;
  const bool hasConditions = record.keepAlive && !record.keepAlive->bool_;
  return isRejected || record.isAlwaysKeptAlive() || hasConditions || record.runAtLoad == true ||
         record.startOnMount == true;
}

}  // namespace

void checkTriggers(const Subject& subject, Findings& findings) {
  const bool isStarted =
      std::any_of(startingKeys.begin(), startingKeys.end(), [&](std::string_view key) { return subject.has(key); });
  if (isStarted || startsByItself(subject)) return;
  findings.warning("", clause("no key of the file starts the job; it runs only when started manually"));
}

}  // namespace mirvel::lint
