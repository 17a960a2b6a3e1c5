#include "core/actions/SavePlan.h"

#include <system_error>
#include <utility>

#include "core/catalogue/Launchd.h"
#include "core/commands/CommandRepairs.h"
#include "core/jobfile/Plist.h"
#include "core/jobfile/RunString.h"

namespace mirvel {

namespace {

namespace fs = std::filesystem;
using Role = SaveStep::Role;

bool isThere(const URL& url) {
  std::error_code failure;
  return fs::exists(url.path(), failure);
}

/// Without the clean-up of single actions: only the save as a whole ends the edit and starts a scan.
SaveStep step(Role role, Action::Shared action, bool isRoots = false) {
  action->cleanUp = false;
  return {role, std::move(action), isRoots};
}

Action::Shared write(const SavePlan& plan, bool isLoaded, std::string label) {
  auto action = Action::write(plan.to, plan.text, std::move(label));
  action->mode = plan.mode;
  if (isLoaded) action->kind = Action::Kind::WriteAndLoad;
  return action;
}

/// The file of a job that moves out of one of root's folders: the one that was read or, if it doesn't exist any more,
/// the one named after the job, provided that it has the same label.
URL oldFile(const Launchd& job, const Roots& roots) {
  const auto folder = job.originalKind.folderURL(roots);
  if (isThere(job.url) || !folder) return job.url;
  URL named = URL::file(*folder / (job.name + ".plist"));
  return jobLabel(named) == job.name ? named : job.url;
}

void addStepsAsUser(SavePlan& plan, const Launchd& job, const Roots& roots) {
  const bool isLoaded = !job.isDisabled();
  // The action helper unloads by the label of the request, so a renamed job must be unloaded by its old label.
  plan.steps.push_back(
      step(Role::Write, write(plan, isLoaded && !plan.isMove, job.name.empty() ? plan.label : job.name)));
  if (!plan.isMove) return;
  // The old file is removed only when the new one exists: an interruption leaves two files rather than none.
  plan.steps.push_back(step(Role::RemoveOld, Action::delete_(oldFile(job, roots), job.name), true));
  if (job.originalKind.isAgentOfEveryone()) {
    plan.steps.push_back(step(Role::UnloadForGood, Action::unload(job.name, plan.from)));
  }
  if (isLoaded) plan.steps.push_back(step(Role::Load, Action::load(plan.to)));
}

void addStepsAsRoot(SavePlan& plan, const Launchd& job) {
  const bool isOldThere = !job.isNewFile && isThere(plan.from);
  const bool isAgentNow = job.kind.isAgentOfEveryone();
  if (isOldThere && job.originalKind.isAgent()) {
    plan.steps.push_back(step(Role::UnloadOld, Action::unload(std::nullopt, plan.from)));
  }
  // The privileged helper accepts only the label in the content, and finds the old one in the file that it replaces.
  const auto action = write(plan, !isAgentNow && !job.isDisabled(), plan.label);
  if (plan.isMove && isOldThere) action->deleteURL = plan.from;
  plan.steps.push_back(step(Role::Write, action, true));
  if (isAgentNow && !job.isDisabled()) plan.steps.push_back(step(Role::Load, Action::load(plan.to)));
}

/// A command that wasn't edited is left exactly as it is.
bool isCommandEdited(const jobfile::Plist& record) {
  const auto read = record.asRead();
  return !read || read->run != record.run;
}

}  // namespace

std::string repairedCommand(const jobfile::Plist& record, const CommandRepairs& repairs) {
  return isCommandEdited(record) ? repairs.expandTilde(repairs.repairCommand(record.run)) : record.run;
}

bool normalizeForSave(jobfile::Plist& record, CommandRepairs& repairs) {
  jobfile::Plist saved = record.clone();
  saved.fillEmptyLabel();  // first: the label comes from the command as typed
  if (isCommandEdited(record)) {
    const std::string repaired = repairedCommand(record, repairs);
    (void)repairs.stripSudo(repaired);  // only warns: the saved command keeps `sudo`
    auto command = repairs.checkComplexCommand(repaired, saved.name);
    if (!command) return false;
    saved.run = *std::move(command);
  }
  takeArgumentsFromRun(saved);
  record = std::move(saved);
  return true;
}

std::optional<SavePlan> SavePlan::of(const Launchd& job, const Roots& roots, const IsTaken& isTaken) {
  const bool isMove = !job.isNewFile && job.kind != job.originalKind;
  const std::string& label = job.plist().name;
  auto text = job.plistData();
  std::optional<URL> to = job.url;
  if (job.isNewFile) to = newFileURL(job.kind, label, roots, isTaken);
  if (isMove) to = moveTarget(job.kind, job.url, roots, isTaken);
  if (!text || !to) return std::nullopt;

  SavePlan plan{.from = job.isNewFile ? *to : job.url,
                .to = *to,
                .isMove = isMove,
                .isFresh = isMove || job.isNewFile,
                .needsRoot = job.kind != Kind::userAgent || (isMove && job.originalKind != Kind::userAgent),
                .label = label,
                .text = *std::move(text),
                .mode = isMove || job.isNewFile ? restrictedMode(job.url) : std::nullopt};
  if (job.kind == Kind::userAgent) {
    addStepsAsUser(plan, job, roots);
  } else {
    addStepsAsRoot(plan, job);
  }
  return plan;
}

}  // namespace mirvel
