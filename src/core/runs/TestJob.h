#pragma once

#include <optional>
#include <string>

namespace mirvel {

class CommandRepairs;

namespace jobfile {
class Plist;
}

/// A job that runs the command of another one once, as that would run it.
struct TestJob {
  std::string label = {};  ///< a new UUID
  std::string text = {};   ///< the job file
  bool hasOutput = true;   ///< false: its output can't be captured, because it has another root folder

  bool operator==(const TestJob&) const = default;

  /// The job that a save would write, without asking questions, except that it has another label, starts when it is
  /// loaded, and has neither other triggers, nor conditions for being loaded, nor paths for its output. Everything else
  /// stays, keys that the program doesn't know as well. The record isn't changed. Nullopt for a job without a command,
  /// and if it can't be written as XML. May block, like `CommandRepairs::repairCommand`.
  static std::optional<TestJob> of(const jobfile::Plist& record, const CommandRepairs& repairs);
};

}  // namespace mirvel
