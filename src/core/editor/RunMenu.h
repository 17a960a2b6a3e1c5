#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace mirvel {

class CommandRepairs;
class Program;

/// The menu beside a field with a command. There is always an item to choose a file.
struct RunMenu {
  bool offersTest = false;
  std::optional<std::filesystem::path> file = {};  ///< to be shown in the file viewer, and to be edited
  bool offersEdit = false;

  bool operator==(const RunMenu&) const = default;

  /// For a field with that text, of which that is selected.
  static RunMenu of(const Program& program, const std::string& command, const std::string& selected);
  /// The file to offer of those that a command names: the one that is selected, else the script of an interpreter, else
  /// the first.
  static std::optional<std::filesystem::path> offeredFile(const std::vector<std::filesystem::path>& files,
                                                          const std::string& selected);
};

/// The command that runs a file which the user chose.
std::string chosenCommand(const CommandRepairs& repairs, const std::filesystem::path& file);
/// The text of a field with the command behind it.
std::string withCommand(std::string text, const std::string& command);
/// How a file stands in a command as one argument: quoted only if it has to be.
std::string fileWord(const std::filesystem::path& file);

}  // namespace mirvel
