#include "core/editor/GeneralRules.h"

#include "core/catalogue/KindTexts.h"
#include "core/catalogue/Launchd.h"
#include "core/commands/CommandRepairs.h"
#include "core/editor/EditorTexts.h"
#include "core/session/Editing.h"
#include "core/session/Notifications.h"
#include "core/session/Selection.h"

namespace mirvel::GeneralRules {

Display display(const Job& job, KindTexts& kinds, const Localize& localize) {
  const bool isHelperTool = job.kind == Kind::privilegedHelperTool;
  return {.icon = job.displayIcon(localize),
          .name = job.name,
          .for_ = job.kind == Kind::extraFolder ? EditorTexts(localize).nobody() : kinds.title(job.kind),
          .run = isHelperTool ? job.url.path().string() : job.run(),
          .isEnabled = !job.isDisabled()};
}

std::vector<ForItem> forItems(bool editSystemJobs) {
  std::vector<ForItem> result;
  for (const Kind kind : Kind::allCases) {
    if (kind.canBeLoaded()) result.push_back({.kind = kind, .isEnabled = kind.isEditable(editSystemJobs)});
  }
  return result;
}

void changeKind(Editing& editing, const Selection& selection, Notifications& notifications, Kind kind) {
  const auto selected = selection.job();
  const bool isChange = selected && selected->kind != kind;
  if (Launchd* const job = isChange ? editing.markJobChanged() : nullptr) job->kind = kind;
  if (kind.isDaemon()) notifications.rootChanged.post();
}

std::string command(const std::string& text, const jobfile::Plist& plist, const CommandRepairs& repairs) {
  const auto read = plist.asRead();
  const bool isFromFile = read && read->run == text;
  return isFromFile ? text : repairs.expandTilde(repairs.repairCommand(text));
}

}  // namespace mirvel::GeneralRules
