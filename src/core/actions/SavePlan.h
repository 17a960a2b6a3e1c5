#pragma once

#include <deque>
#include <optional>
#include <string>

#include "core/actions/Action.h"
#include "core/actions/MoveTarget.h"

namespace mirvel {

class Launchd;

/// One request of a save.
struct SaveStep {
  enum class Role {
    UnloadOld,      ///< the job as it was, before root takes its file over
    Write,          ///< the new file; in one request with the removal of the old one where root does both
    RemoveOld,      ///< the old file, which only root may remove
    UnloadForGood,  ///< the agent of everyone whose file has gone
    Load,           ///< what another helper than the one that wrote it has to load
  };

  Role role;
  Action::Shared action;
  bool isRoots = false;  ///< it goes to the helper that acts as root
};

/// What a save asks for, in which order; each step goes out when the one before it has succeeded. A disabled job is
/// only written. By the kinds of the job before and now, where an agent is one of everyone and a daemon root's:
///
/// - user's to user's: user writes and loads.
/// - agent to user's: user writes; root removes the old file; user unloads the old agent and loads the new one.
/// - daemon to user's: user writes; root removes and unloads; user loads.
/// - user's or agent to agent: user unloads; root writes and removes the old file in one request; user loads.
/// - daemon to agent: root writes, and removes and unloads the old one, in one request; user loads.
/// - user's or agent to daemon: user unloads; root writes, removes and loads in one request.
/// - daemon to daemon: root writes and loads.
struct SavePlan {
  URL from;              ///< where the job's file was; of a new job where it will be
  URL to;                ///< where it will be
  bool isMove = false;   ///< to another kind
  bool isFresh = false;  ///< nothing was at `to` before: the job is new, or moves
  bool needsRoot = false;
  std::string label;  ///< that the new file has
  std::string text;   ///< that is written
  std::optional<int> mode =
      {};  ///< that a fresh file is to have at most: it is no more open than the one it comes from
  std::deque<SaveStep> steps = {};

  /// The job's record is ready to be written. No plan: the kind has no folder, or the record has no form as a file.
  static std::optional<SavePlan> of(const Launchd& job, const Roots& roots, const IsTaken& isTaken);
};

}  // namespace mirvel
