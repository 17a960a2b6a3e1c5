#include "core/actions/ActionController.h"

#include <system_error>

#include "core/actions/ActionError.h"
#include "core/app/Program.h"
#include "core/catalogue/LoginItem.h"
#include "core/propertylist/Encoding.h"
#include "core/support/Bidirectional.h"
#include "core/support/Const.h"

namespace mirvel {

ActionController::ActionController(Program& program) : m_program(program), m_delay(program.platform.mainQueue) {}

bool ActionController::send(const Action::Shared& action) {
  HelperConnections* const helpers = m_program.platform.helpers;
  if (!m_connection && helpers) m_connection = helpers->connectToAction();
  if (!m_connection) {
    tellOfNoCommunication();
    return false;
  }
  run(*m_connection, action);
  return true;
}

bool ActionController::sendPrivileged(const Action::Shared& action) {
  action->privileged = true;
  if (m_privilegedConnection) {
    run(*m_privilegedConnection, action);
    return true;
  }
  HelperConnections* const helpers = m_program.platform.helpers;
  if (!helpers) {
    tellOfNoCommunication();
    return false;
  }
  helpers->connectToPrivileged(std::string(Const::PrivilegedHelper::version),
                               m_delay.whileOwned([this, action](HelperConnections::Privileged answer) {
                                 connected(std::move(answer), action);
                               }),
                               m_delay.whileOwned([this, action](const Error& error) {
                                 connectionFailed(*action, error, false);
                                 m_program.platform.interface.present(error);
                               }));
  return true;
}

void ActionController::run(HelperConnection& connection, const Action::Shared& action) {
  const bool privileged = action->privileged;
  connection.run(
      action->dictionary(m_authData), [this, action](const plist::Dictionary& reply) { replied(reply, action); },
      [this, action, privileged](const Error& error) { connectionFailed(*action, error, privileged); });
}

void ActionController::connected(HelperConnections::Privileged answer, const Action::Shared& action) {
  if (!answer.connection || answer.authData.empty()) return authorisationFailed(answer.isCancelled, *action);
  m_authData = std::move(answer.authData);
  m_privilegedConnection = std::move(answer.connection);
  m_program.shell.endPrivilegedConnection = [this] {
    (void)sendPrivileged(std::make_shared<Action>(Action::Kind::quitHelper));
  };
  run(*m_privilegedConnection, action);
}

void ActionController::authorisationFailed(bool isCancelled, const Action& action) {
  end(action, false);
  putBack(action);
  dropNewFile();
  const auto& selected = m_program.state.selectedJob;
  if (!isCancelled) {
    const Localize& localize = m_program.foundation.localize;
    m_program.platform.interface.error(localize.cannotAuthenticate(), localize.pleaseTryAgain());
  } else if (selected) {
    selected->checksum.clear();
    fetchUnlessEdited();
  }
  finishAction(action);
}

void ActionController::connectionFailed(const Action& action, const Error& error, bool privileged) {
  end(action, false);
  setBusy(false);
  putBack(action);
  dropNewFile();
  if (action.presentError) m_program.platform.interface.present(error);
  finishAction(action);
  drop(privileged ? m_privilegedConnection : m_connection);
  if (!privileged) return;
  m_authData.reset();
  m_program.shell.endPrivilegedConnection = nullptr;
}

void ActionController::drop(std::unique_ptr<HelperConnection>& connection) {
  if (!connection) return;
  connection->invalidate();
  // It may be this one that is telling of its end.
  m_program.platform.mainQueue.post([ended = std::shared_ptr<HelperConnection>(std::move(connection))] {});
}

void ActionController::finishAction(const Action& action) {
  EditType* const edit = m_program.shell.edit;
  if (action.cleanUp && edit) {
    const bool hadUnsavedChanges = m_program.state.hasUnsavedChanges;
    edit->saveCompleted();
    m_program.state.hasUnsavedChanges = hadUnsavedChanges;
    edit->refreshEditedState();
  }
  clearLog();
  setBusy(false);
}

void ActionController::replied(const plist::Dictionary& reply, const Action::Shared& action) {
  setBusy(false);
  const plist::Value* const error = reply.find("error");
  const auto* details = error ? error->as<plist::Dictionary>() : nullptr;
  end(*action, !details);
  if (details) {
    if (action->presentError) presentHelperError(*details);
    return;
  }
  if (action->privileged) {
    m_delay(0, [this] { fetchUnlessEdited(); });
    if (action->localAgentLoadPath || action->localAgentUnloadPath) return followUpPrivileged(action);
  }
  const Shell& shell = m_program.shell;
  if (action->kind == Action::Kind::test) {
    const plist::Value* const output = reply.find("test");
    const auto* text = output ? output->as<std::string>() : nullptr;
    if (shell.test && text) shell.test->testFinished(*text);
  } else if (action->kind == Action::Kind::log) {
    const plist::Value* const lines = reply.find("logQuery");
    const auto* array = lines ? lines->as<plist::Array>() : nullptr;
    if (shell.log && array) shell.log->logReplyReceived(*array);
  } else {
    endedWell(*action);
  }
}

void ActionController::end(const Action& action, bool isDone) {
  if (action.ended) action.ended(isDone);
}

void ActionController::followUpPrivileged(const Action::Shared& action) {
  m_delay(0, [this, action] {
    Console& console = m_program.platform.console;
    if (const auto& path = action->localAgentLoadPath) {
      if (!send(Action::load(URL::file(*path)))) console.log("Error loading job at path: " + *path);
    } else if (const auto& gone = action->localAgentUnloadPath) {
      if (!send(Action::unload(action->label, URL::file(*gone)))) {
        console.log("Error unloading job at path: " + *gone);
      }
    }
  });
}

void ActionController::endedWell(const Action& action) {
  const Shell& shell = m_program.shell;
  if (action.cleanUp && shell.edit) {
    shell.edit->saveCompleted();
    if (shell.detail) shell.detail->showDisplay();
    fetchUnlessEdited();
  }
  if (action.kind != Action::Kind::delete_) return;
  m_program.state.selectedJob = nullptr;
  m_program.mainWindow.selectedJobDidChange();
  if (shell.detail) shell.detail->clearDetail();
}

void ActionController::presentHelperError(const plist::Dictionary& error) {
  const Localize& localize = m_program.foundation.localize;
  Interface& interface = m_program.platform.interface;
  const auto string = [&error](std::string_view key) {
    const plist::Value* const value = error.find(key);
    return value ? value->as<std::string>() : nullptr;
  };
  const plist::Value* const codeValue = error.find("code");
  const auto* integer = codeValue ? codeValue->as<plist::Integer>() : nullptr;
  const std::string* const domain = string("domain");
  if (!domain || !integer) return interface.error(localize.anUnknownErrorOccurred(), localize.pleaseTryAgain());

  const std::string text = bidirectionalString({localize.anUnknownErrorOccurred(), '(' + integer->text() + ')'}, " ",
                                               localize.isRightToLeft());
  if (*domain != actionErrorDomain) {
    const std::string* const description = string("description");
    const std::string* const suggestion = string("suggestion");
    if (description && suggestion) return interface.error(*description, *suggestion);
    return interface.error(text, localize.pleaseTryAgain());
  }
  const std::string notChanged = localize.theItemCouldntBeAddedOrRemovedBecauseOfAnUnknownError();
  switch (static_cast<ActionErrorCode>(integer->toInt64().value_or(0))) {
    case ActionErrorCode::NotConnected:
      return tellOfNoCommunication();
    case ActionErrorCode::NotChanged:
      return interface.error(notChanged, localize.pleaseTryAgain());
    case ActionErrorCode::NotChangedTryNewName:
      return interface.error(notChanged, localize.renameTheItemAndTryAgain());
    case ActionErrorCode::NoLog:
      interface.error(localize.anUnknownErrorOccurredWhenFetchingTheLog(), localize.pleaseTryAgain());
      return clearLog();
  }
  interface.error(text, localize.pleaseTryAgain());
}

void ActionController::deleteConfirmed(int response, const Job& job) {
  if (response != Interface::defaultButton) return;
  if (job.kind == Kind::loginItemSystemPreferences) return deleteLoginItem(dynamic_cast<const LoginItem&>(job));
  if (!canBeNamed(job.url)) return;
  const auto action = Action::delete_(job.url, job.name);
  if (job.kind == Kind::userAgent) {
    (void)send(action);
    return;
  }
  if (job.kind == Kind::localAgent) action->localAgentUnloadPath = job.url.text();
  (void)sendPrivileged(action);
}

void ActionController::deleteLoginItem(const LoginItem& item) {
  if (const auto removed = m_program.platform.loginItems.remove(item); !removed) {
    m_program.platform.interface.present(removed.error());
  }
  fetchUnlessEdited();
}

void ActionController::uninstallInternalHelpers() {
  auto action = std::make_shared<Action>(Action::Kind::uninstallHelpers);
  action->presentError = false;
  action->cleanUp = false;
  (void)sendPrivileged(action);
  m_delay(1.0, [this] { fetchUnlessEdited(); });
}

/// Requests and revisions name a file by text. The user is told if it has a name that is none.
bool ActionController::canBeNamed(const URL& url) {
  if (plist::isUtf8(url.text())) return true;
  m_program.platform.interface.present(Error{.code = Error::Code::BadArgument,
                                             .message = "the file's name isn't valid UTF-8; rename the file first",
                                             .file = url.text()});
  return false;
}

void ActionController::clearLog() {
  if (m_program.shell.log) m_program.shell.log->clear();
}

void ActionController::setBusy(bool isBusy) {
  m_program.state.isBusy = isBusy;
  if (m_program.shell.edit) m_program.shell.edit->updateButtons();
}

void ActionController::dropNewFile() {
  if (!m_program.state.selectedJob || !m_program.state.selectedJob->isNewFile) return;
  m_program.state.selectedJob = nullptr;
  m_program.mainWindow.selectedJobDidChange();
}

/// A job that was to be moved, and wasn't, is where it was.
void ActionController::putBack(const Action& action) {
  const auto& selected = m_program.state.selectedJob;
  if (!action.url || !action.deleteURL || !selected || selected->url.text() != action.url->text()) return;
  std::error_code failure;
  if (std::filesystem::exists(action.url->path(), failure)) return;
  selected->url = *action.deleteURL;
}

void ActionController::fetchUnlessEdited() {
  if (!m_program.state.hasUnsavedChanges) m_program.fetcher.fetchJobs();
}

void ActionController::tellOfNoCommunication() {
  const Localize& localize = m_program.foundation.localize;
  m_program.platform.interface.error(localize.couldNotEstablishCommunicationWithHelperTool(),
                                     localize.pleaseTryAgain());
}

}  // namespace mirvel
