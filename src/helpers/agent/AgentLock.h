#pragma once

#include <sys/types.h>

#include <filesystem>
#include <optional>

#include "core/base/Result.h"
#include "core/files/Roots.h"
#include "core/process/FileDescriptor.h"
#include "helpers/hostdata/HostPlaces.h"

namespace mirvel::agent {

/// The lock that makes a process the agent of a user. It is a file, whose lock (fcntl(2)) names its holder and ends
/// with it. An agent ends when the file is deleted.
class AgentLock {
 public:
  enum class Wait { No, Yes };

  static std::filesystem::path file(const Roots& roots) { return roots.ownAgent() / "lock"; }

  /// Takes the lock, creating the file if necessary. With `Wait::Yes`, waits until another agent ends, after it has
  /// been told that somebody waits: it ends if it has lost its desktop. Nullopt if another agent has the lock.
  static Result<std::optional<AgentLock>> take(const Roots& roots, Wait wait);
  /// The process that has the lock; nullopt if there is none.
  static std::optional<pid_t> holder(const Roots& roots);

  /// Whether the file still exists and is that of this lock.
  bool isWhole() const { return FileIdentity::of(m_file.number()) == FileIdentity::at(m_path); }

 private:
  AgentLock(FileDescriptor file, std::filesystem::path path) : m_file(std::move(file)), m_path(std::move(path)) {}

  FileDescriptor m_file;
  std::filesystem::path m_path;
};

}  // namespace mirvel::agent
