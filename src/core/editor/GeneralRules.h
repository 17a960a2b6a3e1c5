#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/catalogue/Job.h"
#include "core/catalogue/Kind.h"
#include "core/editor/BoxClick.h"
#include "core/jobfile/Plist.h"

namespace mirvel {

class CommandRepairs;
class Program;

/// What the sections about who a job is, what it runs and as whom make of the record.
namespace GeneralRules {

/// What the section shows of a job that is only looked at.
struct Display {
  std::optional<Image> icon = {};
  std::string name;
  std::string for_;  ///< title of its kind
  std::string run;
  bool isEnabled = true;

  bool operator==(const Display&) const = default;
};

/// Of a job of any kind.
Display display(Program& program, const Job& job);

/// A kind that the job can be moved to.
struct ForItem {
  Kind kind;
  bool isEnabled = true;

  bool operator==(const ForItem&) const = default;
};
std::vector<ForItem> forItems(bool editSystemJobs);
/// Moves the selected job to another kind, once it is saved.
void changeKind(Program& program, Kind kind);

/// The box that says whether the job is loaded. Other than the other boxes it writes false when it goes on.
void enabled(jobfile::Plist& plist, BoxClick click);
/// The command as typed, put right as far as the user wants that; the one of the file stays as it is.
void run(jobfile::Plist& plist, const std::string& text, const CommandRepairs& repairs);
/// An emptied text takes the key away.
void userName(jobfile::Plist& plist, const std::string& text);
void groupName(jobfile::Plist& plist, const std::string& text);

}  // namespace GeneralRules

}  // namespace mirvel
