#pragma once

#include <string>
#include <variant>

#include "core/catalogue/Job.h"
#include "core/files/Roots.h"
#include "core/ports/LoginItems.h"
#include "core/ports/Workspace.h"

namespace mirvel {

/// An item that starts at login and isn't a launchd job.
class LoginItem final : public Job {
 public:
  /// In the user's own list.
  struct SystemPreferences {
    std::string kind;
  };
  /// Installed by an application.
  struct Application {};
  using Subtype = std::variant<SystemPreferences, Application>;

  /// Read the items from the platform. Items without name or path are skipped, and Mirvel's own unless
  /// `showInternalHelpers` is set. May block; used on the fetch queue.
  static Jobs systemPreferencesItems(LoginItems& items, bool showInternalHelpers);
  static Jobs applicationItems(LoginItems& items, bool showInternalHelpers);

  /// Opens the system settings for the user's own list, or its folder if the platform has none.
  static void openAccountsPreferences(Workspace& workspace, const Roots& roots);

  /// The path is all that is known of the command.
  std::string run() const override { return path; }

  /// The program for items of the user's list, the item itself for those of applications.
  std::string path;
  Subtype subtype = Application{};

 private:
  using Job::Job;

  static std::shared_ptr<LoginItem> make(const LoginItems::Listed& item);
  static std::shared_ptr<LoginItem> make(const LoginItems::Bundled& item);
};

}  // namespace mirvel
