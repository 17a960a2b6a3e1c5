#pragma once

#include <memory>

#include "core/catalogue/Job.h"
#include "core/mainwindow/JobMenu.h"

namespace mirvel {

class Program;

/// Makes the catalogue's job at the URL the selected one, and shows it. False: there is none, or there are unsaved
/// changes, and nothing has happened.
bool selectInCatalogue(Program& program, const URL& url);

/// The job that commands are about: the selected one, as long as its details are shown. A filter may hide it. Null:
/// none.
std::shared_ptr<Job> shownJob(const Program& program);

/// The menu for a click on a job, as the current mode fills it; empty for no job and for one without a file.
JobMenu menuForJob(Program& program, const std::shared_ptr<Job>& job);

/// Whether the jobs are equal one by one and lie in the same places: copies of one file are equal jobs, and stand apart
/// all the same.
bool haveSameRows(const Jobs& a, const Jobs& b);

}  // namespace mirvel
