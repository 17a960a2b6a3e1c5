#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <utility>

#include "core/base/Result.h"
#include "core/process/FileDescriptor.h"

namespace mirvel {

/// Tells the readers of a folder of reports whether the host that publishes them lives. It is a file that the host
/// keeps open and locked for writing, which only its owner can. When a host is killed, the system closes the file,
/// which wakes everybody who watches the folder.
class HostMark {
 public:
  enum class State : std::uint8_t {
    None,  ///< no host publishes reports here, or it has ended in an orderly way
    Held,  ///< the host lives
    Left   ///< the host was killed
  };
  /// Nullopt if there is a mark that can't be examined.
  static std::optional<State> in(const std::filesystem::path& folder);
  /// Likewise for an open folder.
  static std::optional<State> in(int folder);

  /// Marks an open folder, in place of the mark of an earlier host. `mode` are the permissions of the file. Fails with
  /// the error of the system, for `path`, which is that of the folder.
  static Result<HostMark> set(int folder, const std::filesystem::path& path, mode_t mode);
  /// Marks the folder at a path that others can't replace.
  static Result<HostMark> set(const std::filesystem::path& folder, mode_t mode);
  /// No mark.
  HostMark() = default;
  HostMark(HostMark&& other) noexcept = default;
  HostMark& operator=(HostMark&& other) noexcept;
  /// Removes the file, unless another host has replaced it.
  ~HostMark() { remove(); }

  /// Whether this is the mark of the open folder.
  bool isIn(int folder) const;

 private:
  HostMark(FileDescriptor folder, FileDescriptor file) : m_folder(std::move(folder)), m_file(std::move(file)) {}
  void remove();

  FileDescriptor m_folder;
  FileDescriptor m_file;
};

}  // namespace mirvel
