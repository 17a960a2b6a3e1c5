#include "core/actions/ActionController.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "core/actions/ActionTexts.h"
#include "core/actions/HelperErrors.h"
#include "core/actions/LabelConflict.h"
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

namespace {

/// What a test prints while it runs; null for other requests.
HelperLink::Event progressOf(const Action::Shared& action) {
  if (action->kind != Action::Kind::Test) return {};
  return [action](const propertylist::Dictionary& event) {
    const auto progress = messages::FieldReader::read<messages::TestProgress>(event);
    if (progress && action->testProgressed) action->testProgressed(*progress);  // the reply has all of the output
  };
}

/// Searching a long log takes its time, and the user can cancel it.
std::optional<double> limitOf(Action::Kind kind) {
  return kind == Action::Kind::Log ? std::nullopt : std::optional(HelperLink::secondsToAnswer);
}

}  // namespace

ActionController::ActionController(const ActionContext& context)
    : m_context(context),
      m_delay(context.platform.mainQueue),
      m_savingChanged(context.saving.changed().subscribe([&shell = context.shell] {
        if (shell.edit) shell.edit->updateButtons();
      })),
      m_moves(context.foundation.roots.applicationSupport, context.foundation.storeTroubles),
      m_user(context.platform.mainQueue),
      m_privileged(context.platform.mainQueue) {}

bool ActionController::connect() {
  HelperConnections* const helpers = m_context.platform.helpers;
  if (!m_user.isOpen() && helpers) m_user.open(helpers->connectToAction());
  return m_user.isOpen();
}

void ActionController::removeLeftTests() {
  std::error_code failure;
  const bool isEmpty = std::filesystem::is_empty(m_context.foundation.roots.ownTests(), failure);
  if (!failure && !isEmpty) (void)connect();  // the next test tries again
}

bool ActionController::send(const Action::Shared& action) {
  if (!connect()) {
    if (action->presentError) showNoCommunication();
    return false;
  }
  run(m_user, action);
  return true;
}

bool ActionController::sendPrivileged(const Action::Shared& action) {
  action->privileged = true;
  if (!m_context.platform.helpers) {
    showNoCommunication();
    return false;
  }
  m_inFlight.try_emplace(action.get());  // without a link yet, so that it can be cancelled during the dialog
  authorise([this, action](bool isGranted) {
    if (!m_inFlight.contains(action.get())) return;  // cancelled while the user was asked
    isGranted ? run(m_privileged, action) : end(*action, false);
  });
  return true;
}

bool ActionController::sendAfter(const Action& earlier, const Action::Shared& action) {
  const auto connection = earlier.connection.lock();
  if (!connection) return false;
  for (HelperLink* const link : {&m_user, &m_privileged}) {
    if (link->connection() != connection) continue;
    action->privileged = link == &m_privileged;
    run(*link, action);
    return true;
  }
  return false;
}

void ActionController::cancel(const Action::Shared& action) {
  const auto found = m_inFlight.find(action.get());
  if (found == m_inFlight.end()) return;
  const Flight flight = found->second;
  flight.link ? flight.link->cancel(flight.id) : end(*action, false);
}

void ActionController::run(HelperLink& link, const Action::Shared& action) {
  m_inFlight[action.get()].link = &link;
  action->connection = link.connection();
  const auto id = link.run(
      action->request(m_authData).write(),
      [this, action](const propertylist::Dictionary& reply) { replied(reply, *action); },
      [this, action](const Error& error, bool isKnown) { return requestFailed(error, isKnown, *action); },
      limitOf(action->kind), progressOf(action));
  const auto found = m_inFlight.find(action.get());
  if (found != m_inFlight.end()) found->second.id = id;
  if (action->sent) action->sent();
}

