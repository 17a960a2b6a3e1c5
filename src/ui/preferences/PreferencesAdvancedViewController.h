#pragma once

#include "core/base/Signal.h"
#include "core/preferences/FolderList.h"
#include "core/preferences/PreferencesContext.h"
#include "ui/support/PreferenceTabViewController.h"

class QLabel;
class QPushButton;

namespace mirvel::ui {

class IconLoader;

/// The Advanced pane.
class PreferencesAdvancedViewController final : public PreferenceTabViewController {
 public:
  /// Both must outlive it.
  PreferencesAdvancedViewController(const PreferencesContext& context, IconLoader& icons);

 private:
  QWidget* makeHelpers();
  QWidget* makeFolders();
  void uninstallInternalHelpers();
  void showUninstaller();
  void showFolders();
  void editFolders();

  const PreferencesContext& m_context;
  IconLoader& m_icons;
  FolderList m_folders;
  QPushButton* m_uninstallButton;
  QLabel* m_uninstallStatus;
  QLabel* m_foldersTextField;
  Subscription m_uninstallerChanged, m_foldersChanged;
};

}  // namespace mirvel::ui
