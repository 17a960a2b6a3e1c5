#pragma once

#include <chrono>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "core/process/FileDescriptor.h"
#include "helpers/host/JobLog.h"
#include "helpers/host/OutputFiles.h"
#include "helpers/host/OutputLines.h"
#include "helpers/host/PollLoop.h"

namespace mirvel::host {

class JobOutput;

/// What the outputs of all jobs share. The owner calls `settle` after each turn of the loop. For one thread.
class OutputCapture {
 public:
  /// Both must outlive this object.
  OutputCapture(PollLoop& loop, JobLog& log) : m_loop(loop), m_log(log), m_notices(loop) {}

  /// The labels for whose lines somebody waits: an incomplete line, such as a prompt, is logged after a short time.
  void follow(std::set<std::string> labels) { m_followed = std::move(labels); }
  /// Reads what is due.
  void settle();
  /// When to call `settle` again, on the running clock.
  std::optional<std::chrono::milliseconds> wakeAt() const;

 private:
  friend JobOutput;

  PollLoop& m_loop;
  JobLog& m_log;
  FileNotices m_notices;
  std::set<JobOutput*> m_active;
  std::set<std::string> m_followed;
};

/// Gives a pipe room for 1 MiB, where the system allows it.
void enlargePipe(int pipe);

/// Logs the output of the runs of a job: what comes through the pipe, and what is appended to its output files. It is
/// read in small pieces, each with its time, and a bounded amount in each turn of the loop. A job that exceeds its
/// `OutputBudget` is read at intervals, and quickly, so that it is neither expensive nor blocked. For one thread.
class JobOutput final : private FileNotices::Listener {
 public:
  static constexpr std::size_t pieceSize = 4096;             ///< bytes
  static constexpr std::size_t droppedPieceSize = 65536;     ///< likewise, while output is dropped
  static constexpr int piecesPerTurn = 16;                   ///< of each file and of the pipe
  static constexpr std::chrono::milliseconds dropPause{10};  ///< between turns in which output is dropped
  static constexpr std::chrono::milliseconds promptDelay{300};
  static constexpr std::chrono::seconds pollingPause{2};  ///< for files that can't be watched
  /// Of a file whose output is dropped, the bytes before these aren't even read.
  static constexpr std::uint64_t mostCounted = std::uint64_t{64} << 20U;

  /// The capture must outlive this object.
  JobOutput(std::string label, OutputCapture& capture) : m_label(std::move(label)), m_capture(capture) {}
  ~JobOutput() override { (void)end(); }
  JobOutput(const JobOutput&) = delete;
  JobOutput& operator=(const JobOutput&) = delete;

  /// Begins a run: its files are followed from here on. Called before the process is started.
  void begin(const ProcessPlan& plan);
  /// Reads the output from the pipe, which is non-blocking, until its end. None: there is none.
  void readFrom(FileDescriptor pipe);
  /// Logs all output until now, also incomplete lines. Reading goes on.
  void finish();
  /// Ends the run; does nothing without one. Returns the pipe unless all writers have closed it.
  FileDescriptor end();

 private:
  friend OutputCapture;
  using milliseconds = std::chrono::milliseconds;

  void filesChanged() override;
  void settle(milliseconds now);
  std::optional<milliseconds> wakeAt() const;
  bool isFollowed() const { return m_capture.m_followed.count(m_label) > 0; }

  void readPipe();
  void closePipe();
  void pausePipe(milliseconds now);
  /// Returns whether there may be more.
  bool readFiles(milliseconds now);
  bool readFile(OutputFiles::File& file, milliseconds now);
  void take(std::string_view bytes, OutputLines& lines, milliseconds now);
  void log(const std::vector<std::string>& lines);
  void logDropped(const std::optional<OutputBudget::Dropped>& dropped);
  void logPrompts(milliseconds now);

  std::string m_label;
  OutputCapture& m_capture;
  OutputBudget m_budget;  ///< continues over runs: a job that restarts all the time has no more than others
  FileDescriptor m_pipe;
  OutputLines m_pipeLines;
  milliseconds m_pipeReadAt{0};
  std::optional<milliseconds> m_pipePausedUntil;
  std::optional<OutputFiles> m_files;        ///< set during a run of a job with output files
  std::optional<milliseconds> m_filesDueAt;  ///< when they are read next
  bool m_mustPoll = false;                   ///< the files can't be watched
};

}  // namespace mirvel::host
