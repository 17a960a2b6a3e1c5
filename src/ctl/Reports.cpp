#include "ctl/Reports.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <map>

#include "core/runs/ReportFolders.h"
#include "core/runs/RunTexts.h"
#include "core/text/Strings.h"
#include "ctl/ErrorConsole.h"

namespace mirvel::ctl {

namespace {

/// In the order of `RunCause`.
constexpr std::array causes{"unknown",        "load",  "interval",  "calendar", "watchedPath",
                            "queueDirectory", "mount", "keepAlive", "request",  "test"};
static_assert(causes.size() == static_cast<std::size_t>(lastRunCause) + 1);

const char* outcomeName(RunEnd::How how) {
  switch (how) {
    case RunEnd::How::Exited:
      return "exited";
    case RunEnd::How::Signalled:
      return "signalled";
    case RunEnd::How::CouldNotStart:
      return "couldNotStart";
    case RunEnd::How::Lost:
      break;
  }
  return "lost";
}

Json timeOrNull(const std::optional<double>& seconds) {
  return seconds && *seconds > 0 ? Json(*seconds) : Json(nullptr);
}

}  // namespace

std::vector<JobReport> publishedReports(RunDomain domain, const Context& context) {
  const Roots& roots = context.machine.roots;
  ErrorConsole console(context.err);
  ReportFolder folder(domain == RunDomain::User ? roots.ownReports() : roots.publicReports, domain, console);
  std::map<std::string, JobReport> reports;
  const auto deliver = [&](const RunDelivery& delivery) {
    if (!delivery.gap.empty()) console.log(delivery.gap);
    for (const auto& report : delivery.reports) reports.insert_or_assign(report.label, report);
  };
  while (folder.read(deliver)) {
  }
  std::vector<JobReport> result;
  for (auto& [label, report] : reports) {
    if (!report.isTest) result.push_back(std::move(report));
  }
  return result;
}

std::string momentText(double seconds) {
  const auto moment = static_cast<std::time_t>(std::clamp(seconds, -1e11, 1e11));
  std::tm time{};
  ::localtime_r(&moment, &time);
  char text[32];
  return {text, std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &time)};
}

std::string endText(const RunReport& run, const Localize& localize) {
  const RunTexts texts(localize);
  const bool hasTimes = run.endTime && run.start > 0;
  return String::firstLowercased(hasTimes ? texts.ended(*run.end, *run.endTime - run.start) : texts.ended(*run.end));
}

Json runObject(const RunReport& run, const Localize& localize) {
  const auto cause = static_cast<std::size_t>(run.cause);
  return {{"number", run.number},
          {"start", timeOrNull(run.start)},
          {"end", timeOrNull(run.endTime)},
          {"cause", causes.at(cause)},
          {"process", run.process > 0 ? Json(run.process) : Json(nullptr)},
          {"outcome", run.end ? Json(outcomeName(run.end->how)) : Json(nullptr)},
          {"code", run.end ? Json(run.end->code) : Json(nullptr)},
          {"failed", hasFailed(run)},
          {"text", run.end ? Json(endText(run, localize)) : Json(nullptr)}};
}

}  // namespace mirvel::ctl
