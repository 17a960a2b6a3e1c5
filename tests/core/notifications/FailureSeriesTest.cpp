#include "core/notifications/FailureSeries.h"

#include <gtest/gtest.h>

namespace mirvel {
namespace {

/// A run for each letter: (f)ailed, (s)uccessful, (k)illed on request, (l)ost, (t)est that failed, (r)unning.
JobReport reportOf(const std::string& runs, std::int64_t first = 1) {
  JobReport report{.label = "job", .path = "/job.plist"};
  for (const char kind : runs) {
    RunReport run{.number = first++, .end = RunEnd{.code = kind == 's' || kind == 'k' ? 0 : 3}};
    run.end->isStopped = kind == 'k';
    if (kind == 'l') run.end->how = RunEnd::How::Lost;
    if (kind == 't') run.cause = RunCause::Test;
    if (kind == 'r') run.end.reset();
    report.runs.push_back(run);
  }
  return report;
}

/// What is told of a report: (f)ailed, (w)orks again, or nothing (-).
char told(FailureSeries& series, const JobReport& report, bool isFirst = false) {
  const auto event = series.take(report, isFirst);
  if (!event) return '-';
  if (event->hasFailed) series.setTold(event->label);
  return event->hasFailed ? 'f' : 'w';
}

TEST(FailureSeriesTest, ASeriesIsToldOnceAndItsEndOnce) {
  struct Row {
    const char* what;
    std::vector<std::string> reports;  ///< one after the other
    const char* told;                  ///< of each
  };
  const Row table[] = {
      {"again and again", {"f", "ff", "fff", "fffs", "fffss", "fffssf"}, "f--w-f"},
      {"several since the last look", {"s", "sfff", "sfffsfs", "sfffsfsfsf"}, "-fwf"},
      {"fails and recovers in between", {"s", "sfs"}, "--"},
      {"recovers and fails in between", {"f", "fsf"}, "f-"},
      {"stopped, lost and tests count as nothing", {"f", "fk", "fkl", "fklt", "fklts"}, "f---w"},
      {"an open run", {"r", "f", "fr", "fs"}, "-f-w"},
      {"a report that begins anew", {"sssf", "s", "sf"}, "fwf"},
      {"an empty report", {"", "f"}, "-f"},
  };
  for (const Row& row : table) {
    FailureSeries series;
    std::string all;
    for (const auto& report : row.reports) all += told(series, reportOf(report));
    EXPECT_EQ(all, row.told) << row.what;
  }
}

TEST(FailureSeriesTest, OldFailuresAreOnlyRemembered) {
  FailureSeries series;
  EXPECT_EQ(told(series, reportOf("sf"), true), '-');
  EXPECT_EQ(told(series, reportOf("sff")), '-') << "the series goes on";
  EXPECT_EQ(told(series, reportOf("sffs")), '-') << "nobody knows that it had failed";
  EXPECT_EQ(told(series, reportOf("sffsf")), 'f');
}

TEST(FailureSeriesTest, TheEndOfAFailureThatWasntToldIsntTold) {
  FailureSeries series;
  EXPECT_TRUE(series.take(reportOf("f"), false));
  EXPECT_EQ(told(series, reportOf("fs")), '-');
  EXPECT_EQ(told(series, reportOf("fsf")), 'f');
  EXPECT_EQ(told(series, reportOf("fsfs")), 'w');
}

TEST(FailureSeriesTest, TestsAndHostsWithoutRunsAreIgnored) {
  FailureSeries series;
  JobReport test = reportOf("f"), partial = reportOf("f");
  test.isTest = true;
  partial.isPartial = true;
  EXPECT_EQ(told(series, test), '-');
  EXPECT_EQ(told(series, partial), '-');
}

TEST(FailureSeriesTest, TheDecidingRunIsTold) {
  FailureSeries series;
  const auto event = series.take(reportOf("sffkr"), false);
  ASSERT_TRUE(event);
  EXPECT_EQ(event->run.number, 3);
  EXPECT_EQ(event->path, "/job.plist");
}

TEST(FailureSeriesTest, TheStateOutlivesTheAgent) {
  FailureSeries series;
  EXPECT_EQ(told(series, reportOf("f")), 'f');
  auto stored = series.write();
  stored.set("other", propertylist::Dictionary{{"Seen", "1"}});
  FailureSeries next = FailureSeries::read(&stored);
  EXPECT_EQ(told(next, reportOf("ff")), '-');
  EXPECT_EQ(told(next, reportOf("ffs")), 'w');
  next.forget("job");
  EXPECT_EQ(next.write().size(), 0U);
}

}  // namespace
}  // namespace mirvel
