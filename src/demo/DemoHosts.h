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

/// The job hosts of the sample machine: its user's, and the one that stands for root's. Jobs that
/// were saved in the demo end with it: a signal that asks it to end does what closing its window does, and if it is
/// killed, the hosts end by themselves.
class DemoHosts final : public QObject {
 public:
  DemoHosts(std::filesystem::path machine, const Environment& environment);
  ~DemoHosts() override;

  /// To be called as soon as there is the machine. From then on its hosts end with this process.
  Result<void> tieToThisProcess();

 private:
  std::vector<std::filesystem::path> machines() const { return {m_machine, m_machine / "root"}; }

  std::filesystem::path m_machine;
  SystemProcessRunner m_runner;
  Signals m_signals;
  std::vector<FileDescriptor> m_lifelines;
};

}  // namespace mirvel::demo
