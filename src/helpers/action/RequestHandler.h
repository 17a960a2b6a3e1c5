#pragma once

#include <functional>
#include <optional>

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
    /// Whether a label in a request may stop a job. Otherwise only those of the files that are replaced or removed do,
    /// so that nobody stops a job that isn't touched.
    bool trustsLabels = true;
    std::optional<std::filesystem::path> testFolder = {};  ///< see `TestRuns`
    bool startsHost = false;  ///< whether the host, with the agents of the user of this process, is started on request
  };

  explicit RequestHandler(Setup setup) : m_setup(std::move(setup)), m_tests(m_setup.host, m_setup.testFolder) {}

  /// The answer: empty for what was done, `error` for what wasn't, or what was asked for.
  plist::Dictionary handle(const plist::Dictionary& dictionary);
  /// Whether the helper was asked to end.
  bool isDone() const { return m_isDone; }

 private:
  using Labels = std::vector<std::string>;

  plist::Dictionary answer(const Request& request);
  Result<void> act(const Request& request);
  Result<void> write(const Request& request);
  Result<void> delete_(const Request& request);
  Result<void> unload(const Request& request);
  Result<void> load(const Request& request);
  plist::Dictionary test(const Request& request);
  plist::Dictionary log(const Request& request);

  void addLabelIn(const std::optional<std::filesystem::path>& file, Labels& labels);
  Labels labelsToUnload(const std::filesystem::path& file, const Request& request);
  Result<void> unloadAll(const std::filesystem::path& file, const Labels& labels);

  Setup m_setup;
  TestRuns m_tests;
  bool m_isDone = false;
};

}  // namespace mirvel
