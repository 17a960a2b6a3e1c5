#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "core/messages/Replies.h"
#include "core/messages/Requests.h"
#include "core/process/FileDescriptor.h"
#include "helpers/action/TestFolder.h"
#include "helpers/jobhost/Cancellation.h"
#include "helpers/jobhost/JobHost.h"

namespace mirvel {

/// Runs jobs temporarily to test commands, each in a `TestFolder`. The destructor stops and removes those that are
/// left. Thread-safe.
class TestRuns {
 public:
  static constexpr std::chrono::seconds longestWait{60};
  /// Receives the output while a test runs, on the thread of the test. Returns false if it couldn't take the piece,
  /// which is then sent again together with what follows.
  using Progress = std::function<bool(const messages::TestProgress& progress)>;

  /// The host must outlive the object. Without a folder all tests are refused. In the background, stops and removes the
  /// tests in it whose process was killed.
  TestRuns(JobHost& host, std::optional<std::filesystem::path> folder);
  ~TestRuns();
  TestRuns(const TestRuns&) = delete;
  TestRuns& operator=(const TestRuns&) = delete;

  /// Loads the job of the request, and waits for its end, at most for `longestWait`; then the job stays loaded, and its
  /// further output is discarded. The paths in the request only identify the test. A job that can't be started is a
  /// result; a failure means that it couldn't be loaded, and leaves nothing behind. A test that is cancelled fails with
  /// `Cancelled`, after it has been stopped and removed. The outcome of a test that is removed while it runs is that it
  /// was stopped.
  Result<messages::TestResult> run(const messages::Test& request, Cancellation& cancellation,
                                   const Progress& progress = {});
  /// Stops the job of the test that was requested with this path, deletes its folder, and makes its `run` return.
  /// Returns nullopt if there is no such test.
  std::optional<Result<void>> remove(const std::filesystem::path& asked);

 private:
  /// Reads and discards what a job prints after the time limit, or the processes that it has left, so that they aren't
  /// blocked by a full pipe. The destructor ends that.
  class Discarding {
   public:
    Discarding() = default;
    ~Discarding();
    Discarding(const Discarding&) = delete;
    Discarding& operator=(const Discarding&) = delete;

    /// Called once at most. The descriptor must be non-blocking and outlive this object.
    void begin(int output);

   private:
    Pipe m_end = {};
    std::thread m_thread;
  };
  struct Run {
    std::filesystem::path asked;  ///< the path in the request
    std::string label;
    TestFolder folder;
    Discarding discarding = {};
  };
  using Shared = std::shared_ptr<Run>;

  Result<Shared> place(const messages::Test& request);
  Result<messages::TestResult> runPlaced(const Shared& run, Cancellation& cancellation, const Progress& progress);
  Result<messages::TestResult> follow(const Run& run, const Progress& progress);
  void discardRest(const Shared& run);
  bool isListed(const Shared& run);
  Shared take(const std::function<bool(const Run&)>& isMeant);
  Result<void> endIfListed(const Shared& run);
  Result<void> end(Run& run);
  void endLeftOnes(std::vector<TestFolder> folders);

  JobHost& m_host;
  std::optional<std::filesystem::path> m_folder;
  std::mutex m_mutex;
  std::vector<Shared> m_runs;
  std::thread m_cleaning;
};

}  // namespace mirvel
