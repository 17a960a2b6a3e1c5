#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/catalogue/JobFolder.h"

namespace mirvel {

/// Reads the regular files of a folder in batches of 32. Alternating between reading and decoding for every file would
/// be slower, since kernel and decoder evict each other's code and data from the processor's cache. Not thread-safe.
class ReadAhead {
 public:
  /// The content of a file.
  struct Contents {
    std::string_view bytes;
    JobFolder::Stamp stamp;
  };

  /// The references must outlive this object. Without `withStamps`, the stamps of the contents aren't set.
  ReadAhead(const JobFolder& folder, const JobFolder::Entries& entries, bool withStamps)
      : m_folder(folder), m_entries(entries), m_withStamps(withStamps) {}

  /// The content of the entry with this index, which must have been listed as a regular file. Indexes must be requested
  /// in ascending order. The bytes are valid until the next call. Fails like `JobFolder::readListed`.
  const Result<Contents>& read(std::size_t index);

 private:
  static constexpr std::size_t batchSize = 32;
  static constexpr std::size_t roomSize = std::size_t{64} << 10U;

  /// Reads the batch that begins with this entry.
  void fill(std::size_t first);
  Result<Contents> readEntry(const std::string& name, std::string& overflow);

  const JobFolder& m_folder;
  const JobFolder::Entries& m_entries;
  bool m_withStamps;
  std::size_t m_first = 0;  // the first entry of the batch
  std::vector<Result<Contents>> m_contents;
  // One file after the other, so that the batch takes as little of the cache as possible.
  std::unique_ptr<char[]> m_room = std::make_unique_for_overwrite<char[]>(roomSize);
  std::size_t m_used = 0;
  std::array<std::string, batchSize> m_overflows;  // the files that don't fit
};

}  // namespace mirvel
