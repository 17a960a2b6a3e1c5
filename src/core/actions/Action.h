#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/files/URL.h"
#include "core/messages/Requests.h"

namespace mirvel::messages {
struct LogLines;
struct TestProgress;
struct TestResult;
}  // namespace mirvel::messages

namespace mirvel {

class HelperConnection;
struct HelperMessage;

/// A request to a helper, and how its outcome is handled. Only the helpers write job files and load jobs. Shared
/// between the sender and `ActionController`, which keeps it until the request has ended. Main thread only.
///
///     const auto action = Action::write(url, text, label);
///     action->ended = [](bool isDone) { ... };
///     actions.send(action);
class Action {
 public:
  using Shared = std::shared_ptr<Action>;
  using Kind = messages::Kind;

  explicit Action(Kind theKind) : kind(theKind) {}
  static Shared unload(std::optional<std::string> label, URL url);
  static Shared load(URL url);
  static Shared delete_(URL url, std::string label);
  /// Writes the file without loading the job, unless `kind` is changed to `WriteAndLoad`.
  static Shared write(URL url, std::string string, std::string label);
  static Shared test(URL testURL, URL testOutputURL, std::string string, std::string label);
  static Shared log(messages::LogQuery query);
  /// Starts, stops or restarts a loaded job.
  static Shared control(URL url, std::string label, messages::Control::Order order);

  Kind kind;
  bool presentError = true;  ///< whether a failure is shown to the user
  bool cleanUp = true;       ///< whether success deselects a deleted job, and starts a scan
  bool privileged = false;   ///< set by `sendPrivileged`
  std::optional<URL> url = {};
  std::optional<URL> deleteURL = {};  ///< of a file to be removed, by `Write` too
  std::optional<URL> testURL = {};
  std::optional<URL> testOutputURL = {};
  std::optional<std::string> label = {};                 ///< not sent if empty
  std::optional<std::string> localAgentUnloadPath = {};  ///< unloaded in the user's session after a deletion by root
  std::string string = {};                               ///< the content of the file
  std::optional<int> mode = {};                          ///< the most permissions that a new file may get
  messages::LogQuery logQuery = {};

  /// The connection over which it was sent; set by `ActionController`.
  std::weak_ptr<const HelperConnection> connection = {};

  /// Called when it is sent, which may be after the user has entered a password; may be empty.
  std::function<void()> sent = {};
  /// Called with a failure in place of the alert, before `ended`, unless the action was cancelled or the user didn't
  /// authorise it; may be empty.
  std::function<void(const HelperMessage& message)> failed = {};
  // Called with the output of a test while it runs, with its result, or with the lines of the log; never after
  // `ActionController::cancel`. May be empty.
  std::function<void(const messages::TestProgress& progress)> testProgressed = {};
  std::function<void(const messages::TestResult& result)> testFinished = {};
  std::function<void(const messages::LogLines& log)> logReplyReceived = {};
  std::function<void(bool isDone)> ended = {};  ///< called once if the request was accepted for sending; may be empty

  /// The message for the helper. Symbolic links in `url` are resolved as far as the path exists, so that a link's
  /// target is written and loaded; those in the other paths aren't, so that a link itself is deleted.
  messages::Request request(const std::optional<std::string>& authData) const;

 private:
  messages::RequestContent content() const;
};

}  // namespace mirvel
