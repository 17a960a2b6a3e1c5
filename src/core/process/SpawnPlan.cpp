#include "core/process/SpawnPlan.h"

#include <signal.h>

namespace mirvel {

std::vector<char*> execPointers(std::vector<std::string>& texts) {
  std::vector<char*> result;
  result.reserve(texts.size() + 1);
  for (auto& text : texts) result.push_back(text.data());
  result.push_back(nullptr);
  return result;
}

std::vector<std::string> execVariables(const Environment& environment) {
  std::vector<std::string> result;
  result.reserve(environment.size());
  for (const auto& [name, value] : environment) result.push_back(name + '=' + value);
  return result;
}

SpawnPlan::SpawnPlan() {
  note(::posix_spawn_file_actions_init(&m_actions));
  note(::posix_spawnattr_init(&m_attributes));
  resetSignals();
}

SpawnPlan::~SpawnPlan() {
  ::posix_spawn_file_actions_destroy(&m_actions);
  ::posix_spawnattr_destroy(&m_attributes);
}

void SpawnPlan::note(int failure) {
  if (m_failure == 0) m_failure = failure;
}

void SpawnPlan::open(int number, const char* path, int flags) {
  note(::posix_spawn_file_actions_addopen(&m_actions, number, path, flags, 0));
}

void SpawnPlan::give(int ours, int number) {
  note(::posix_spawn_file_actions_adddup2(&m_actions, ours, number));
}

void SpawnPlan::resetSignals() {
  sigset_t none, all;
  sigemptyset(&none);
  sigfillset(&all);
  sigdelset(&all, SIGKILL);  // the actions of these two can't be changed
  sigdelset(&all, SIGSTOP);
  note(::posix_spawnattr_setsigmask(&m_attributes, &none));
  note(::posix_spawnattr_setsigdefault(&m_attributes, &all));
  int flags = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
#ifdef POSIX_SPAWN_CLOEXEC_DEFAULT
  flags |= POSIX_SPAWN_CLOEXEC_DEFAULT;  // closes pipes that aren't close-on-exec yet, see Pipe::make
#endif
  note(::posix_spawnattr_setflags(&m_attributes, static_cast<short>(flags)));
}

int SpawnPlan::start(pid_t& id, const std::string& program, const std::vector<std::string>& arguments,
                     const Environment& environment) {
  if (m_failure != 0) return m_failure;
  std::vector<std::string> variables = execVariables(environment);
  std::vector<std::string> words{program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  return ::posix_spawn(&id, program.c_str(), &m_actions, &m_attributes, execPointers(words).data(),
                       execPointers(variables).data());
}

}  // namespace mirvel
