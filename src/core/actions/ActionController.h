#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/actions/Action.h"
#include "core/actions/ActionContext.h"
#include "core/actions/HelperLink.h"
#include "core/actions/JobOnDisk.h"
#include "core/actions/MoveJournal.h"
#include "core/base/Claims.h"
#include "core/base/Signal.h"
#include "core/catalogue/Job.h"
#include "core/ports/HelperConnection.h"
#include "core/ports/MainQueue.h"

namespace mirvel {

class Launchd;
class LoginItem;
struct HelperError;

/// Sends requests to the two helpers, and handles their replies. Main thread only.
///
/// Where a function returns true, the request has been sent, or will be once the user has authorised it. Its outcome is
/// known only when `Action::ended` is called. An action that `send` refuses never ends.
class ActionController {
 public:
  using Ended = std::function<void(bool isWritten)>;

  explicit ActionController(const ActionContext& context);

  /// Sends a request to the helper that acts as the user, connecting to it first if necessary. Returns false if
  /// that is impossible, after an error has been shown unless the action doesn't present any.
  bool send(const Action::Shared& action);
  /// Sends a request to the helper that acts as root. The user must authorise the first one; if this is refused, the
  /// action ends as failed.
  bool sendPrivileged(const Action::Shared& action);
  /// Sends a request over the connection of an earlier one, to the helper that has served it. Does nothing and returns
  /// false if that connection has been closed: this function never connects, and so never asks for a password.
  bool sendAfter(const Action& earlier, const Action::Shared& action);
  /// Ends an action as failed, without showing an error. The helper stops the work if it can do so without leaving
  /// anything half done. The connection and other actions are unaffected. Does nothing if the action has ended.
  void cancel(const Action::Shared& action);

  /// Connects to the helper that acts as root, which may ask the user for a password. Calls made while the user is
  /// being asked get the same answer. If it is false, an alert has said why.
  void authorise(std::function<void(bool isGranted)> answer);
  bool isAuthorised() const { return m_privileged.isOpen(); }
  /// Whether the user is being asked for a password.
  bool isAuthorising() const { return !m_awaitingAuthorisation.empty(); }
  /// Whether there is a connection to the helper that acts as the user.
  bool isConnected() const { return m_user.isOpen(); }

  /// Saves the record of a job to its file, and loads the job unless it is disabled. Asks the user first if the label
  /// is in use (`conflictingJob`). The job's URL changes if it has moved to another kind. `ended` is called once,
  /// possibly before this function returns, with whether the file was written; see `SaveRun` for the state after a
  /// failure.
  void save(const std::shared_ptr<Launchd>& job, const Ended& ended = {});
  /// Deletes a job. Returns whether a request was sent; its outcome is passed to `ended`. Otherwise an error has been
  /// shown, or the job is a login item, which is removed immediately.
  bool deleteConfirmed(const Job& job, const std::function<void(bool isDeleted)>& ended = {});

  /// Completes or undoes moves that were interrupted when the program ended (`MoveJournal`). Needs no password.
  void finishMoves();
  MoveJournal& moves() { return m_moves; }
  /// If a helper was killed during a test, starts the helper that acts as the user, which removes what is left of it.
  void removeLeftTests();

  /// Reserves the path of a job file that is about to be written, so that no other save chooses it. Hold the claim
  /// until the file has been written.
  Claims::Claim claim(const URL& file) { return m_written.claim(file.text()); }
  /// Whether a path has been claimed. The result must not outlive the controller.
  IsTaken isTaken() const {
    return [this](const std::filesystem::path& file) { return m_written.isClaimed(URL::file(file).text()); };
  }

 private:
  /// An action that hasn't ended. The link is null while the user is being asked for a password.
  struct Flight {
    HelperLink* link = nullptr;
    HelperLink::Id id = 0;
  };

  bool connect();
  bool canBeNamed(const URL& url);
  void run(HelperLink& link, const Action::Shared& action);
  void connected(HelperConnections::Privileged answer);
  void answerAuthorisation(bool isGranted);
  void endPrivilegedConnection();
  void replied(const propertylist::Dictionary& body, const Action& action);
  void refused(const HelperError& error, const Action& action);
  bool requestFailed(const Error& error, bool isKnown, const Action& action);
  void end(const Action& action, bool isDone);
  void cleanUpAfter(const Action& action);
  void wasDeleted(const URL& url);

  void askAboutLabel(const std::shared_ptr<Launchd>& job, const Job& other, const std::string& label,
                     const Ended& ended);
  void disable(const std::shared_ptr<Launchd>& job);
  void deselect(const std::shared_ptr<Launchd>& job);
  void startSave(const std::shared_ptr<Launchd>& job, const Ended& ended);
  void finishMove(const MoveJournal::Move& move);
  void endMove(const URL& users);
  void loadQuietly(const URL& url);
  void deleteLoginItem(const LoginItem& item);

  void showNoCommunication();

  const ActionContext m_context;
  Delay m_delay;
  Subscription m_savingChanged;
  MoveJournal m_moves;
  std::optional<std::string> m_authData;
  std::vector<std::function<void(bool)>> m_awaitingAuthorisation;
  Claims m_written;
  std::map<const Action*, Flight> m_inFlight;
  HelperLink m_user;
  HelperLink m_privileged;
};

}  // namespace mirvel
