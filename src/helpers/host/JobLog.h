#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/Result.h"
#include "core/messages/Replies.h"

namespace mirvel::host {

/// What jobs print, and when they start and end, on disk: for each job a file of bounded size and its predecessor, so
/// that a job that says much never drives out what another has said.
class JobLog {
 public:
  static constexpr std::size_t fileSize = std::size_t{64} << 10U;  ///< bytes of a file, roughly
  static constexpr std::chrono::hours keptFor{24 * 30};            ///< how long the log of a job outlives its last line

  /// The folder is made with the first line.
  explicit JobLog(std::filesystem::path folder) : m_folder(std::move(folder)) {}

  using Moment = std::chrono::sys_time<std::chrono::milliseconds>;
  /// Fails if it can't be written; the job runs all the same.
  Result<void> add(const std::string& label, Moment now, const std::vector<std::string>& lines) const;
  /// The lines since that moment that hold the text, "" being in all of them, the oldest first; at most so many bytes
  /// of the youngest.
  std::vector<messages::LogLine> find(Moment since, std::string_view text, std::size_t maximumBytes) const;
  /// Removes the files of jobs that have been silent for long.
  void prune(Moment now) const;

 private:
  std::filesystem::path fileOf(const std::string& label) const;

  std::filesystem::path m_folder;
};

}  // namespace mirvel::host