void ActionController::authorise(std::function<void(bool isGranted)> answer) {
  if (m_privileged.isOpen()) return answer(true);
  HelperConnections* const helpers = m_context.platform.helpers;
  if (!helpers) {
    showNoCommunication();
    return answer(false);
  }
  m_awaitingAuthorisation.push_back(std::move(answer));
  if (m_awaitingAuthorisation.size() > 1) return;  // the dialog is open already
  helpers->connectToPrivileged(
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
  // Taken out first, because an answer may ask for another authorisation.
  const auto waiting = std::exchange(m_awaitingAuthorisation, {});
  for (const auto& answer : waiting) answer(isGranted && m_privileged.isOpen());
}

/// The request is sent before the connection is closed; the reply isn't waited for.
void ActionController::endPrivilegedConnection() {
  if (!m_privileged.isOpen()) return;
  Action quit(Action::Kind::Quit);
  quit.privileged = true;
  (void)m_privileged.run(
      quit.request(m_authData).write(), [](const propertylist::Dictionary&) {},
      [](const Error&, bool) { return false; });
  m_privileged.close(Error{.code = Error::Code::Io, .message = "the helper was stopped"});
  m_authData.reset();
  m_context.shell.endPrivilegedConnection = nullptr;
}

bool ActionController::requestFailed(const Error& error, bool isKnown, const Action& action) {
  if (action.privileged && !m_privileged.isOpen()) {  // the secret was that of the lost connection
    m_authData.reset();
    m_context.shell.endPrivilegedConnection = nullptr;
  }
  const bool isCancelled = error.code == Error::Code::Cancelled;
  const bool shows = action.presentError && !isKnown && !action.failed;
  if (shows) m_context.platform.interface.present(error);
  if (action.failed && !isCancelled) {
    action.failed({ActionTexts(m_context.foundation.localize).couldNotEstablishCommunicationWithHelperTool(),
                   m_context.foundation.localize.pleaseTryAgain() + "\n\n" + error.text()});
  }
  end(action, false);
  return shows;
}

void ActionController::replied(const propertylist::Dictionary& body, const Action& action) {
  const auto reply = messages::readReply(action.kind, body);
  if (!reply) return refused({}, action);  // malformed: an unknown error
  if (const auto* const error = std::get_if<HelperError>(&*reply)) return refused(*error, action);
  if (const auto* const result = std::get_if<messages::TestResult>(&*reply)) {
    if (action.testFinished) action.testFinished(*result);
  } else if (const auto* const log = std::get_if<messages::LogLines>(&*reply)) {
    if (action.logReplyReceived) action.logReplyReceived(*log);
  } else if (action.cleanUp) {
    cleanUpAfter(action);
  }
  end(action, true);
}

void ActionController::refused(const HelperError& error, const Action& action) {
  if (action.failed) {
    action.failed(helperMessage(error, m_context.foundation.localize));
  } else if (action.presentError) {
    presentHelperError(error, m_context.foundation.localize, m_context.platform.interface);
  }
  end(action, false);
}

void ActionController::end(const Action& action, bool isDone) {
  m_inFlight.erase(&action);
  if (action.ended) action.ended(isDone);
}

void ActionController::cleanUpAfter(const Action& action) {
  if (action.kind == Action::Kind::Delete && action.deleteURL) wasDeleted(*action.deleteURL);
  if (const auto& path = action.localAgentUnloadPath) {
    auto unload = Action::unload(action.label, URL::file(*path));
    unload->cleanUp = false;  // the scan below serves for both requests
    if (!send(unload)) m_context.platform.console.log("Error unloading job at path: " + *path);
  }
  m_delay(0, [this] { m_context.fetcher.refresh(); });
}

/// By now the user may have selected another job, or be editing this one again; then the selection is kept.
void ActionController::wasDeleted(const URL& url) {
  if (!m_context.selection.job() || m_context.editing.hasUnsavedChanges() ||
      !m_context.selection.job()->url.equalTo(url))
    return;
  m_context.selection.select(nullptr);
  if (m_context.shell.detail) m_context.shell.detail->clearDetail();
}

bool ActionController::deleteConfirmed(const Job& job, const std::function<void(bool isDeleted)>& ended) {
  if (job.kind == Kind::loginItemSystemPreferences) {
    deleteLoginItem(dynamic_cast<const LoginItem&>(job));
    return false;
  }
  if (!canBeNamed(job.url)) return false;
  const auto action = Action::delete_(job.url, job.name);
  action->ended = [ended, deleting = std::make_shared<Busy::Token>(m_context.deleting.begin())](bool isDeleted) {
    deleting->release();
    if (ended) ended(isDeleted);
  };
  // Then the disabled job was never loaded, and unloading by its label would stop the other job.
  const bool isOthersLabel = isOtherLoaded(job, m_context.catalogue.jobs());
  if (isOthersLabel) action->label.reset();
  if (job.kind == Kind::userAgent) return send(action);
  if (job.kind.isAgentOfEveryone() && !isOthersLabel) action->localAgentUnloadPath = job.url.text();
  return sendPrivileged(action);
}

void ActionController::deleteLoginItem(const LoginItem& item) {
  if (const auto removed = m_context.platform.loginItems.remove(item); !removed) {
    m_context.platform.interface.present(removed.error());
  }
  m_context.fetcher.refresh();
}

/// Requests and revisions contain paths as text. Shows an error if the path isn't valid UTF-8.
bool ActionController::canBeNamed(const URL& url) {
  if (propertylist::isUtf8(url.text())) return true;
  m_context.platform.interface.present(Error{.code = Error::Code::BadArgument,
                                             .message = "the file's name isn't valid UTF-8; rename the file first",
                                             .file = url.text()});
  return false;
}

void ActionController::showNoCommunication() {
  const Localize& localize = m_context.foundation.localize;
  m_context.platform.interface.error(ActionTexts(localize).couldNotEstablishCommunicationWithHelperTool(),
                                     localize.pleaseTryAgain());
}

}  // namespace mirvel
