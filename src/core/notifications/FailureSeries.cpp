#include "core/notifications/FailureSeries.h"

#include <utility>

namespace mirvel {

namespace {

constexpr const char* seenKey = "Seen";
constexpr const char* failingKey = "Failing";
constexpr const char* toldKey = "Told";

/// Whether the run has ended by itself without an error.
bool hasSucceeded(const RunReport& run) {
  return run.end && run.end->how == RunEnd::How::Exited && run.end->code == 0 && !run.end->isStopped &&
         run.cause != RunCause::Test;
}

}  // namespace

std::optional<FailureSeries::Event> FailureSeries::take(const JobReport& report, bool isFirst) {
  if (report.isTest || report.isPartial) return std::nullopt;
  const bool isNew = !m_series.contains(report.label);
  Series& series = m_series[report.label];
  const bool wasFailing = series.isFailing;
  // The numbers begin again when a report has been lost.
  if (!report.runs.empty() && report.runs.back().number < series.seen) series.seen = 0;
  const RunReport* decisive = nullptr;
  for (const RunReport& run : report.runs) {
    if (!run.end || run.number <= series.seen) continue;
    series.seen = run.number;
    if (!hasFailed(run) && !hasSucceeded(run)) continue;
    series.isFailing = hasFailed(run);
    decisive = &run;
  }
  if (!decisive || series.isFailing == wasFailing) return std::nullopt;
  const bool wasTold = std::exchange(series.isTold, false);
  if (series.isFailing ? isFirst && isNew : !wasTold) return std::nullopt;
  return Event{.label = report.label, .path = report.path, .run = *decisive, .hasFailed = series.isFailing};
}

propertylist::Dictionary FailureSeries::write() const {
  propertylist::Dictionary stored;
  for (const auto& [label, series] : m_series) {
    stored.set(label, propertylist::Dictionary{
                          {seenKey, series.seen}, {failingKey, series.isFailing}, {toldKey, series.isTold}});
  }
  return stored;
}

FailureSeries FailureSeries::read(const propertylist::Dictionary* stored) {
  FailureSeries result;
  if (!stored) return result;
  for (const auto& entry : *stored) {
    const auto* const values = entry.value.as<propertylist::Dictionary>();
    const auto* const number = values ? values->get<propertylist::Integer>(seenKey) : nullptr;
    const auto* const isFailing = values ? values->get<bool>(failingKey) : nullptr;
    const auto* const isTold = values ? values->get<bool>(toldKey) : nullptr;
    const auto seen = number ? number->toInt64() : std::nullopt;
    if (seen && isFailing && isTold)
      result.m_series[entry.key] = {.seen = *seen, .isFailing = *isFailing, .isTold = *isTold};
  }
  return result;
}

}  // namespace mirvel
