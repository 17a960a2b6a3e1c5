#include "helpers/agent/AutostartAgent.h"

#include <signal.h>

#include <chrono>
#include <string>
#include <vector>

#include "core/text/Strings.h"
#include "helpers/agent/AgentLock.h"

namespace mirvel::agent {

namespace {

std::vector<std::string> argumentsOf(const AutostartAgent::Setup& setup) {
  std::vector<std::string> result{"--detach", "--program", setup.program};
  if (!setup.machine.empty()) result.insert(result.end(), {"--root", setup.machine});
  return result;
}

AutostartEntry entryOf(const AutostartAgent::Setup& setup) {
  std::vector<std::string> command{setup.agent, "--login"};
  const auto arguments = argumentsOf(setup);
  command.insert(command.end(), arguments.begin(), arguments.end());
  return {.file = setup.roots.ownAutostart / agentAutostart,
          .name = "Mirvel notifications",
          .comment = "Tells about new and changed background jobs",
          .command = std::move(command),
          .ownArguments = "( --login)?( --detach)( --program \"[^\"]*\")( --root \"[^\"]*\")?"};
}

}  // namespace

AutostartAgent::AutostartAgent(const Setup& setup) : m_setup(setup), m_entry(entryOf(setup)) {}

bool AutostartAgent::isEnabled(std::string_view) {
  return m_entry.isEnabled();
}

/// An entry that is enabled may have been changed by the user, and is kept.
Result<void> AutostartAgent::setEnabled(std::string_view, bool isEnabled) {
  if (!isEnabled) {
    auto removed = m_entry.remove();
    if (removed) end();
    return removed;
  }
  auto installed = m_entry.isEnabled() ? m_entry.install() : m_entry.replace();
  return installed ? start() : installed;
}

/// Does nothing if an agent runs.
Result<void> AutostartAgent::start() const {
  if (AgentLock::holder(m_setup.roots)) return {};
  const auto started = m_setup.runner.run(m_setup.agent, argumentsOf(m_setup), std::chrono::seconds(10));
  if (!started) return started.error();
  if (started->exitStatus == 0) return {};
  return Error{.code = Error::Code::NotRunning,
               .message = std::string(String::trim(started->complaints, true)),
               .file = m_setup.agent};
}

void AutostartAgent::end() const {
  if (const auto holder = AgentLock::holder(m_setup.roots)) (void)::kill(*holder, SIGTERM);  // may have ended already
}

}  // namespace mirvel::agent
