#pragma once

#include <QDialog>
#include <vector>

#include "core/preferences/PreferencesContext.h"

class QTabWidget;

namespace mirvel::ui {

class PreferenceTabViewController;

/// The window of the preferences, with one tab for each pane. It isn't modal, and is no child of the main window, so
/// that both can be used at the same time; it doesn't keep the program running. The selected pane is remembered.
/// Closing the window ends what is being typed as leaving the control does; Escape gives it up.
class PreferencesWindow final : public QDialog {
 public:
  /// The panes become children, in this order. The context must outlive the window.
  PreferencesWindow(const PreferencesContext& context, const std::vector<PreferenceTabViewController*>& panes);

  /// Shows the window, in front of the others.
  void present();
  QTabWidget& tabs() { return *m_tabs; }

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void addPane(PreferenceTabViewController& pane);
  void restorePane();
  void paneChanged(int index);
  void fit();

  const PreferencesContext m_context;
  std::vector<PreferenceTabViewController*> m_panes;
  QTabWidget* m_tabs;
};

}  // namespace mirvel::ui
