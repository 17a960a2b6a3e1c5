#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "core/catalogue/JobFolder.h"

namespace mirvel {

/// Reads the regular files of a folder some at a time. Reading and decoding by turns, file for file, would have the
/// kernel and the reader push each other out of the processor's cache. For one thread at a time.
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
  static constexpr std::size_t atOnce = 32;

  void fill(std::size_t first);
  Result<Contents> readEntry(const std::string& name, std::string& room) const;

  const JobFolder& m_folder;
  const JobFolder::Entries& m_entries;
  bool m_withStamps;
  std::size_t m_first = 0;  // the entry of the first room
  std::vector<Result<Contents>> m_contents;
  std::array<std::string, atOnce> m_rooms;
};

}  // namespace mirvel
