#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "core/messages/Replies.h"

/// The stored form of the log of a job, which the job host writes, and which it and its clients read.
namespace mirvel {

using LogMoment = std::chrono::sys_time<std::chrono::microseconds>;

/// The head of a block of lines that were logged at the same time:
///
///     #12 2026-11-23T11:53:46.123456Z output
///     |the line with the number 12, whose bytes are kept as they are
///     |the line with the number 13
///
/// A line begins with a bar, so that no content is taken for a head. A head without lines marks a position: the line
/// with that number was logged at that time, or later if it was dropped.
struct LogHead {
  std::int64_t number = 1;
  LogMoment time{};
  messages::LogLine::Kind kind = messages::LogLine::Kind::Output;

  /// With the line feed. Times before 1970 are written as 1970.
  std::string text() const;
  /// Reads exactly such a line, without the line feed. Numbers are from 1 to 2^53, years from 1970 to 9999.
  static std::optional<LogHead> read(std::string_view line);
  bool operator==(const LogHead&) const = default;
};

/// The lines that are wanted: those with a larger number than `after`, or without one those since a moment.
struct LogRange {
  LogMoment since{};
  std::optional<std::int64_t> after = {};

  bool has(const LogHead& line) const { return after ? line.number > *after : line.time >= since; }
};

/// The heads and lines of blocks, one after the other. A last line without a line feed is ignored, and so are lines of
/// another form and those behind them up to the next head.
class LogBlocks {
 public:
  /// The bytes must outlive this object.
  explicit LogBlocks(std::string_view bytes) : m_rest(bytes) {}

  struct Item {
    LogHead position;
    std::optional<std::string_view> line;  ///< none: a head
  };
  std::optional<Item> next();

 private:
  std::string_view m_rest;
  std::optional<LogHead> m_next;  ///< the position of the next line
};

/// The lines in the blocks that are in the range, ordered by number; of two with the same number only one. Those that
/// are missing between the beginning of the range and the newest line count as dropped. Of more than `mostLogLines` of
/// output, those that come first are dropped as well.
messages::LogLines linesOfBlocks(std::string_view blocks, const LogRange& range);
inline constexpr std::int64_t mostLogLines = 150'000;

/// The files with the log of one label: its output, and its events, which output never displaces. Each has an older
/// half, which is replaced when the newer one is full.
class StoredLog {
 public:
  /// The folder of `HostPlaces::log`.
  StoredLog(const std::filesystem::path& folder, const std::string& label);

  const std::filesystem::path& output() const { return m_output; }
  const std::filesystem::path& events() const { return m_events; }
  static std::filesystem::path olderHalf(std::filesystem::path file) { return file += ".older"; }

  /// The blocks that contain the range and the last line before it, for `linesOfBlocks`. Files that can't be read, and
  /// bytes of another form, are skipped.
  std::string blocks(const LogRange& range) const;
  /// The position of the newest line; none if there is no line.
  std::optional<LogHead> newest() const;

 private:
  std::filesystem::path m_output;
  std::filesystem::path m_events;
};

}  // namespace mirvel
