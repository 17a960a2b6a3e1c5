#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/Result.h"
#include "helpers/hostdata/StoredLog.h"

namespace mirvel::host {

/// The log of all jobs on disk: what they print, and what happens to them. Each label has files of its own, of bounded
/// size, whose form `StoredLog` defines, and a counter for all of its lines, which continues after a restart.
///
/// Each addition gets the time of the clock. Within a label times don't run backwards: a correction of the clock by
/// less than an hour holds them until the clock has caught up. Failing to write only costs the lines: their numbers are
/// missing then. For one thread.
class JobLog {
 public:
  static constexpr std::size_t outputSize = std::size_t{4} << 20U;    ///< bytes of both halves together
  static constexpr std::size_t eventsSize = std::size_t{128} << 10U;  ///< likewise
  static constexpr std::size_t longestEvent = 1000;                   ///< bytes; the rest is cut off
  static constexpr std::chrono::hours keptFor{24 * 30};               ///< age of the last line at which `prune` deletes

  using Clock = std::function<LogMoment()>;
  static LogMoment systemMoment();

  /// The folder is created with the first line; its parent must exist by then.
  explicit JobLog(std::filesystem::path folder, Clock clock = systemMoment);

  /// Appends what the job has printed. A line feed within a line becomes a space. Fails with the error of the system,
  /// for example if the disk is full; the first lines may have been written then.
  Result<void> addOutput(const std::string& label, const std::vector<std::string>& lines);
  /// Appends a start, an end, or another message of the host. Fails likewise.
  Result<void> addEvent(const std::string& label, const std::string& text);
  /// Counts lines that the job has printed and that aren't kept, and appends a message about them at their position.
  /// Fails likewise.
  Result<void> addDropped(const std::string& label, std::int64_t lines, const std::string& text);

  /// The number of the newest line that was written; 0: there is none.
  std::int64_t newest(const std::string& label);
  LogMoment now() const { return m_clock(); }
  std::string blocks(const std::string& label, const LogRange& range) const;

  /// Deletes the log of a label.
  void remove(const std::string& label);
  /// Deletes the files of labels without a line for `keptFor`.
  void prune();

 private:
  struct Label {
    explicit Label(StoredLog files);

    StoredLog files;
    std::int64_t last = 0;    ///< the number that was used last
    std::int64_t newest = 0;  ///< the number of the newest line on disk
    LogMoment time{};
  };
  /// Where lines are written.
  struct Target {
    const std::filesystem::path& file;
    std::size_t half;  ///< bytes
    messages::LogLine::Kind kind;
  };

  Label& find(const std::string& label);
  LogMoment momentFor(const Label& label) const;
  Result<void> add(Label& label, const Target& target, const std::vector<std::string>& lines) const;
  static Target output(const Label& label, messages::LogLine::Kind kind);

  std::filesystem::path m_folder;
  Clock m_clock;
  std::map<std::string, Label> m_labels;
};

}  // namespace mirvel::host
