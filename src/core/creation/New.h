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

class Localize;
struct CreationContext;
struct Roots;

/// A job that is being created: what its file will contain, and the input on the pages of the sheet. Exists in memory
/// only.
struct New {
  /// The pages of the sheet, in their order.
  enum class Page { Name, What, Run, When };
  /// The kinds of things that a job can run. The values are the indexes of the tabs.
  enum class Run { Application, Script, Command };

  /// The state of the script chooser.
  struct Script {
    enum class State {
      None,       ///< neither chosen nor being written
      CreateNew,  ///< being written
      Ready       ///< chosen or saved
    };

    State state = State::None;
    std::string text = {};       ///< the script while it is being written
    std::string shownFile = {};  ///< the path for display once the script is ready
    SyntaxType syntaxType = SyntaxType::shell;
  };

  Kind kind = Kind::userAgent;
  jobfile::Plist plist = jobfile::Plist::blankPlist();
  std::optional<Run> runPage = {};         ///< nullopt until the user has chosen
  std::string shownApplication = {};       ///< the name or path for display; empty if none is chosen
  std::filesystem::path application = {};  ///< its program file or desktop entry
  Script script = {};
  std::string command = {};  ///< as typed; `plist.run` has the repaired form
  bool isScheduled = false;
  std::vector<Scheduled::ScheduledType> rules = {};  ///< applied to the record only while `isScheduled`

  New clone() const;
};

/// The state that all pages of a sheet share.
struct NewSheet {
  const CreationContext& context;
  New job;
  std::function<void()> changed = {};  ///< called by `notifyChanged`; may be empty

  void notifyChanged() const {
    if (changed) changed();
  }
};

/// A new job for a common task, prefilled as far as possible. The user goes through the same pages as for any other
/// job.
struct StartingPoint {
  std::string title;
  New job = {};
};

/// The starting points in the order in which they are offered: backing up a folder, running a script every night,
/// keeping a program running, and watching a folder. All paths in them are in the home folder.
std::vector<StartingPoint> startingPoints(const Localize& localize, const Roots& roots);

}  // namespace mirvel
