#pragma once

#include <QObject>
#include <filesystem>
#include <vector>

#include "core/base/Result.h"
#include "core/process/Environment.h"
#include "core/process/FileDescriptor.h"
#include "core/process/SystemProcessRunner.h"
#include "helpers/process/Signals.h"

namespace mirvel::demo {

/// Starts and ends the job hosts of the sample machine: the user's, and the one that plays the role of root's. They end
/// with the demo, so jobs saved there stop too: SIGTERM and similar signals have the effect of closing the window, and
/// if the demo is killed, the hosts end by themselves.
class DemoHosts final : public QObject {
 public:
  DemoHosts(std::filesystem::path machine, const Environment& environment);
  ~DemoHosts() override;

  /// Ties the hosts to the life of this process. Must be called once the machine's folder exists.
  Result<void> tieToThisProcess();

 private:
  std::vector<std::filesystem::path> machines() const { return {m_machine, m_machine / "root"}; }

  std::filesystem::path m_machine;
  SystemProcessRunner m_runner;
  Signals m_signals;
  std::vector<FileDescriptor> m_lifelines;
};

}  // namespace mirvel::demo
