#pragma once

#include "core/catalogue/Job.h"
#include "core/mainwindow/ListLayout.h"

namespace mirvel {

class Collator;

/// Sorts the jobs by a column: texts by the collator, kinds by their number, and for marks and check boxes those jobs
/// first that have one (descending: last). Stable: jobs that are equal in the column keep their order.
void sortJobs(Jobs& jobs, ListColumn column, bool isAscending, const Collator& collator);

}  // namespace mirvel
