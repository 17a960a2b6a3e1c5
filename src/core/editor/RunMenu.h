#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace mirvel {

class CommandRepairs;
struct Shell;

/// The menu beside a field with a command. It always has an item to choose a file.
struct RunMenu {
  bool offersTest = false;
  std::optional<std::filesystem::path> file = {};  ///< the file to reveal and to edit
  bool offersEdit = false;

  bool operator==(const RunMenu&) const = default;

  /// For a field with the text `command`, of which `selected` is selected.
  static RunMenu of(const Shell& shell, const CommandRepairs& repairs, const std::string& command,
                    const std::string& selected);
  /// The file to offer among those that a command names: the selected one, else the script of an interpreter, else the
  /// first. None if there are none.
  static std::optional<std::filesystem::path> offeredFile(const std::vector<std::filesystem::path>& files,
                                                          const std::string& selected);
};

/// The command that runs a chosen file.
std::string chosenCommand(const CommandRepairs& repairs, const std::filesystem::path& file);
/// Appends a command to a text.
std::string withCommand(std::string text, const std::string& command);
/// A file as one argument of a command, quoted only if necessary.
std::string fileWord(const std::filesystem::path& file);

}  // namespace mirvel
