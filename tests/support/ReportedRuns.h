#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/ports/RunSource.h"
#include "core/runs/JobRuns.h"

namespace mirvel::testdata {

/// A run that took two seconds and ended by itself.
inline RunReport exitedRun(double start, std::int64_t code = 0) {
  return {
      .number = static_cast<std::int64_t>(start), .start = start, .endTime = start + 2, .end = RunEnd{.code = code}};
}

/// A run that hasn't ended.
inline RunReport openRun(double start) {
  return {.number = static_cast<std::int64_t>(start), .start = start};
}

/// The report about a loaded job that doesn't run; its current run is added by `running`.
inline JobReport reportOf(const std::string& label, const std::filesystem::path& path, std::vector<RunReport> runs) {
  return {.label = label, .path = path.native(), .isLoaded = true, .runs = std::move(runs)};
}

inline JobReport running(JobReport report, double start) {
  report.process = 77;
  report.runs.push_back(openRun(start));
  return report;
}

/// A source whose deliveries the test makes.
class ReportedRuns {
 public:
  explicit ReportedRuns(JobRuns& runs) {
    auto source = std::make_unique<Source>();
    m_source = source.get();
    runs.add(std::move(source));
    runs.begin();
    m_source->receiver({});  // everything that is known: nothing
  }

  void deliver(std::vector<JobReport> reports, RunDomain domain = RunDomain::User) {
    m_source->receiver({.domain = domain, .reports = std::move(reports)});
  }

 private:
  struct Source final : RunSource {
    Receiver receiver;
    void begin(Receiver theReceiver) override { receiver = std::move(theReceiver); }
    void setVisible(bool) override {}
  };

  Source* m_source;  // belongs to the runs
};

}  // namespace mirvel::testdata
