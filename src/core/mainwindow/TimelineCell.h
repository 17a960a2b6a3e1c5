#pragma once

#include <string>

#include "core/mainwindow/Timeline.h"

namespace mirvel {

/// The contents of a row of the table.
struct TimelineCell {
  TimelineKind kind = TimelineKind::Group;
  std::string time = {};  ///< of a run; empty in other rows
  std::string name = {};
  std::string detail = {};  ///< how long a run took and how it ended, or whatever else is known
  /// What to show where there is no room for `detail`: the part that the mark doesn't say. Empty if it has no parts.
  std::string shortDetail = {};
  RunMark mark = RunMark::None;
  bool isSecondary = false;  ///< the name is drawn in the secondary text colour
  bool isOpen = false;       ///< a stretch of runs is unfolded
  bool isNested = false;     ///< the row belongs to the unfolded stretch above

  bool isHeader() const { return kind == TimelineKind::Group || kind == TimelineKind::Now; }
};

/// What a row of `timeline` shows. `job` is that of the row, null for a header; `report` is what is known of the job,
/// null if nothing is. `now` is in seconds since 1970.
TimelineCell timelineCell(const TimelineArray& timeline, std::size_t row, const Job* job, const JobReport* report,
                          double now, const TimelineTexts& texts);

}  // namespace mirvel
