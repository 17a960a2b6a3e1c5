#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "core/ports/LoginItems.h"
#include "core/process/ProcessRunner.h"

namespace mirvel {

/// The login items of macOS: the user's list as reported by the System Events application, and the items in application
/// bundles.
class SystemEventsItems final : public LoginItems {
 public:
  /// `osascript` is the path of the tool, `applications` the folder with the bundles. The runner must outlive this.
  SystemEventsItems(ProcessRunner& runner, std::string osascript, std::filesystem::path applications);

  /// Runs the tool once and waits for it. On first use, macOS asks the user for permission and the call blocks until
  /// the answer. Empty on errors.
  std::vector<Listed> listed() override;
  /// See `bundledItems`.
  std::vector<Bundled> bundled() override;
  /// Removes the first item with the name and the path. `Io` with the tool's message if it fails.
  Result<void> remove(const LoginItem& item) override;

 private:
  ProcessRunner& m_runner;
  std::string m_osascript;
  std::filesystem::path m_applications;
};

}  // namespace mirvel
