#include "core/editor/GeneralRules.h"

#include "core/app/Program.h"
#include "core/catalogue/Launchd.h"
#include "core/catalogue/LoginItem.h"
#include "core/catalogue/StartupItem.h"

namespace mirvel::GeneralRules {

namespace {

using jobfile::Plist;

std::optional<std::string> textOrNothing(const std::string& text) {
  return text.empty() ? std::nullopt : std::optional(text);
}

std::string runText(const Job& job) {
  if (job.kind == Kind::privilegedHelperTool) return job.url.path().string();
  return job.run();
}

}  // namespace

Display display(Program& program, const Job& job) {
  return {.icon = job.displayIcon(program.foundation.localize),
          .name = job.name,
          .for_ = program.kinds.title(job.kind),
          .run = runText(job),
          .isEnabled = !job.isDisabled()};
}

std::vector<ForItem> forItems(bool editSystemJobs) {
  std::vector<ForItem> result;
  for (const Kind kind : Kind::allCases) {
    if (kind.isLaunchd()) result.push_back({.kind = kind, .isEnabled = kind.isEditable(editSystemJobs)});
  }
  return result;
}

void changeKind(Program& program, Kind kind) {
  const auto selected = program.selection.job();
  const bool isChange = selected && selected->kind != kind;
  if (Launchd* const job = isChange ? program.editing.markJobChanged() : nullptr) job->kind = kind;
  if (kind.isDaemon()) program.notifications.rootChanged.post();
}

void enabled(Plist& plist, BoxClick click) {
  if (click.isOn) {
    plist.disabled = false;
  } else if (click.isOptionHeld) {
    plist.disabled.reset();
  } else {
    plist.disabled = true;
  }
}

void run(Plist& plist, const std::string& text, const CommandRepairs& repairs) {
  const auto read = plist.asRead();
  const bool isTheFiles = read && read->run == text;
  plist.run = isTheFiles ? text : repairs.expandTilde(repairs.repairCommand(text));
}

void userName(Plist& plist, const std::string& text) {
  plist.userName = textOrNothing(text);
}

void groupName(Plist& plist, const std::string& text) {
  plist.groupName = textOrNothing(text);
}

}  // namespace mirvel::GeneralRules
