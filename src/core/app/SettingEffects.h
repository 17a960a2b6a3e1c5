#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "core/base/Signal.h"
#include "core/ports/FolderMonitor.h"
#include "core/ports/MainQueue.h"
#include "core/session/SessionContext.h"

namespace mirvel {

class ExtraFolders;
class MainWindowController;

/// Puts changed settings into effect where nothing else reads them at that moment: the catalogue, the main window and
/// the colours of scripts. For the main thread.
class SettingEffects {
 public:
  /// Both must outlive this object.
  SettingEffects(const SessionContext& session, MainWindowController& mainWindow);

 private:
  void changed(const std::string& key);
  void systemJobsChanged();

  const SessionContext m_session;
  MainWindowController& m_mainWindow;
  Delay m_delay;
  bool m_willScan = false;
  Subscription m_changed;
};

/// Watches the extra folders of the settings once they have answered, and no others. For the main thread.
class ExtraFolderMonitors {
 public:
  /// `folderDidChange` is called when any of the folders changes. The references must outlive this
  /// object.
  ExtraFolderMonitors(FolderMonitors& monitors, ExtraFolders& folders, std::function<void()> folderDidChange);

 private:
  void update();

  FolderMonitors& m_folderMonitors;
  ExtraFolders& m_folders;
  std::function<void()> m_folderDidChange;
  std::map<std::string, std::unique_ptr<FolderMonitor>> m_monitors;  ///< by path
  Subscription m_changed;
};

}  // namespace mirvel
