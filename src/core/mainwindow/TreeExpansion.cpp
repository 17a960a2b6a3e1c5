#include "core/mainwindow/TreeExpansion.h"

namespace mirvel {

const std::optional<TreeExpansion::Kinds>& TreeExpansion::saved() const {
  if (m_isRead) return m_saved;
  m_isRead = true;
  if (const auto numbers = m_defaults.expandedGroups()) {
    m_saved.emplace();
    for (const Kind kind : Kind::allCases) {
      for (const std::int64_t number : *numbers) {
        if (number == kind.rawValue()) m_saved->insert(kind.rawValue());
      }
    }
  }
  return m_saved;
}

bool TreeExpansion::isExpanded(Kind kind) const {
  return !saved() || saved()->contains(kind.rawValue());
}

void TreeExpansion::setExpanded(Kind kind, bool isExpanded, const Sections& present) {
  Kinds open;
  for (const Kind::Section& section : present) {
    const bool isOpen = section.kind == kind ? isExpanded : this->isExpanded(section.kind);
    if (isOpen) open.insert(section.kind.rawValue());
  }
  m_saved = open;
  // Where the settings can't be written the groups stand right until the program ends, which is nothing to interrupt
  // the user for.
  (void)m_defaults.setExpandedGroups({open.begin(), open.end()});
}

}  // namespace mirvel
