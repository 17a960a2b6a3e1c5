#pragma once

#include "core/session/DetailType.h"

namespace mirvel {

class Job;

/// The tab for a job: launchd jobs are edited while they have unsaved changes. Null: no job.
DetailTab detailTabFor(const Job* job, bool hasUnsavedChanges);

}  // namespace mirvel
