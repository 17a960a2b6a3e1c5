#include "helpers/action/Threads.h"

#include <system_error>
#include <utility>

namespace mirvel {

Threads::~Threads() {
  join();
}

bool Threads::start(std::function<void()> work) {
  m_entries.remove_if([](Entry& entry) {
    const bool hasEnded = entry.hasEnded;
    if (hasEnded) entry.thread.join();
    return hasEnded;
  });
  Entry& entry = m_entries.emplace_back();
  try {
    entry.thread = std::thread([&entry, work = std::move(work)] {
      work();
      entry.hasEnded = true;
    });
  } catch (const std::system_error&) {
    m_entries.pop_back();
    return false;
  }
  return true;
}

void Threads::join() {
  for (Entry& entry : m_entries) entry.thread.join();
  m_entries.clear();
}

}  // namespace mirvel
