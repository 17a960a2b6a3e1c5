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
#include "core/actions/MoveJournal.h"
#include "core/actions/MoveTarget.h"
#include "core/base/Claims.h"
#include "core/base/Signal.h"
#include "core/catalogue/Job.h"
#include "core/ports/HelperConnection.h"
#include "core/ports/MainQueue.h"

namespace mirvel {

class Launchd;
class LoginItem;
struct HelperError;

/// Sends requests to the two helpers, and answers everyone who waits for one. For the main thread.
///
/// A result of true only says that the request went out, or will once the user has authorised it; what the helper did
/// is known from its reply, later.
class ActionController {
 public:
  using Ended = std::function<void(bool isWritten)>;

  explicit ActionController(const ActionContext& context);

  /// To the helper that acts as the user.
  bool send(const Action::Shared& action);
  /// To the helper that acts as root; the first time the user authorises it.
  bool sendPrivileged(const Action::Shared& action);
  /// Ends the wait for an action, as a failure of which the user isn't told; the helper stops what can be stopped
  /// without leaving anything half done. The connection and all other actions go on. Without effect on one that has
  /// ended.
  void cancel(const Action::Shared& action);
  /// Connects to the helper that acts as root, which may ask for a password. Those who ask while the user is being
  /// asked get the same answer. Whoever gets false needn't tell the user.
  void authorise(std::function<void(bool isGranted)> answer);
  bool isAuthorised() const { return m_privileged.isOpen(); }
  /// Whether the user is being asked for a password.
  bool isAuthorising() const { return !m_awaitingAuthorisation.empty(); }

  /// Brings the live record of the job to its file, and has the job loaded unless it is disabled. The user is asked
  /// first if another job's label stands against that. The job's URL changes when it has moved to another kind. `ended`
  /// hears, now or later, whether the file was written; see `SaveRun` for what else depends on that.
  void save(const std::shared_ptr<Launchd>& job, const Ended& ended = {});
  /// Deletes the job if the answer is the default button's. `ended` hears whether that was done, if it was asked for.
  void deleteConfirmed(int response, const Job& job, const std::function<void(bool isDeleted)>& ended = {});
  /// Has the helpers removed that were installed outside of the package.
  void uninstallInternalHelpers();

  /// Ends the moves that the end of an earlier run interrupted; the user's own helper can do that.
  void finishMoves();
  MoveJournal& moves() { return m_moves; }

  /// Held by whoever is going to write a job file, so that nobody else takes its place before it is there.
  Claims::Claim claim(const URL& file) { return m_written.claim(file.text()); }
  /// Tells of the files that have been claimed.
  IsTaken isTaken() const {
    return [this](const std::filesystem::path& file) { return m_written.isClaimed(URL::file(file).text()); };
  }

  /// Whether there is a connection to the helper that acts as the user.
  bool isConnected() const { return m_user.isOpen(); }

 private:
  /// Where a request is in flight. No link: the user is being asked for a password.
  struct Flight {
    HelperLink* link = nullptr;
    HelperLink::Id id = 0;
  };

  bool canBeNamed(const URL& url);
  void run(HelperLink& link, const Action::Shared& action);
  void connected(HelperConnections::Privileged answer);
  void answerAuthorisation(bool isGranted);
  void endPrivilegedConnection();
  void replied(const propertylist::Dictionary& body, const Action& action);
  void refused(const HelperError& error, const Action& action);
  void failed(const Action& action);
  bool requestFailed(const Error& error, bool isTold, const Action& action);
  void end(const Action& action, bool isDone);
  void endedWell(const Action& action);
  void wasDeleted(const URL& url);
  void clearLog();

  void askAboutLabel(const std::shared_ptr<Launchd>& job, const Job& other, const std::string& label,
                     const Ended& ended);
  void disable(const std::shared_ptr<Launchd>& job);
  void deselect(const std::shared_ptr<Launchd>& job);
  void startSave(const std::shared_ptr<Launchd>& job, const Ended& ended);
  void finishMove(const MoveJournal::Move& move);
  void endMove(const URL& users);
  void loadQuietly(const URL& url);
  void deleteLoginItem(const LoginItem& item);

  void tellOfNoCommunication();

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
