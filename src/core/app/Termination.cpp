#include "core/app/Termination.h"

#include <utility>

#include "core/actions/ActionController.h"
#include "core/documents/ScriptDocuments.h"
#include "core/editor/Drafts.h"
#include "core/mainwindow/MainWindowController.h"
#include "core/session/Busy.h"
#include "core/session/Editing.h"
#include "core/session/Shell.h"

namespace mirvel {

Termination::Termination(MainQueue& queue, const Shell& shell, const Editing& editing, Drafts& drafts,
                         ScriptDocuments& documents, const ActionController& actions, MainWindowController& mainWindow,
                         Busy& saving, Busy& deleting)
    : m_shell(shell),
      m_editing(editing),
      m_drafts(drafts),
      m_documents(documents),
      m_actions(actions),
      m_mainWindow(mainWindow),
      m_saving(saving),
      m_deleting(deleting),
      m_delay(queue) {}

bool Termination::applicationShouldTerminate() {
  // While a request is in progress, root's helper is still needed.
  const bool isIdle = !m_saving.isBusy() && !m_deleting.isBusy();
  if (m_shell.endPrivilegedConnection && isIdle) m_shell.endPrivilegedConnection();
  if ((isHelperAtWork() || !m_editing.hasUnsavedChanges()) && waitsForHelper()) return false;
  const bool isSecondSignal = m_mainWindow.isTerminating() && m_endsUnasked;  // ends it even if nobody answers
  if (m_endsUnasked && (keepsEverything() || isSecondSignal)) {
    m_documents.closeAll(true);
    return true;
  }
  m_endsUnasked = false;
  if (waitsForScripts()) return false;
  if (!m_editing.hasUnsavedChanges() && m_drafts.settle()) {
    m_documents.closeAll(false);
    return true;
  }
  m_mainWindow.askBeforeQuitting();
  return false;
}

bool Termination::keepsEverything() {
  const bool isDraftKept = m_drafts.settle();
  return m_documents.keepCopies() && isDraftKept;
}

/// A new attempt to quit asks about all scripts again; one that goes on after the questions doesn't.
bool Termination::waitsForScripts() {
  const bool goesOn = std::exchange(m_hasReviewed, false) || m_mainWindow.isTerminating();
  if (!goesOn) m_documents.forgetDecisions();
  if (m_documents.maySettle()) return false;
  m_documents.review(m_delay.whileOwned([this](bool mayQuit) {
    m_hasReviewed = mayQuit;
    if (mayQuit && m_shell.terminate) m_shell.terminate();
  }));
  return true;
}

bool Termination::sessionMayEnd() {
  constexpr double soon = 60;  // another program may still cancel the end of the session
  m_hasReviewed = m_documents.reviewNow() && m_mainWindow.sessionMayEnd();
  m_delay(soon, [this] { m_hasReviewed = false; });
  return m_hasReviewed;
}

void Termination::endUnasked() {
  keepEdit();
  m_endsUnasked = true;
  if (m_shell.terminate) m_shell.terminate();
}

void Termination::keepEdit() {
  if (m_shell.edit) m_shell.edit->endEditing();
  (void)keepsEverything();  // the store reports failures; those of copies are found when the application quits
}

/// Whether a save or deletion is in progress, which needs its helper or an answer to a question of its own. While the
/// user is asked for a password, nothing has begun yet.
bool Termination::isHelperAtWork() const {
  return (m_saving.isBusy() || m_deleting.isBusy()) && !m_actions.isAuthorising();
}

bool Termination::waitsForHelper() {
  const bool isSecondCall = m_isWaiting;
  m_isWaiting = isHelperAtWork();
  if (!m_isWaiting || isSecondCall) return false;
  m_saved = m_saving.changed().subscribe([this] { quitAfterHelper(); });
  m_deleted = m_deleting.changed().subscribe([this] { quitAfterHelper(); });
  m_delay(1, [this] { tellWhatQuittingWaitsFor(); });
  return true;
}

void Termination::tellWhatQuittingWaitsFor() {
  if (!m_isWaiting) return;
  m_mainWindow.askWhileQuittingWaits(m_delay.whileOwned([this](bool quitsNow) {
    if (!quitsNow) {
      m_isWaiting = m_endsUnasked = false;
    } else if (m_shell.terminate) {
      m_shell.terminate();
    }
  }));
}

void Termination::quitAfterHelper() {
  if (!std::exchange(m_isWaiting, false)) return;
  m_delay(0, [this] {
    m_saved = {};
    m_deleted = {};
    if (m_shell.terminate) m_shell.terminate();
  });
}

}  // namespace mirvel
