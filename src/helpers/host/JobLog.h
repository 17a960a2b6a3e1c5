#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/Result.h"
#include "core/messages/Replies.h"

namespace mirvel::host {

/// The log of all jobs on disk: what they print, and when they start and end. Each label has a file of bounded size and
/// its predecessor, so that a job with much output never displaces the lines of another. For one thread.
class JobLog {
 public:
  static constexpr std::size_t fileSize = std::size_t{64} << 10U;  ///< bytes after which a file is rotated
  static constexpr std::chrono::hours keptFor{24 * 30};            ///< age of the last line at which `prune` deletes

  /// The folder is created with the first line; its parent must exist by then.
  explicit JobLog(std::filesystem::path folder) : m_folder(std::move(folder)) {}

  using Moment = std::chrono::sys_time<std::chrono::milliseconds>;
  /// Appends lines with the same time. A line feed within a line becomes a space. Fails with the error of the system,
  /// for example if the disk is full; part of the lines may have been written then.
  Result<void> add(const std::string& label, Moment now, const std::vector<std::string>& lines) const;
  /// The lines of all labels since `since` that contain the text ("": all lines), the oldest first. If they exceed
  /// `maximumBytes`, only the newest are returned. Lines of another form and unreadable files are skipped.
  std::vector<messages::LogLine> find(Moment since, std::string_view text, std::size_t maximumBytes) const;
  /// Deletes the files of labels without a line for `keptFor`.
  void prune(Moment now) const;

 private:
  std::filesystem::path fileOf(const std::string& label) const;

  std::filesystem::path m_folder;
};

/// Splits the output of a process into lines for the log, and limits how much of it is kept: a process that prints
/// endlessly costs no more than one that prints a lot. Bytes are kept as they are, whatever their encoding.
class OutputLines {
 public:
  static constexpr std::size_t longestLine = 4096;                  ///< bytes; a longer line is broken
  static constexpr std::size_t allowance = std::size_t{64} << 10U;  ///< bytes that are kept in each period
  static constexpr std::chrono::seconds period{10};

  /// Returns the lines that `bytes` completes. What exceeds the allowance is dropped until the period is over; one line
  /// says so. `now` is any monotonic time.
  std::vector<std::string> add(std::string_view bytes, std::chrono::milliseconds now);
  /// Returns the last line if it has no line feed.
  std::vector<std::string> finish();

 private:
  bool hasRoom(std::size_t size, std::chrono::milliseconds now);
  std::string takeLine();

  std::string m_line;  ///< incomplete
  std::chrono::milliseconds m_periodEnd{0};
  std::size_t m_kept = 0;  ///< bytes in this period
  bool m_isFull = false;
};

}  // namespace mirvel::host
