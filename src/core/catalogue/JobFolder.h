#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/Result.h"
#include "core/files/URL.h"
#include "core/process/FileDescriptor.h"

namespace mirvel {

/// An open folder with job files. Its entries are accessed relative to its descriptor, so they stay those of one folder
/// even if it is renamed or replaced. Thread-safe.
class JobFolder {
 public:
  /// In bytes; larger files aren't job files.
  static constexpr std::size_t largestFile = std::size_t{16} << 20U;

  /// The metadata of an entry, or of a link's target. Equal stamps mean the same content, unless the file was written
  /// twice within one tick of the file system's clock.
  struct Stamp {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::chrono::nanoseconds modified{};  ///< since 1970
    std::chrono::nanoseconds changed{};   ///< the last change of content or metadata, which can't be set
    std::uint64_t size = 0;
    bool isRegular = false;
    bool hasOtherNames = false;  ///< a file with several hard links

    bool operator==(const Stamp&) const = default;
  };

  /// An entry as listed by readdir(3).
  struct Entry {
    std::string name;
    bool isRegular = false;  ///< certainly a regular file; false for links, and on file systems that don't report types
  };

  using Entries = std::vector<Entry>;

  /// Null if the folder doesn't exist or can't be listed by this user.
  static std::optional<JobFolder> open(const std::filesystem::path& path);

  const std::filesystem::path& path() const { return m_path; }
  URL urlOf(const std::string& name) const { return URL::file(m_prefix + name); }
  /// All entries, including hidden ones, in the order of their inodes, which is the fastest order to read them in.
  /// Nullopt if it can't be listed; if the folder is deleted meanwhile, the entries read so far.
  std::optional<Entries> entries() const;
  /// Null if it doesn't exist or is a dangling link.
  std::optional<Stamp> stamp(const std::string& name) const;
  /// Reads a regular file. Fails for anything else without opening it, since opening a pipe or device can block or have
  /// side effects; with `LimitExceeded` beyond `largestFile`.
  Result<std::string> read(const std::string& name, const Stamp& stamp) const;
  /// The same for an entry that was listed as a regular file, with fewer system calls. If it has been replaced
  /// meanwhile, links aren't followed and pipes don't block. The result refers to `room` if that is larger than the
  /// file, otherwise to `overflow`; `stamp` receives the metadata unless it is null.
  Result<std::string_view> readListed(const std::string& name, std::span<char> room, std::string& overflow,
                                      Stamp* stamp) const;

 private:
  JobFolder(std::filesystem::path path, FileDescriptor descriptor)
      : m_path(std::move(path)), m_prefix((m_path / "").native()), m_descriptor(std::move(descriptor)) {}

  FileDescriptor openEntry(const std::string& name, int flags) const;
  Result<void> readRest(const FileDescriptor& file, const std::string& name, std::string& bytes,
                        std::size_t size) const;

  std::filesystem::path m_path;
  std::string m_prefix;  // with a trailing slash
  FileDescriptor m_descriptor;
};

/// The log line for a job file that can't be read.
std::string unreadableJobLine(const std::string& path);

}  // namespace mirvel
