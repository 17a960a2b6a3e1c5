#pragma once

#include "core/base/Signal.h"
#include "core/preferences/PreferencesContext.h"
#include "ui/support/PreferenceTabViewController.h"

class QComboBox;

namespace mirvel::ui {

/// The Themes pane: the colours of scripts, with a preview.
class PreferencesThemesViewController final : public PreferenceTabViewController {
 public:
  /// The context must outlive it.
  explicit PreferencesThemesViewController(const PreferencesContext& context);

 private:
  void show();

  const PreferencesContext& m_context;
  QComboBox* m_themesPopUpButton;
  Subscription m_themeChanged;
};

}  // namespace mirvel::ui
