#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/base/Image.h"
#include "core/catalogue/Kind.h"
#include "core/jobfile/Plist.h"

namespace mirvel {

class CommandRepairs;
class Editing;
class Job;
class KindTexts;
class Localize;
class Selection;
struct Notifications;

/// The rules of the general section (name, kind, command) that the table of fields can't express.
namespace GeneralRules {

/// The read-only view of a job of any kind.
struct Display {
  std::optional<Image> icon = {};
  std::string name;
  std::string for_;  ///< the title of its kind
  std::string run;   ///< its command, or the path of a helper tool
  bool isEnabled = true;

  bool operator==(const Display&) const = default;
};

/// The icon and texts to show for a job.
Display display(const Job& job, KindTexts& kinds, const Localize& localize);

/// An item of the pop-up of kinds.
struct ForItem {
  Kind kind;
  bool isEnabled = true;

  bool operator==(const ForItem&) const = default;
};
/// All kinds of launchd jobs. Those of the system are enabled only if the user may edit system jobs.
std::vector<ForItem> forItems(bool editSystemJobs);
/// Changes the kind of the selected job as an edit; its file moves when it is saved. Nothing changes if it has that
/// kind already. Posts `rootChanged` if the kind is a daemon.
void changeKind(Editing& editing, const Selection& selection, Notifications& notifications, Kind kind);

/// The command for a typed text: repaired according to the user's settings, but unchanged if it is the command of the
/// file.
std::string command(const std::string& text, const jobfile::Plist& plist, const CommandRepairs& repairs);

}  // namespace GeneralRules

}  // namespace mirvel
