#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/Result.h"
#include "core/files/URL.h"
#include "core/process/FileDescriptor.h"

namespace mirvel {

/// A folder with job files, held open: its entries are reached through it, and so stay those of one folder even while
/// it is renamed or replaced. From any thread.
class JobFolder {
 public:
  /// More than this is no job file, but an accident.
  static constexpr std::size_t largestFile = std::size_t{16} << 20U;

  /// What can be known of an entry without opening it. Of a link it is what its target says.
  struct Stamp {
    std::int64_t seconds = 0;  ///< when its content changed last, since 1970
    long nanoseconds = 0;
    std::uint64_t size = 0;
    bool isRegular = false;
  };

  /// An entry as the listing tells it.
  struct Entry {
    std::string name;
    bool isRegular = false;  ///< certainly a regular file; a link is none, and some file systems tell of nothing
  };

  using Entries = std::vector<Entry>;

  /// None if there is no such folder or this user may not list it.
  static std::optional<JobFolder> open(const std::filesystem::path& path);

  const std::filesystem::path& path() const { return m_path; }
  URL urlOf(const std::string& name) const { return URL::file(m_prefix + name); }
  /// All entries, hidden ones too, in the order of their inodes, which is the quickest one to read them in. A folder
  /// that vanishes meanwhile gives what was read.
  Entries entries() const;
  /// None if it is gone, or a link that leads nowhere.
  std::optional<Stamp> stamp(const std::string& name) const;
  /// The bytes of a regular file. Anything else isn't opened: to open a pipe or a device can block, or do something.
  Result<std::string> read(const std::string& name, const Stamp& stamp) const;
  /// Likewise of an entry that was listed as a regular file, with fewer looks at the folder: if it has become something
  /// else meanwhile, a link isn't followed, and a pipe not waited for. The bytes lie in `room`, until it is used again,
  /// and their date is told if it is asked for.
  Result<std::string_view> readListed(const std::string& name, std::string& room, Stamp* stamp) const;

 private:
  JobFolder(std::filesystem::path path, FileDescriptor descriptor)
      : m_path(std::move(path)), m_prefix((m_path / "").native()), m_descriptor(std::move(descriptor)) {}

  FileDescriptor openEntry(const std::string& name, int flags) const;
  Result<std::string_view> readAll(const FileDescriptor& file, const std::string& name, std::string& room) const;

  std::filesystem::path m_path;
  std::string m_prefix;  // with a slash at its end
  FileDescriptor m_descriptor;
};

/// What the log says of a job file that can't be read.
std::string unreadableJobLine(const std::string& path);

}  // namespace mirvel
