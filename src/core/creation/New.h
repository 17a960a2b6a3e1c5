#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/catalogue/Kind.h"
#include "core/jobfile/Plist.h"
#include "core/schedule/Scheduled.h"
#include "core/scripts/SyntaxType.h"

namespace mirvel {

struct CreationContext;

/// A job under construction: what its file will say and whose it is, and what the pages show of the way there. Nothing
/// of it is on the disk.
struct New {
  /// The pages of the sheet, in their order.
  enum class Page { name, what, run, when };
  /// The ways to say what the job runs; the number is the tab's.
  enum class Run { application, script, command };

  /// What the chooser of a script shows.
  struct Script {
    enum class State { none, createNew, ready };

    State state = State::none;
    std::string text = {};       ///< what is being written
    std::string shownFile = {};  ///< the script, once it is ready
    SyntaxType syntaxType = SyntaxType::shell;
  };

  Kind kind = Kind::userAgent;
  jobfile::Plist plist = jobfile::Plist::blankPlist();
  std::optional<Run> runPage = {};
  std::string shownApplication = {};
  std::filesystem::path application = {};  ///< its file or desktop entry
  Script script = {};
  std::string command = {};  ///< as typed
  bool isScheduled = false;
  std::vector<Scheduled::ScheduledType> rules = {};  ///< they count while it is scheduled

  New clone() const {
    return {.kind = kind,
            .plist = plist.clone(),
            .runPage = runPage,
            .shownApplication = shownApplication,
            .application = application,
            .script = script,
            .command = command,
            .isScheduled = isScheduled,
            .rules = rules};
  }
};

/// What the pages of the sheet share.
struct NewSheet {
  const CreationContext& context;
  New job;
  std::function<void()> changed = {};

  void tellOfChange() const {
    if (changed) changed();
  }
};

}  // namespace mirvel
