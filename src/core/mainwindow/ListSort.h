#pragma once

#include "core/catalogue/Job.h"
#include "core/mainwindow/ListLayout.h"

namespace mirvel {

class Collator;
class JobRuns;

/// Sorts the jobs by a column: texts by the collator, kinds by their number, and for marks and check boxes those jobs
/// first that have one (descending: last). States in the order of `JobState`, last runs by time, those without any
/// first. Stable: jobs that are equal in the column keep their order.
void sortJobs(Jobs& jobs, ListColumn column, bool isAscending, const Collator& collator, const JobRuns& runs);

/// Whether the order by the column depends on the runs of jobs, so that it can change without a scan.
bool dependsOnRuns(ListColumn column);

}  // namespace mirvel
