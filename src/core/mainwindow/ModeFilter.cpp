#include "core/mainwindow/ModeFilter.h"

#include <algorithm>
#include <iterator>

#include "core/app/Program.h"
#include "core/support/Strings.h"

namespace mirvel {

void modeFilter(Program& program, ModeType& mode, const Jobs& jobs, const std::string& text) {
  program.state.filterString = text;
  if (text.empty()) {
    mode.update(jobs);
    program.mainWindow.applySelection();
    if (program.state.selectedJob && program.shell.detail) program.shell.detail->updateDetail();
  } else {
    mode.update(filtered(jobs, text));
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
