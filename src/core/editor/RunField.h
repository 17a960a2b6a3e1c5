#pragma once

#include <atomic>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/ports/MainQueue.h"

namespace mirvel {

class CommandRepairs;
class Defaults;
class WorkQueue;
struct Shell;

/// The state of the menu beside a field for a command. The item to choose a file is always offered.
struct RunMenu {
  bool offersTest = false;                         ///< the command can be tested
  std::optional<std::filesystem::path> file = {};  ///< the file to reveal and to edit
  bool offersEdit = false;                         ///< the file can be opened in a script window

  bool operator==(const RunMenu&) const = default;

  /// For a field that contains `command`, with the selected text `selected`.
  static RunMenu of(const Shell& shell, const CommandRepairs& repairs, const std::string& command,
                    const std::string& selected);
  /// The file to offer among those that a command names: the selected one, otherwise the second if the first is in /bin
  /// or below /usr and so probably the interpreter of a script, otherwise the first. Null if there are no files.
  static std::optional<std::filesystem::path> offeredFile(const std::vector<std::filesystem::path>& files,
                                                          const std::string& selected);
};

/// The command that runs a chosen file, with the interpreter that the file needs.
std::string chosenCommand(const CommandRepairs& repairs, const std::filesystem::path& file);
/// Appends a command to a text, separated by a space.
std::string withCommand(std::string text, const std::string& command);
/// A path as one argument of a command, quoted only if necessary: "/a b" in quotes, /a/b(c) without.
std::string fileWord(const std::filesystem::path& file);

/// Finds the missing files among those that a command names. Accesses the disk on a work queue, since disks can be
/// slow. Main thread only.
class FileCheck {
 public:
  using Answer = std::function<void(const std::vector<std::filesystem::path>& missing)>;

  /// All arguments outlive it.
  FileCheck(const Defaults& defaults, const CommandRepairs& repairs, WorkQueue& fileQueue, MainQueue& mainQueue);

  /// Calls `answer` on the main thread, unless `check` is called again before or the object is destroyed. Calls it at
  /// once with an empty list if the command names no file or the user has disabled the check. A file counts as existing
  /// if its folder can't be read.
  void check(const std::string& command, Answer answer);

 private:
  const Defaults& m_defaults;
  const CommandRepairs& m_repairs;
  WorkQueue& m_fileQueue;
  MainQueue& m_mainQueue;
  Delay m_delay;
  std::shared_ptr<std::atomic<int>> m_last = std::make_shared<std::atomic<int>>(0);
};

}  // namespace mirvel
