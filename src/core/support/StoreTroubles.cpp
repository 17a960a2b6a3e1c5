#include "core/support/StoreTroubles.h"

#include <utility>

namespace mirvel {

void StoreTroubles::report(StoreTrouble trouble) {
  if (m_listener) return m_listener(trouble);
  m_waiting.push_back(std::move(trouble));
}

void StoreTroubles::setListener(Listener listener) {
  m_listener = std::move(listener);
  if (!m_listener) return;
  for (const StoreTrouble& trouble : std::exchange(m_waiting, {})) m_listener(trouble);
}

}  // namespace mirvel
