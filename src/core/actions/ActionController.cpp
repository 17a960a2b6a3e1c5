#include "core/actions/ActionController.h"

#include <utility>

#include "core/actions/ActionTexts.h"
#include "core/actions/HelperErrors.h"
#include "core/actions/LabelConflict.h"
#include "core/base/Const.h"
#include "core/catalogue/Job.h"
#include "core/catalogue/LoginItem.h"
#include "core/messages/Replies.h"
#include "core/propertylist/Encoding.h"
#include "core/session/Busy.h"
#include "core/session/Catalogue.h"
#include "core/session/Editing.h"
#include "core/session/Fetcher.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "core/session/Selection.h"
#include "core/session/Shell.h"

namespace mirvel {

ActionController::ActionController(const ActionContext& context)
    : m_context(context),
      m_delay(context.platform.mainQueue),
      m_savingChanged(context.saving.changed().subscribe([&shell = context.shell] {
        if (shell.edit) shell.edit->updateButtons();
      })),
      m_moves(context.foundation.roots.applicationSupport, context.foundation.storeTroubles),
      m_user(context.platform.mainQueue),
      m_privileged(context.platform.mainQueue) {}

bool ActionController::send(const Action::Shared& action) {
  HelperConnections* const helpers = m_context.platform.helpers;
  if (!m_user.isOpen() && helpers) m_user.open(helpers->connectToAction());
  if (!m_user.isOpen()) {
    tellOfNoCommunication();
    return false;
  }
  run(m_user, action);
  return true;
}

bool ActionController::sendPrivileged(const Action::Shared& action) {
  action->privileged = true;
  if (!m_context.platform.helpers) {
    tellOfNoCommunication();
    return false;
  }
  m_inFlight.try_emplace(action.get());
  authorise([this, action](bool isGranted) {
    if (!m_inFlight.contains(action.get())) return;  // it was cancelled meanwhile
    isGranted ? run(m_privileged, action) : failed(*action);
  });
  return true;
}

void ActionController::cancel(const Action::Shared& action) {
  const auto found = m_inFlight.find(action.get());
  if (found == m_inFlight.end()) return;
  const Flight flight = found->second;
  flight.link ? flight.link->cancel(flight.id) : failed(*action);
}

void ActionController::run(HelperLink& link, const Action::Shared& action) {
  m_inFlight[action.get()].link = &link;
  const auto id = link.run(
      action->request(m_authData).write(),
      [this, action](const propertylist::Dictionary& reply) { replied(reply, *action); },
      [this, action](const Error& error, bool isTold) { return requestFailed(error, isTold, *action); });
  const auto found = m_inFlight.find(action.get());
  if (found != m_inFlight.end()) found->second.id = id;
}

void ActionController::authorise(std::function<void(bool isGranted)> answer) {
  if (m_privileged.isOpen()) return answer(true);
  HelperConnections* const helpers = m_context.platform.helpers;
  if (!helpers) {
    tellOfNoCommunication();
    return answer(false);
  }
  m_awaitingAuthorisation.push_back(std::move(answer));
  if (m_awaitingAuthorisation.size() > 1) return;
  helpers->connectToPrivileged(
      std::string(Const::PrivilegedHelper::version),
      m_delay.whileOwned([this](HelperConnections::Privileged privileged) { connected(std::move(privileged)); }),
      m_delay.whileOwned([this](const Error& error) {
        m_context.platform.interface.present(error);
        answerAuthorisation(false);
      }));
}

void ActionController::connected(HelperConnections::Privileged answer) {
  const bool isGranted = answer.connection && !answer.authData.empty();
  if (isGranted) {
    m_authData = std::move(answer.authData);
    m_privileged.open(std::move(answer.connection));
    m_context.shell.endPrivilegedConnection = m_delay.whileOwned([this] { endPrivilegedConnection(); });
  } else if (!answer.isCancelled) {
    presentRefusal(answer.refusal, m_context.foundation.localize, m_context.platform.interface);
  }
  answerAuthorisation(isGranted);
}

void ActionController::answerAuthorisation(bool isGranted) {
  const auto waiting = std::exchange(m_awaitingAuthorisation, {});
  for (const auto& answer : waiting) answer(isGranted && m_privileged.isOpen());
}

/// The request has been sent by the time the connection is closed; its reply doesn't matter.
void ActionController::endPrivilegedConnection() {
  if (!m_privileged.isOpen()) return;
  Action quit(Action::Kind::Quit);
  quit.privileged = true;
  (void)m_privileged.run(
      quit.request(m_authData).write(), [](const propertylist::Dictionary&) {},
      [](const Error&, bool) { return false; });
  m_privileged.close(Error{.code = Error::Code::Io, .message = "the helper was ended"});
  m_authData.reset();
  m_context.shell.endPrivilegedConnection = nullptr;
}

bool ActionController::requestFailed(const Error& error, bool isTold, const Action& action) {
  if (action.privileged && !m_privileged.isOpen()) {
    m_authData.reset();
    m_context.shell.endPrivilegedConnection = nullptr;
  }
  const bool tells = action.presentError && !isTold;
  if (tells) m_context.platform.interface.present(error);
  failed(action);
  return tells;
}

void ActionController::failed(const Action& action) {
  if (action.kind == Action::Kind::Log) clearLog();
  end(action, false);
}

void ActionController::replied(const propertylist::Dictionary& body, const Action& action) {
  const auto reply = messages::readReply(action.kind, body);
  if (!reply) return refused({}, action);
  if (const auto* const error = std::get_if<HelperError>(&*reply)) return refused(*error, action);
  const Shell& shell = m_context.shell;
  if (const auto* const output = std::get_if<messages::TestOutput>(&*reply)) {
    if (shell.test) shell.test->testFinished(output->text);
  } else if (const auto* const log = std::get_if<messages::LogLines>(&*reply)) {
    if (shell.log) shell.log->logReplyReceived(log->lines);
  } else if (action.cleanUp) {
    endedWell(action);
  }
  end(action, true);
}

void ActionController::refused(const HelperError& error, const Action& action) {
  if (action.presentError) presentHelperError(error, m_context.foundation.localize, m_context.platform.interface);
  failed(action);
}

void ActionController::end(const Action& action, bool isDone) {
  m_inFlight.erase(&action);
  if (action.ended) action.ended(isDone);
}

void ActionController::endedWell(const Action& action) {
  if (action.kind == Action::Kind::Delete && action.deleteURL) wasDeleted(*action.deleteURL);
  if (const auto& path = action.localAgentUnloadPath) {
    auto unload = Action::unload(action.label, URL::file(*path));
    unload->cleanUp = false;
    if (!send(unload)) m_context.platform.console.log("Error unloading job at path: " + *path);
  }
  m_delay(0, [this] { m_context.fetcher.refresh(); });
}

/// Whatever is selected by now and isn't that job stays; so does the job itself if it is being edited again.
void ActionController::wasDeleted(const URL& url) {
  if (!m_context.selection.job() || m_context.editing.hasUnsavedChanges() ||
      !m_context.selection.job()->url.equalTo(url))
    return;
  m_context.selection.select(nullptr);
  if (m_context.shell.detail) m_context.shell.detail->clearDetail();
}

void ActionController::deleteConfirmed(int response, const Job& job, const Ended& ended) {
  if (response != Interface::defaultButton) return;
  if (job.kind == Kind::loginItemSystemPreferences) return deleteLoginItem(dynamic_cast<const LoginItem&>(job));
  if (!canBeNamed(job.url)) return;
  const auto action = Action::delete_(job.url, job.name);
  action->ended = [ended, deleting = std::make_shared<Busy::Token>(m_context.deleting.begin())](bool isDeleted) {
    deleting->release();
    if (ended) ended(isDeleted);
  };
  // A copy that never ran: what is loaded under its label is the other job.
  const bool isOthersLabel = isOtherLoaded(job, m_context.catalogue.jobs());
  if (isOthersLabel) action->label.reset();
  if (job.kind == Kind::userAgent) {
    (void)send(action);
    return;
  }
  if (job.kind.isAgentOfEveryone() && !isOthersLabel) action->localAgentUnloadPath = job.url.text();
  (void)sendPrivileged(action);
}

void ActionController::deleteLoginItem(const LoginItem& item) {
  if (const auto removed = m_context.platform.loginItems.remove(item); !removed) {
    m_context.platform.interface.present(removed.error());
  }
  m_context.fetcher.refresh();
}

void ActionController::uninstallInternalHelpers() {
  auto action = std::make_shared<Action>(Action::Kind::Uninstall);
  action->presentError = false;
  action->cleanUp = false;
  (void)sendPrivileged(action);
  m_delay(1.0, [this] { m_context.fetcher.refresh(); });
}

/// Requests and revisions name a file by text. The user is told if it has a name that is none.
bool ActionController::canBeNamed(const URL& url) {
  if (propertylist::isUtf8(url.text())) return true;
  m_context.platform.interface.present(Error{.code = Error::Code::BadArgument,
                                             .message = "the file's name isn't valid UTF-8; rename the file first",
                                             .file = url.text()});
  return false;
}

void ActionController::clearLog() {
  if (m_context.shell.log) m_context.shell.log->clear();
}

void ActionController::tellOfNoCommunication() {
  const Localize& localize = m_context.foundation.localize;
  m_context.platform.interface.error(ActionTexts(localize).couldNotEstablishCommunicationWithHelperTool(),
                                     localize.pleaseTryAgain());
}

}  // namespace mirvel
