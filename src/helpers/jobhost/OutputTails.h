#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "core/messages/Replies.h"

namespace mirvel {

/// Reads the ends of the files to which jobs write, for a host that keeps no log of them. Nobody knows when a line was
/// written: it gets the time at which the file was last changed when the line was read. Not thread-safe.
class OutputTails {
 public:
  /// What exceeds this in one reading isn't read. An event says how much.
  static constexpr std::uint64_t mostBytes = std::uint64_t{4} << 20;
  static constexpr std::size_t longestLine = 4096;  ///< in bytes; a longer line is broken
  /// An incomplete line is returned if the file hasn't changed for this time.
  static constexpr std::chrono::seconds patience{2};

  using Time = std::chrono::sys_time<std::chrono::microseconds>;

  /// How far files have been read.
  struct Position {
    dev_t device = 0;
    ino_t node = 0;
    std::uint64_t offset = 0;

    bool operator==(const Position&) const = default;
  };
  using Positions = std::map<std::filesystem::path, Position>;

  /// The lines beyond the positions, which it updates; without a number. A file without a position is read from
  /// `mostBytes` before its end, after an event that says that the times of its lines aren't known. One that was
  /// replaced or truncated is read from its beginning: what was appended to it since the last reading is lost. What
  /// isn't a regular file, or can't be opened, has no lines.
  static std::vector<messages::LogLine> read(const std::vector<std::filesystem::path>& files, Positions& positions,
                                             Time now);
  /// The positions at the ends of the files.
  static Positions ends(const std::vector<std::filesystem::path>& files);

  /// Where a query goes on.
  struct State {
    bool isLost = false;  ///< the positions aren't known
    Positions positions = {};
    std::int64_t newest = 0;  ///< the number of the newest line of the log itself
  };
  /// The state after the answer whose last line had this number; none if it isn't known any more.
  std::optional<State> after(const std::string& label, std::int64_t number) const;
  /// At most `mostAnswers` of a label are remembered. An answer of the same number is replaced.
  void remember(const std::string& label, std::int64_t number, State state);

 private:
  static constexpr std::size_t mostAnswers = 16;
  static constexpr std::size_t mostLabels = 256;

  struct Answer {
    std::int64_t number = 0;
    State state;
  };

  std::map<std::string, std::deque<Answer>> m_answers;  ///< by label
};

}  // namespace mirvel
