#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "core/ports/LoginItems.h"
#include "core/process/ProcessRunner.h"

namespace mirvel {

/// The login items of macOS: the user's list as the System Events application tells it, and what application bundles
/// bring along.
class SystemEventsItems final : public LoginItems {
 public:
  /// `osascript` is the path of the tool, `applications` the folder of the bundles. The runner outlives this.
  SystemEventsItems(ProcessRunner& runner, std::string osascript, std::filesystem::path applications);

  /// Runs the tool once. The first time, the system asks the user whether it may, and the answer is waited for.
  std::vector<Listed> listed() override;
  std::vector<Bundled> bundled() override;
  Result<void> remove(const LoginItem& item) override;

 private:
  ProcessRunner& m_runner;
  std::string m_osascript;
  std::filesystem::path m_applications;
};

}  // namespace mirvel
