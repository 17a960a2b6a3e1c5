#include "core/app/JobURLOpener.h"

#include <utility>

#include "core/catalogue/Job.h"
#include "core/mainwindow/MainWindowController.h"
#include "core/session/CurrentMode.h"
#include "core/session/Editing.h"
#include "core/session/Fetcher.h"
#include "core/session/Notifications.h"
#include "core/session/Selection.h"
#include "core/session/Shell.h"

namespace mirvel {

JobURLOpener::JobURLOpener(MainQueue& queue, const CurrentMode& currentMode, const Selection& selection,
                           const Shell& shell, const Editing& editing, const Fetcher& fetcher,
                           MainWindowController& mainWindow, Notifications& notifications)
    : m_currentMode(currentMode),
      m_selection(selection),
      m_shell(shell),
      m_editing(editing),
      m_fetcher(fetcher),
      m_mainWindow(mainWindow),
      m_notifications(notifications),
      m_delay(queue) {}

void JobURLOpener::applicationOpenURLs(const std::vector<std::string>& urls) {
  const auto address = urls.empty() ? std::nullopt : JobAddress::read(urls.front());
  if (!address) return;
  if (m_editing.hasUnsavedChanges()) return m_mainWindow.unsavedChangesAlert();
  m_delay(0.3, [this, address = *address] {
    m_opened = address;
    selectOpened();
  });
}

void JobURLOpener::selectOpened() {
  if (!m_opened) return;
  if (!m_fetcher.hasScanned()) {  // the URL started the program
    m_scanned = m_notifications.loadingChanged.subscribe([this] { m_delay(0, [this] { selectOpened(); }); });
    return;
  }
  m_scanned = {};
  show(*std::exchange(m_opened, std::nullopt));
}

void JobURLOpener::show(const JobAddress& address) {
  const URL url = URL::file(address.path);
  if (ModeType* mode = m_currentMode.view()) mode->select(url);
  if (address.part != JobAddress::Part::Log) return;
  const auto job = m_selection.job();
  const auto sheet = m_shell.sheets.find(Sheet::Log);
  const bool canBeShown = job && job->url.equalTo(url) && !(m_shell.mainWindow && m_shell.mainWindow->hasSheet());
  if (canBeShown && sheet != m_shell.sheets.end()) sheet->second();
}

}  // namespace mirvel
