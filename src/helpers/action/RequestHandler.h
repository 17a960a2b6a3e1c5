#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <optional>

#include "core/messages/Replies.h"
#include "helpers/action/TestRuns.h"
#include "helpers/jobfiles/JobFiles.h"

namespace mirvel {

/// Carries out the requests to a helper.
///
/// Test runs and log queries may be answered on any number of threads, concurrently with each other and with one other
/// request. Only one of all other requests may be answered at a time: this keeps the changes of a job in order, and
/// ensures that only one thread acts with the rights of the user.
class RequestHandler {
 public:
  using EventReceiver = std::function<void(const propertylist::Dictionary& event)>;
  /// Sends an event of a request. Returns false if it can't be sent now; the request goes on without it.
  using EventSender = std::function<bool(const propertylist::Dictionary& event)>;

  /// Everything that a reference or function refers to must outlive the handler.
  struct Setup {
    JobFiles& files;
    JobHost& host;
    /// Removes what was installed outside of the package.
    std::function<Result<void>()> uninstall;
    /// Whether the label in a request, or in new content, may select the job to be stopped. Otherwise, only the labels
    /// in the files that are replaced or removed do, so that a request can't stop a job of which it changes no file.
    bool trustsLabels = true;
    std::optional<std::filesystem::path> testFolder = {};  ///< of the tests; without it they are refused
    /// Whether `StartHost` starts the host, which loads the agents of this process's user; otherwise it is refused.
    bool startsHost = false;
    /// Starts a subscription, which lasts until the returned object is released. Returns null for an unknown topic.
    /// The receiver may be called on any thread, but not after the release; therefore the release may wait for a call
    /// in progress, and never happens within one. Without this function there are no topics.
    std::function<std::shared_ptr<void>(const std::string& topic, EventReceiver receiver)> publisher = {};
  };

  explicit RequestHandler(Setup setup) : m_setup(std::move(setup)), m_tests(m_setup.host, m_setup.testFolder) {}

  /// Decodes a request, carries it out, and encodes the reply. A request that can't be decoded has an error as reply.
  propertylist::Dictionary handle(const propertylist::Dictionary& dictionary);
  /// Blocks until the request has been carried out or has failed. Only tests and queries of the log can be cancelled;
  /// only tests have events, on the thread of the call. A subscription is refused here; see `subscribe`.
  messages::Reply answer(const messages::Request& request, Cancellation& cancellation, const EventSender& events = {});
  /// See `Setup::publisher`.
  std::shared_ptr<void> subscribe(const messages::Subscribe& request, EventReceiver receiver) const;
  /// Whether there has been a request to quit. Thread-safe.
  bool isDone() const { return m_isDone; }

 private:
  /// The failure; nullopt for success.
  using Outcome = std::optional<HelperFailure>;
  struct LabelledJob {
    std::string label;
    std::filesystem::path file;  ///< from which it may have been loaded
  };
  /// The jobs that a request stops.
  struct Stopped {
    std::vector<LabelledJob> labelled;
    std::vector<std::filesystem::path> files;  ///< files without a readable label: any job loaded from them
    std::optional<std::string> label;          ///< the label that a job of `files` may have
  };

  messages::Reply reply(const messages::Test& request, Cancellation& cancellation, const EventSender& events);
  messages::Reply reply(const messages::Log& request, Cancellation& cancellation, const EventSender&);
  template <typename Request>
  messages::Reply reply(const Request& request, Cancellation&, const EventSender&);
  Outcome act(const messages::Write& request);
  Outcome act(const messages::Delete& request);
  Outcome act(const messages::Unload& request);
  Outcome act(const messages::Load& request);
  Outcome act(const messages::Control& request);
  Outcome act(const messages::StartHost&);
  Outcome act(const messages::Uninstall&);
  Outcome act(const messages::Quit&);
  static Outcome act(const messages::Subscribe&);

  Stopped jobsToUnload(const std::filesystem::path& file, const std::optional<std::string>& label,
                       const std::optional<std::string>& newLabel = {});
  static void add(LabelledJob job, Stopped& jobs);
  void addJobIn(const std::filesystem::path& file, Stopped& jobs);
  Outcome unloadAll(const Stopped& jobs);

  Setup m_setup;
  TestRuns m_tests;
  std::atomic<bool> m_isDone = false;
};

}  // namespace mirvel
