#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/base/ThreadWorkQueue.h"
#include "core/files/Roots.h"
#include "core/ports/HelperConnection.h"
#include "core/ports/MainQueue.h"
#include "core/process/Environment.h"
#include "helpers/privileged/Elevation.h"
#include "helpers/wire/StartHelper.h"

namespace mirvel {

/// The helper programs, and how the application starts them.
struct HelperPrograms {
  wire::HelperProgram action;  ///< acts as the user
  std::string privileged;      ///< path of the program that acts as root
  std::vector<std::string> privilegedArguments = {};
  Elevation elevation = {};

  /// The programs in this folder, for the user of this process. `machine` is the folder of another machine, for tests
  /// and the demo, to which `roots` must belong; no elevation is needed there, nor if this process is root's.
  static HelperPrograms in(const std::filesystem::path& folder, const Roots& roots, const Environment& environment,
                           const std::optional<std::filesystem::path>& machine);
};

/// Connections to the real helpers.
class SystemHelperConnections final : public HelperConnections {
 public:
  /// Everything referred to must outlive the object and its connections.
  struct Setup {
    MainQueue& queue;
    WorkQueue& background;  ///< waits for the user's answer to the password dialog
    HelperPrograms programs;
  };

  explicit SystemHelperConnections(Setup setup) : m_setup(std::move(setup)) {}
  /// Closes the password dialog, if there is one, so that `background` doesn't wait for it. Its reply isn't called.
  ~SystemHelperConnections() override;

  std::unique_ptr<HelperConnection> connectToAction() override;
  void connectToPrivileged(PrivilegedReply reply, HelperConnection::Failure failure) override;

 private:
  void wait(const std::shared_ptr<PrivilegedStart>& start, const PrivilegedReply& reply,
            const HelperConnection::Failure& failure);
  Privileged connected(Elevated elevated) const;

  Setup m_setup;
  std::vector<std::weak_ptr<PrivilegedStart>> m_starts;
  std::shared_ptr<const bool> m_life = std::make_shared<bool>(true);  ///< expires with this; later answers are dropped
  std::shared_ptr<wire::Reaper> m_reaper = std::make_shared<wire::Reaper>();
};

}  // namespace mirvel
