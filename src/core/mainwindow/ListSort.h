#pragma once

#include <string>

#include "core/catalogue/Job.h"
#include "core/locale/Collator.h"
#include "core/mainwindow/ListColumn.h"

namespace mirvel {

/// By what a table is sorted.
struct SortDescriptor {
  std::string key;  ///< identifier of a column
  bool isAscending = true;
};

/// Whether `a` stands before `b`, for the columns that don't compare texts: a strict weak order. Jobs with the mark of
/// the column come first.
bool standsBefore(const Job& a, const Job& b, Column::List column, bool isAscending);

/// Sorts the jobs by a column. Jobs that are alike in it keep their order.
void sortJobs(Jobs& jobs, Column::List column, bool isAscending, const Collator& collator);

}  // namespace mirvel
