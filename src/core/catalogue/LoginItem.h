#pragma once

#include <string>
#include <variant>

#include "core/catalogue/Job.h"
#include "core/files/Roots.h"
#include "core/ports/LoginItems.h"
#include "core/ports/Workspace.h"

namespace mirvel {

/// Something that starts when the user logs in and is no job file of launchd.
class LoginItem final : public Job {
 public:
  /// Of the user's own list, with what the platform calls the item.
  struct SystemPreferences {
    std::string kind;
  };
  /// Of an application.
  struct Application {};
  using Subtype = std::variant<SystemPreferences, Application>;

  /// Both may wait for the platform: for the fetch queue.
  static Jobs systemPreferencesItems(LoginItems& items, bool showInternalHelpers);
  static Jobs applicationItems(LoginItems& items, bool showInternalHelpers);

  /// Opens the settings where the user's own list stands; where the platform has none, its folder.
  static void openAccountsPreferences(Workspace& workspace, const Roots& roots);

  std::string run() const override { return path; }

  std::string path;
  Subtype subtype = Application{};

 private:
  using Job::Job;

  static std::shared_ptr<LoginItem> make(const LoginItems::Listed& item);
  static std::shared_ptr<LoginItem> make(const LoginItems::Bundled& item);
};

}  // namespace mirvel
