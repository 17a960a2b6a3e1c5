#pragma once

#include <QObject>
#include <filesystem>

#include "core/support/Environment.h"
#include "core/support/SystemProcessRunner.h"
#include "helpers/host/Signals.h"

namespace mirvel::demo {

/// The job hosts of the sample machine: its user's, and the one that stands for root's. Jobs that
/// were saved in the demo end with it: a signal that asks it to end does what closing its window does.
class DemoHosts final : public QObject {
 public:
  DemoHosts(std::filesystem::path machine, const Environment& environment);
  ~DemoHosts() override;

 private:
  std::filesystem::path m_machine;
  SystemProcessRunner m_runner;
  host::Signals m_signals;
};

}  // namespace mirvel::demo
