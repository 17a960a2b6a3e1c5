#include "core/session/ModeFilter.h"

#include <algorithm>
#include <iterator>

#include "core/app/Program.h"
#include "core/text/Strings.h"

namespace mirvel {

namespace {

bool isAmong(const Jobs& jobs, const std::shared_ptr<Job>& selected) {
  return selected &&
         std::any_of(jobs.begin(), jobs.end(), [&](const auto& job) { return job->url.equalTo(selected->url); });
}

void keepSelection(Program& program) {
  program.mainWindow.applySelection();
  DetailType* const detail = program.shell.detail;
  if (detail && detail->detailTab() == DetailTab::noSelection) detail->updateDetail();
}

}  // namespace

void modeFilter(Program& program, ModeType& mode, const Jobs& jobs, const std::string& text) {
  program.state.filterString = text;
  if (text.empty()) {
    mode.update(jobs);
    program.mainWindow.applySelection();
    if (program.selection.job() && program.shell.detail) program.shell.detail->updateDetail();
    return;
  }
  const Jobs left = filtered(jobs, text);
  mode.update(left);
  if (isAmong(left, program.selection.job())) {
    keepSelection(program);
  } else {
    mode.deselect();
  }
}

Jobs filtered(const Jobs& jobs, const std::string& text) {
  const std::string folded = String::fold(text);
  Jobs result;
  std::copy_if(jobs.begin(), jobs.end(), std::back_inserter(result),
               [&](const auto& job) { return job->contains(folded); });
  return result;
}

}  // namespace mirvel
