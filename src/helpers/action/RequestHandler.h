#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <optional>

#include "core/messages/Replies.h"
#include "helpers/action/Cancellation.h"
#include "helpers/action/TestRuns.h"
#include "helpers/jobfiles/JobFiles.h"

namespace mirvel {

/// Carries out what a helper is asked for.
///
/// Test runs and queries of the log may be answered on any number of threads, beside each other and beside one other
/// request; of all the others only one at a time, which is what keeps the order of a job's changes, and lets the rights
/// of only one user be taken at once.
class RequestHandler {
 public:
  using EventReceiver = std::function<void(const propertylist::Dictionary& event)>;

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
    /// Begins a subscription, which ends when the result is released; from then on the receiver isn't called any more.
    /// The receiver may be called on any thread. Null for an unknown topic; without this function there are no topics.
    std::function<std::shared_ptr<void>(const std::string& topic, EventReceiver receiver)> publisher = {};
  };

  explicit RequestHandler(Setup setup) : m_setup(std::move(setup)), m_tests(m_setup.host, m_setup.testFolder) {}

  /// Reads a request and writes the reply.
  propertylist::Dictionary handle(const propertylist::Dictionary& dictionary);
  /// A test ends early when it is cancelled. Not for subscriptions.
  messages::Reply answer(const messages::Request& request, Cancellation& cancellation);
  /// Null for an unknown topic.
  std::shared_ptr<void> subscribe(const messages::Subscribe& request, EventReceiver receiver) const;
  /// Whether the helper was asked to end.
  bool isDone() const { return m_isDone; }

 private:
  /// None: it has been done.
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

  messages::Reply reply(const messages::Test& request, Cancellation& cancellation);
  messages::Reply reply(const messages::Log& request, Cancellation&);
  template <typename Request>
  messages::Reply reply(const Request& request, Cancellation&);
  Outcome act(const messages::Write& request);
  Outcome act(const messages::Delete& request);
  Outcome act(const messages::Unload& request);
  Outcome act(const messages::Load& request);
  Outcome act(const messages::StartHost&);
  Outcome act(const messages::Uninstall&);
  Outcome act(const messages::Quit&);
  static Outcome act(const messages::Subscribe&);

  Jobs jobsToUnload(const std::filesystem::path& file, const std::optional<std::string>& label,
                    const std::optional<std::string>& newLabel = {});
  static void add(Job job, Jobs& jobs);
  void addJobIn(const std::filesystem::path& file, Jobs& jobs);
  Outcome unloadAll(const Jobs& jobs);

  Setup m_setup;
  TestRuns m_tests;
  std::atomic<bool> m_isDone = false;
};

}  // namespace mirvel
