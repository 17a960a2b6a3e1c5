#include "core/app/SettingEffects.h"

#include <utility>

#include "core/mainwindow/MainWindowController.h"
#include "core/session/CurrentMode.h"
#include "core/session/Editing.h"
#include "core/session/ExtraFolders.h"
#include "core/session/Fetcher.h"
#include "core/session/Foundation.h"
#include "core/session/Notifications.h"
#include "core/session/Platform.h"
#include "core/session/Shell.h"

namespace mirvel {

SettingEffects::SettingEffects(const SessionContext& session, MainWindowController& mainWindow)
    : m_session(session),
      m_mainWindow(mainWindow),
      m_delay(session.platform.mainQueue),
      m_changed(session.foundation.defaults.changed().subscribe([this](const std::string& key) { changed(key); })) {}

void SettingEffects::changed(const std::string& key) {
  if (key == Defaults::Key::currentTheme) return m_session.notifications.themeChanged.post();
  if (key == Defaults::Key::showTitleBar) return m_mainWindow.updateTitle();
  if (key == Defaults::Key::editSystemJobs) return systemJobsChanged();
  const bool concernsScan = key == Defaults::Key::showSystemJobs || key == Defaults::Key::showInternalHelpers ||
                            key == Defaults::Key::folders;
  if (!concernsScan || std::exchange(m_willScan, true)) return;
  m_delay(0, [this] {  // several settings can change at once
    m_willScan = false;
    m_session.fetcher.refresh();
  });
}

/// What is shown as locked, and what is offered for the selected job. An edit that has begun stays.
void SettingEffects::systemJobsChanged() {
  const Shell& shell = m_session.shell;
  if (ModeType* const mode = m_session.currentMode.view()) mode->redraw();
  if (shell.detail && !m_session.editing.hasUnsavedChanges()) shell.detail->updateDetail();
  if (shell.edit) shell.edit->updateButtons();
  if (shell.mainWindow) shell.mainWindow->validateVisibleItems();
}

ExtraFolderMonitors::ExtraFolderMonitors(FolderMonitors& monitors, ExtraFolders& folders,
                                         std::function<void()> folderDidChange)
    : m_folderMonitors(monitors),
      m_folders(folders),
      m_folderDidChange(std::move(folderDidChange)),
      m_changed(folders.changed().subscribe([this] { update(); })) {
  update();
}

/// Beginning to watch a folder that doesn't answer would block.
void ExtraFolderMonitors::update() {
  auto before = std::exchange(m_monitors, {});
  for (const std::string& path : m_folders.paths()) {
    auto kept = before.extract(path);
    if (!kept.empty()) {
      m_monitors.insert(std::move(kept));
    } else if (m_folders.state(path) == ExtraFolders::State::Answered) {
      m_monitors.emplace(path, m_folderMonitors.watch(path, m_folderDidChange));
    }
  }
}

}  // namespace mirvel
