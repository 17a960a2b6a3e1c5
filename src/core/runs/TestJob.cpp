#include "core/runs/TestJob.h"

#include <string_view>

#include "core/actions/SavePlan.h"
#include "core/jobfile/Plist.h"
#include "core/jobfile/RunString.h"
#include "core/propertylist/Writer.h"
#include "core/text/Bytes.h"

namespace mirvel {

namespace {

/// What starts a job or keeps it running, what keeps it from being loaded or started, and where its output goes.
constexpr std::string_view removedKeys[] = {"Disabled",
                                            "KeepAlive",
                                            "LaunchEvents",
                                            "LaunchOnlyOnce",
                                            "LimitLoadFromHardware",
                                            "LimitLoadFromHosts",
                                            "LimitLoadToHardware",
                                            "LimitLoadToHosts",
                                            "LimitLoadToSessionType",
                                            "MachServices",
                                            "OnDemand",
                                            "QueueDirectories",
                                            "Sockets",
                                            "StandardErrorPath",
                                            "StandardOutPath",
                                            "StartCalendarInterval",
                                            "StartInterval",
                                            "StartOnMount",
                                            "ThrottleInterval",
                                            "WatchPaths",
                                            "inetdCompatibility"};

}  // namespace

std::optional<TestJob> TestJob::of(const jobfile::Plist& record, const CommandRepairs& repairs) {
  if (record.run.empty()) return std::nullopt;
  jobfile::Plist saved = record.clone();
  saved.run = repairedCommand(record, repairs);
  takeArgumentsFromRun(saved);
  propertylist::Dictionary file = saved.encodeAll();
  for (const std::string_view key : removedKeys) (void)file.remove(key);
  TestJob job{.label = makeUuid()};
  file.set("Label", job.label);
  file.set("RunAtLoad", true);
  job.hasOutput = saved.rootDirectory.value_or("/") == "/";
  auto text = propertylist::writeXml(std::move(file));
  if (!text) return std::nullopt;
  job.text = *std::move(text);
  return job;
}

}  // namespace mirvel
