#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "core/actions/Action.h"
#include "core/actions/HelperConnection.h"
#include "core/catalogue/Job.h"
#include "core/support/Delay.h"

namespace mirvel {

class Launchd;
class LoginItem;
class Program;

/// Sends requests to the two helpers, and knows which of them are sent in which order to save and to delete a job. For
/// the main thread.
///
/// A result of true only says that the request went out; what the helper did is known from its reply, later.
class ActionController {
 public:
  explicit ActionController(Program& program);

  /// To the helper that acts as the user.
  bool send(const Action::Shared& action);
  /// To the helper that acts as root; the first time the user authorises it.
  bool sendPrivileged(const Action::Shared& action);

  /// Brings the live record of the job to its file, and has the job loaded unless it is disabled. The job's URL changes
  /// if it is new or moves to another kind. Keeps a revision if the request went out. `ended` hears, now or later,
  /// whether the file was written.
  void save(Launchd& job, const std::function<void(bool isWritten)>& ended = {});
  /// Deletes the job if the answer is the default button's.
  void deleteConfirmed(int response, const Job& job);
  /// Has the helpers removed that were installed outside of the package.
  void uninstallInternalHelpers();

  /// For whoever wants to end a request. Null while there is no connection.
  HelperConnection* connection() const { return m_connection.get(); }
  HelperConnection* privilegedConnection() const { return m_privilegedConnection.get(); }

 private:
  /// Where a save has the file written, and whether the request went out.
  struct Written {
    URL url;
    bool isSent = false;
  };

  bool canBeNamed(const URL& url);
  void run(HelperConnection& connection, const Action::Shared& action);
  void connected(HelperConnections::Privileged answer, const Action::Shared& action);
  void authorisationFailed(bool isCancelled, const Action& action);
  void connectionFailed(const Action& action, const Error& error, bool privileged);
  void drop(std::unique_ptr<HelperConnection>& connection);
  void finishAction(const Action& action);
  void replied(const plist::Dictionary& reply, const Action::Shared& action);
  void followUpPrivileged(const Action::Shared& action);
  static void end(const Action& action, bool isDone);
  void endedWell(const Action& action);
  void presentHelperError(const plist::Dictionary& error);
  void clearLog();

  using Ended = std::function<void(bool isWritten)>;
  std::optional<Written> saveAsUser(const Launchd& job, const std::optional<std::string>& text, const Ended& ended);
  std::optional<Written> saveAsRoot(const Launchd& job, const std::optional<std::string>& text, const Ended& ended);
  void leaveKind(const Launchd& job);
  void deleteLoginItem(const LoginItem& item);

  void setBusy(bool isBusy);
  void dropNewFile();
  void putBack(const Action& action);
  void fetchUnlessEdited();
  void tellOfNoCommunication();

  Program& m_program;
  Delay m_delay;
  std::optional<std::string> m_authData;
  std::unique_ptr<HelperConnection> m_connection;
  std::unique_ptr<HelperConnection> m_privilegedConnection;
};

}  // namespace mirvel
