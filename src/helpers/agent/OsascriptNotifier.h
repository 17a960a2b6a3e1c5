#pragma once

#include <string>

#include "core/ports/MainQueue.h"
#include "core/process/ProcessRunner.h"
#include "helpers/agent/Notifier.h"

namespace mirvel::agent {

/// Displays notifications with osascript(1) of macOS. They have no actions.
class OsascriptNotifier final : public Notifier {
 public:
  /// `osascript` is the path of the tool. Both references must outlive this.
  OsascriptNotifier(std::string osascript, ProcessRunner& runner, MainQueue& queue)
      : m_osascript(std::move(osascript)), m_runner(runner), m_delay(queue) {}

  void begin(Listener listener) override;
  /// Blocks while the tool runs, at most ten seconds.
  void send(const Notification& notification, std::function<void(Answer answer)> done) override;
  bool isLost() const override { return false; }

 private:
  std::string m_osascript;
  ProcessRunner& m_runner;
  Delay m_delay;
};

}  // namespace mirvel::agent
