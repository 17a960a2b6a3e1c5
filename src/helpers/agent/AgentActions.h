#pragma once

#include <sys/types.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/locale/Localize.h"
#include "core/messages/JobAddress.h"
#include "core/notifications/Exceptions.h"
#include "core/notifications/Notice.h"
#include "core/ports/Console.h"
#include "core/ports/MainQueue.h"
#include "core/process/Environment.h"
#include "helpers/wire/StartHelper.h"

namespace mirvel::agent {

/// Carries out what the user chooses in a notification. For the main thread.
class AgentActions {
 public:
  struct Setup {
    const Localize& localize;
    Exceptions& exceptions;
    MainQueue& queue;
    Console& console;
    Environment environment;           ///< of the programs that are started
    std::filesystem::path program;     ///< `mirvel`
    wire::HelperProgram action;        ///< `mirvel-action`
    std::function<void(Notice)> tell;  ///< tells the user of a failure
  };

  /// Everything referred to must outlive this.
  explicit AgentActions(Setup setup) : m_setup(std::move(setup)), m_delay(m_setup.queue) {}

  /// Carries out an action of `NoticeAction`. `token` lets the program come to the front; it may be empty.
  void perform(const Notification& notification, const std::string& action, const std::string& token);
  /// To be called when a child process may have ended.
  void collect();

 private:
  void open(const JobAddress* address, const std::string& token);
  void disable(const Notice& notice, const std::string& token);
  void sendDisabled(const Notice& notice, const std::string& content, const std::string& token);
  void stayQuiet(const Notice& notice);
  void fail(const Notice& notice, const std::string& reason);

  Setup m_setup;
  std::vector<pid_t> m_children;
  std::shared_ptr<wire::Reaper> m_reaper = std::make_shared<wire::Reaper>();
  std::unique_ptr<HelperConnection> m_helper;  ///< while a request is being answered
  Delay m_delay;
};

}  // namespace mirvel::agent
