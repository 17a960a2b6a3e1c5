#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "core/messages/JobReport.h"
#include "core/propertylist/Value.h"

namespace mirvel {

/// Recognises when jobs begin to fail and when they work again, so that a job that fails again and again is told once.
/// A series begins with a failed run and ends with a successful one; runs that were stopped or whose outcome isn't
/// known change nothing. Several runs since the last look count as their result.
class FailureSeries {
 public:
  struct Event {
    std::string label;
    std::string path;  ///< of the job file
    RunReport run;     ///< the newest one that decided
    bool hasFailed = false;
  };

  /// Looks at a report. `isFirst`: nothing is known of earlier runs, so they are only remembered. Tests are ignored.
  /// The end of a series is an event only if its beginning was told.
  std::optional<Event> take(const JobReport& report, bool isFirst);
  /// To be called if the user is told of the failure that `take` has returned.
  void setTold(const std::string& label) { m_series[label].isTold = true; }
  /// Forgets a label of which there is no report any more.
  void forget(const std::string& label) { m_series.erase(label); }

  /// The stored form. Entries of another form are skipped.
  propertylist::Dictionary write() const;
  static FailureSeries read(const propertylist::Dictionary* stored);

 private:
  struct Series {
    std::int64_t seen = 0;  ///< the number of the newest run that has ended
    bool isFailing = false;
    bool isTold = false;  ///< the user was told of the failure
  };

  std::map<std::string, Series> m_series;  ///< by label
};

}  // namespace mirvel
