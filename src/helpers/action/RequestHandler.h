#pragma once

#include <functional>
#include <optional>

#include "core/actions/HelperFailure.h"
#include "helpers/action/TestRuns.h"

namespace mirvel {

/// Does what a helper is asked for. One request at a time.
class RequestHandler {
 public:
  struct Setup {
    JobFiles& files;
    JobHost& host;
    /// Removes what was installed outside of the package.
    std::function<Result<void>()> uninstall;
    /// Whether the label of a request, and that of new content, may stop a job. Otherwise only those of the files that
    /// are replaced or removed do, so that nobody stops a job that isn't touched; others are ignored.
    bool trustsLabels = true;
    std::optional<std::filesystem::path> testFolder = {};  ///< see `TestRuns`
    bool startsHost = false;  ///< whether the host, with the agents of the user of this process, is started on request
  };

  explicit RequestHandler(Setup setup) : m_setup(std::move(setup)), m_tests(m_setup.host, m_setup.testFolder) {}

  /// The answer: empty for what was done, `error` for what wasn't, or what was asked for.
  propertylist::Dictionary handle(const propertylist::Dictionary& dictionary);
  /// Whether the helper was asked to end.
  bool isDone() const { return m_isDone; }

 private:
  /// None: it was done.
  using Outcome = std::optional<HelperFailure>;
  /// A job that may be loaded, and the file that it would have been loaded from.
  struct Job {
    std::string label;
    std::filesystem::path file;
  };
  struct Jobs {
    std::vector<Job> labelled;
    std::vector<std::filesystem::path> files;  ///< that say no label: whatever was loaded from them
    std::optional<std::string> label;          ///< that those may have
  };

  propertylist::Dictionary answer(const Request& request);
  Outcome act(const Request& request);
  Outcome write(const Request& request);
  Outcome delete_(const Request& request);
  Outcome unload(const Request& request);
  Outcome load(const std::filesystem::path& file);
  propertylist::Dictionary test(const Request& request);
  propertylist::Dictionary log(const Request& request);

  Jobs jobsToUnload(const std::filesystem::path& file, const Request& request,
                    const std::optional<std::string>& newLabel = {});
  static void add(Job job, Jobs& jobs);
  void addJobIn(const std::filesystem::path& file, Jobs& jobs);
  Outcome unloadAll(const Jobs& jobs);

  Setup m_setup;
  TestRuns m_tests;
  bool m_isDone = false;
};

}  // namespace mirvel
