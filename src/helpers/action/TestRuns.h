#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/messages/Requests.h"
#include "helpers/jobhost/Cancellation.h"
#include "helpers/jobhost/JobHost.h"

namespace mirvel {

/// Runs jobs temporarily to test commands. The destructor stops and removes those that are left. Thread-safe.
class TestRuns {
 public:
  static constexpr std::chrono::seconds longestWait{60};
  static constexpr std::size_t largestOutput = std::size_t{1} << 20U;

  /// The host must outlive the object. With a folder, which must be private to the user of this process, all files are
  /// created there, and the paths in a request only identify the test. Without one, the paths in the request are used.
  TestRuns(JobHost& host, std::optional<std::filesystem::path> ownFolder)
      : m_host(host), m_ownFolder(std::move(ownFolder)) {}
  ~TestRuns();
  TestRuns(const TestRuns&) = delete;
  TestRuns& operator=(const TestRuns&) = delete;

  /// Writes the job file, loads it, waits for the job's end, and returns its output (see `readableText`), the first
  /// `largestOutput` bytes at most. If the job is still running after `longestWait`, returns the output so far and
  /// leaves the job loaded. A test that is cancelled fails with `Cancelled`: its job has been stopped and its files
  /// deleted, or it wasn't started at all. A test that is removed has no output.
  Result<std::string> run(const messages::Test& request, Cancellation& cancellation);
  /// Stops the job of the test that was requested with this path, deletes its files, and makes its `run` return.
  /// Returns nullopt if there is no such test.
  std::optional<Result<void>> remove(const std::filesystem::path& asked);

 private:
  struct Run {
    std::filesystem::path asked;  ///< the path in the request
    std::filesystem::path job;
    std::filesystem::path output;
    std::string label;
  };

  Result<Run> place(const messages::Test& request, const std::string& label, std::string& content) const;
  Result<void> wait(const Run& run, Cancellation& cancellation);
  bool isListed(const Run& run);
  std::optional<Run> take(const std::function<bool(const Run&)>& isMeant);
  Result<void> end(const Run& run);

  JobHost& m_host;
  std::optional<std::filesystem::path> m_ownFolder;
  std::mutex m_mutex;
  std::vector<Run> m_runs;
};

/// Returns the text with U+FFFD for each byte that isn't valid UTF-8, cut at a character to `maximum` bytes at most.
std::string readableText(std::string_view bytes, std::size_t maximum);

}  // namespace mirvel
