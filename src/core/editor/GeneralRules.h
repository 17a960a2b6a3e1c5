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

/// The rules of the section about what a job is, what it runs and for whom, beyond its fields.
namespace GeneralRules {

/// The read-only view of a job of any kind.
struct Display {
  std::optional<Image> icon = {};
  std::string name;
  std::string for_;  ///< title of its kind
  std::string run;
  bool isEnabled = true;

  bool operator==(const Display&) const = default;
};

Display display(const Job& job, KindTexts& kinds, const Localize& localize);

/// A kind to which the job can be moved.
struct ForItem {
  Kind kind;
  bool isEnabled = true;

  bool operator==(const ForItem&) const = default;
};
std::vector<ForItem> forItems(bool editSystemJobs);
/// Moves the selected job to another kind when it is saved.
void changeKind(Editing& editing, const Selection& selection, Notifications& notifications, Kind kind);

/// The command of a typed text, repaired as far as the user wants that; the file's own command is left as it is.
std::string command(const std::string& text, const jobfile::Plist& plist, const CommandRepairs& repairs);

}  // namespace GeneralRules

}  // namespace mirvel
