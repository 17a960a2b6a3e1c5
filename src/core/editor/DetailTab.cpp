#include "core/editor/DetailTab.h"

#include "core/catalogue/Job.h"

namespace mirvel {

DetailTab detailTabFor(const Job* job, bool hasUnsavedChanges) {
  if (!job) return DetailTab::noSelection;
  if (job->kind.isLaunchd()) return hasUnsavedChanges ? DetailTab::launchdEdit : DetailTab::launchdDisplay;
  if (job->kind.isLoginItem()) return DetailTab::loginItem;
  return job->kind.isStartupItem() ? DetailTab::startupItem : DetailTab::privilegedHelperTool;
}

}  // namespace mirvel
