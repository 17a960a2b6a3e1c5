#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "core/messages/Requests.h"
#include "helpers/action/Cancellation.h"
#include "helpers/jobhost/JobHost.h"

namespace mirvel {

/// The throw-away jobs by which commands are tried. All that are left are removed in the destructor. Thread-safe.
class TestRuns {
 public:
  static constexpr std::chrono::seconds longestWait{60};
  static constexpr std::size_t largestOutput = std::size_t{1} << 20U;

  /// With a folder of its own, all files are made there, readable by this user alone, whatever a request says.
  TestRuns(JobHost& host, std::optional<std::filesystem::path> ownFolder)
      : m_host(host), m_ownFolder(std::move(ownFolder)) {}
  ~TestRuns();
  TestRuns(const TestRuns&) = delete;
  TestRuns& operator=(const TestRuns&) = delete;

  /// Writes and loads the job, waits for its end, and returns what it has printed, as text. A job that runs for longer
  /// stays loaded, and its output so far is returned. One that is cancelled is stopped and removed, which is an error.
  Result<std::string> run(const messages::Test& request, Cancellation& cancellation);
  /// Stops what still runs of the test that was asked for by that path, and deletes its files; the `run` that waits for
  /// it returns then. None: there is no such test.
  std::optional<Result<void>> remove(const std::filesystem::path& asked);

 private:
  struct Run {
    std::filesystem::path asked;  ///< the path by which it was asked for
    std::filesystem::path job;
    std::filesystem::path output;
    std::string label;
  };

  Result<Run> place(const messages::Test& request, const std::string& label, std::string& content) const;
  Result<void> wait(const Run& run, Cancellation& cancellation);
  std::optional<Run> take(const std::function<bool(const Run&)>& isMeant);
  Result<void> end(const Run& run);

  JobHost& m_host;
  std::optional<std::filesystem::path> m_ownFolder;
  std::mutex m_mutex;
  std::vector<Run> m_runs;
};

/// The text with U+FFFD for what isn't UTF-8, cut to so many bytes.
std::string readableText(std::string_view bytes, std::size_t maximum);

}  // namespace mirvel
