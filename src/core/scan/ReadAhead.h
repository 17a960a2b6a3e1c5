#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/catalogue/JobFolder.h"

namespace mirvel {

/// Reads the regular files of a folder in batches. If reading and decoding alternated file by file, the kernel and the
/// decoder would evict each other from the processor's cache. For one thread at a time.
class ReadAhead {
 public:
  struct Contents {
    std::string_view bytes;
    JobFolder::Stamp stamp;
  };

  /// The folder and its entries outlive the reader. Without stamps those of the contents say nothing.
  ReadAhead(const JobFolder& folder, const JobFolder::Entries& entries, bool withStamps)
      : m_folder(folder), m_entries(entries), m_withStamps(withStamps) {}

  /// What the entry with this index holds, which was listed as a regular file. The bytes stay until an entry farther on
  /// is asked for.
  const Result<Contents>& read(std::size_t index);

 private:
  static constexpr std::size_t batchSize = 32;
  static constexpr std::size_t roomSize = std::size_t{64} << 10U;

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
