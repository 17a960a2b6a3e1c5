#include "ui/app/MakePreferences.h"

#include "core/app/Program.h"
#include "ui/notifications/PreferencesNotificationsViewController.h"
#include "ui/preferences/PreferencesAdvancedViewController.h"
#include "ui/preferences/PreferencesGeneralViewController.h"
#include "ui/preferences/PreferencesThemesViewController.h"
#include "ui/preferences/PreferencesWindow.h"

namespace mirvel::ui {

std::unique_ptr<PreferencesWindow> makePreferencesWindow(Program& program, IconLoader& icons) {
  const PreferencesContext& context = program.preferencesContext;
  const std::vector<PreferenceTabViewController*> panes{
      new PreferencesGeneralViewController(context), new PreferencesAdvancedViewController(context, icons),
      new PreferencesNotificationsViewController(context), new PreferencesThemesViewController(context)};
  return std::make_unique<PreferencesWindow>(context, panes);
}

}  // namespace mirvel::ui
