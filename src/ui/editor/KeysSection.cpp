#include "ui/editor/KeysSection.h"

#include <QVBoxLayout>

#include "core/editor/SectionRows.h"

namespace mirvel::ui {

KeysSection::KeysSection(const EditorContext& theContext, StackSection section,
                         std::optional<KeyValueSection::EditSection> editSection)
    : Section(theContext), m_section(section), m_editSection(editSection), m_rows(new KeyValueSection(localize())) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(m_rows);
  m_rows->remove = [this](const std::string& key) { return remove(key); };
}

void KeysSection::fill(const Launchd& launchd) {
  auto rows = sectionRows(m_section, launchd.plist(), context().foundation);
  if (rows == m_shown) return;
  m_shown = std::move(rows);
  m_rows->setKeyValues(m_shown, m_editSection);
}

bool KeysSection::remove(const std::string& key) {
  Launchd* const job = markJobChanged();
  if (!job) return false;
  const bool isRemoved = m_editSection == KeyValueSection::EditSection::unknown ? deleteUnknown(job->plist(), key)
                                                                                : deleteDeprecated(job->plist(), key);
  m_shown = sectionRows(m_section, job->plist(), context().foundation);
  return isRemoved;
}

}  // namespace mirvel::ui
