#include "core/mainwindow/ListCells.h"

#include "core/app/Program.h"
#include "core/jobfile/Plist.h"

namespace mirvel {

namespace {

ListCell textCell(const Job& job, const std::string& text) {
  return {.text = text, .toolTip = text, .isSecondary = job.isDisabled()};
}

ListCell kindCell(KindTexts& kinds, Kind kind) {
  Image icon = kinds.icon(kind);
  const std::string title = kinds.title(kind);
  icon.accessibilityDescription = title;
  return {.toolTip = title, .image = std::move(icon)};
}

ListCell statusCell(const Program& program, const Job& job) {
  const Localize& localize = program.foundation.localize;
  if (!program.hostStart.keepsFromRunning(job)) return {.image = statusImage(!job.isDisabled(), localize)};
  return {.toolTip = localize.enabledButNotRun(), .image = notRunImage(localize)};
}

}  // namespace

ListCell listCell(Program& program, const Job& job, Column::List column) {
  const jobfile::Plist* record = job.record();
  switch (column) {
    case Column::List::name:
      return textCell(job, job.name);
    case Column::List::summary:
      return textCell(job, job.summary);
    case Column::List::kind:
      return kindCell(program.kinds, job.kind);
    case Column::List::enabled:
      return statusCell(program, job);
    case Column::List::keepAlive:
      return {.isChecked = record && record->keepAlive};
    case Column::List::scheduled:
      return {.isChecked = record && record->isScheduled()};
    case Column::List::run:
      return textCell(job, job.run());
  }
  return {};
}

}  // namespace mirvel
