#pragma once

#include <deque>
#include <optional>
#include <string>

#include "core/actions/Action.h"
#include "core/actions/JobOnDisk.h"

namespace mirvel {

class CommandRepairs;
class Launchd;

namespace jobfile {
class Plist;
}

/// Prepares a record for saving. An empty label is derived from the command as typed. An edited command is repaired and
/// split into arguments; if it is too complex for launchd, the user is asked whether to make a script of it. Returns
/// false, with the record unchanged, if the user cancels.
[[nodiscard]] bool normalizeForSave(jobfile::Plist& record, CommandRepairs& repairs);

/// The command that a save writes: an edited one repaired, with home folders for tildes, but without the question
/// whether a complex one becomes a script. May block, like `CommandRepairs::repairCommand`.
std::string repairedCommand(const jobfile::Plist& record, const CommandRepairs& repairs);

/// One request of a save.
struct SaveStep {
  enum class Role {
    UnloadOld,      ///< unloads the job before root replaces its file
    Write,          ///< writes the new file; where root can do both, the same request removes the old one
    RemoveOld,      ///< removes the old file, which only root may remove
    UnloadForGood,  ///< unloads an agent for everyone whose file has been removed
    Load,           ///< loads the job, where this isn't up to the helper that wrote the file
  };

  Role role;
  Action::Shared action;
  bool isRoots = false;  ///< sent to the privileged helper
};

/// The requests of a save, in order. Each is sent once the previous one has succeeded. A disabled job is written, but
/// not loaded. "Agent" below means an agent for everyone; "user" is the action helper, "root" the privileged one.
///
/// | old kind | new kind | requests |
/// |---|---|---|
/// | user's | user's | user writes and loads |
/// | agent | user's | user writes; root removes the old file; user unloads the old agent; user loads the new one |
/// | daemon | user's | user writes; root removes the old file and unloads; user loads |
/// | user's, agent | agent | user unloads; root writes and removes the old file; user loads |
/// | daemon | agent | root writes, removes the old file and unloads; user loads |
/// | user's, agent | daemon | user unloads; root writes, removes the old file and loads |
/// | daemon | daemon | root writes and loads |
struct SavePlan {
  URL from;                      ///< the present path of the file; for a new job the same as `to`
  URL to;                        ///< the path of the file after the save
  bool isMove = false;           ///< whether the job changes to another kind
  bool isFresh = false;          ///< whether `to` is a new file: the job is new, or moves
  bool needsRoot = false;        ///< whether any step needs the privileged helper
  std::string label;             ///< the label in the new file
  std::string text;              ///< the content of the new file
  std::optional<int> mode = {};  ///< the most permissions that a fresh file may get; see `restrictedMode`
  std::deque<SaveStep> steps = {};

  /// The plan for a record that has been prepared by `normalizeForSave`. Nullopt if the kind has no folder, or the
  /// record can't be represented as a property list. Accesses the disk, but changes nothing.
  static std::optional<SavePlan> of(const Launchd& job, const Roots& roots, const IsTaken& isTaken);
};

}  // namespace mirvel
