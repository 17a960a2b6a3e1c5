#pragma once

#include <functional>
#include <optional>
#include <string>

namespace mirvel::lint {

/// The machine that the job will run on, as far as checks depend on it. A function that isn't set answers that it isn't
/// known, which suppresses the findings that depend on it.
struct TargetMachine {
  enum class FileType { Unknown, Missing, Folder, Other };

  /// What is at a path, following links.
  std::function<FileType(const std::string& path)> fileType = {};
  /// Whether every user of the machine could change or replace the file.
  std::function<bool(const std::string& path)> isOpenToAll = {};
  /// Whether the user database has a user or a group of this name; nullopt if that isn't known.
  std::function<std::optional<bool>(const std::string& name)> hasUser = {};
  std::function<std::optional<bool>(const std::string& name)> hasGroup = {};
  std::string homeFolder = {};  ///< of the user; empty if unknown

  FileType typeOf(const std::string& path) const { return fileType ? fileType(path) : FileType::Unknown; }
  bool lacks(const std::string& path) const { return typeOf(path) == FileType::Missing; }
  bool isOpen(const std::string& path) const { return isOpenToAll && isOpenToAll(path); }
  bool lacksUser(const std::string& name) const { return hasUser && hasUser(name) == false; }
  bool lacksGroup(const std::string& name) const { return hasGroup && hasGroup(name) == false; }

  /// This machine. The functions are thread-safe, and can wait for a disk or a directory server for any time. To not
  /// let all threads wait for the same mount, an answer is unknown while an earlier lookup in the same top folder
  /// (such as `/Volumes/Backup`) has been waiting for more than a second.
  static TargetMachine thisMachine(std::string homeFolder);
  /// The same without anything that has to be looked up.
  TargetMachine withoutLookups() const { return {.homeFolder = homeFolder}; }
};

}  // namespace mirvel::lint
