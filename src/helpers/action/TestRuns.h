#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "helpers/action/Request.h"
#include "helpers/jobfiles/JobFiles.h"
#include "helpers/jobhost/JobHost.h"

namespace mirvel {

/// The throw-away jobs by which commands are tried. All that are left are removed at its end.
class TestRuns {
 public:
  static constexpr std::chrono::seconds longestWait{60};
  static constexpr std::size_t largestOutput = std::size_t{1} << 20U;

  /// With a folder of its own, the files go there whatever a request says, and are root's alone.
  TestRuns(JobHost& host, std::optional<std::filesystem::path> ownFolder)
      : m_host(host), m_ownFolder(std::move(ownFolder)) {}
  ~TestRuns();
  TestRuns(const TestRuns&) = delete;
  TestRuns& operator=(const TestRuns&) = delete;

  /// Writes and loads the job, waits for its end, and gives what it printed, as text. A job that runs for longer stays
  /// loaded, and gives what it has printed so far.
  Result<std::string> run(const Request& request);
  /// Whether the request to unload is about a test job.
  bool isTest(const Request& request) const;
  /// Stops what still runs of it and deletes its files.
  Result<void> remove(const Request& request);

 private:
  struct Run {
    std::filesystem::path asked;  ///< the path by which it was asked for
    std::filesystem::path job;
    std::filesystem::path output;
    std::string label;
  };

  static bool isMeant(const Run& run, const Request& request);
  Result<Run> place(const Request& request, const std::string& label, std::string& content) const;
  Result<void> end(const Run& run);

  JobHost& m_host;
  std::optional<std::filesystem::path> m_ownFolder;
  std::vector<Run> m_runs;
};

/// The text with U+FFFD for what isn't UTF-8, cut to so many bytes.
std::string readableText(std::string_view bytes, std::size_t maximum);

}  // namespace mirvel
