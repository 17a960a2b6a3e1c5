#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/ports/RunSource.h"
#include "core/runs/JobRuns.h"

namespace mirvel::testdata {

/// A source that delivers what a test passes to it.
class FakeRunSource final : public RunSource {
 public:
  /// Adds a source to the runs, which own it, and begins.
  static FakeRunSource& in(JobRuns& runs) {
    auto source = std::make_unique<FakeRunSource>();
    FakeRunSource& result = *source;
    runs.add(std::move(source));
    runs.begin();
    return result;
  }

  std::vector<bool> visibility = {};  ///< the calls of `setVisible`

  void begin(Receiver receiver) override { m_receiver = std::move(receiver); }
  void setVisible(bool isVisible) override { visibility.push_back(isVisible); }

  void deliver(RunDelivery delivery) const { m_receiver(std::move(delivery)); }
  void deliverReports(std::vector<JobReport> reports, RunDomain domain = RunDomain::User) const {
    deliver({.domain = domain, .reports = std::move(reports)});
  }

 private:
  Receiver m_receiver;
};

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

/// A report of a loaded job that has run once, and how that ended.
inline JobReport ranOnce(const std::string& label, const std::string& path, RunEnd end, double start = 1000) {
  return {.label = label,
          .path = path,
          .isLoaded = true,
          .runs = {{.number = 1, .start = start, .endTime = start + 2, .end = std::move(end)}}};
}

/// A report of a loaded job that runs.
inline JobReport runsNow(const std::string& label, const std::string& path, double start = 1000) {
  return {.label = label,
          .path = path,
          .isLoaded = true,
          .process = 1234,
          .processStart = 5,
          .runs = {{.number = 1, .start = start, .process = 1234}}};
}

}  // namespace mirvel::testdata
