#include "ui/editor/KeysSection.h"

#include <QVBoxLayout>

#include "core/editor/DeprecatedKeys.h"
#include "core/editor/SectionRows.h"

namespace mirvel::ui {

KeysSection::KeysSection(Program& theProgram, StackSection section,
                         std::optional<KeyValueSection::EditSection> editSection)
    : Section(theProgram), m_section(section), m_editSection(editSection), m_rows(new KeyValueSection(theProgram)) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(m_rows);
  m_rows->remove = [this](const std::string& key) { return remove(key); };
}

void KeysSection::fill(const Launchd& launchd) {
  m_rows->setKeyValues(sectionRows(m_section, launchd.plist(), program().foundation), m_editSection);
}

bool KeysSection::remove(const std::string& key) {
  Launchd* const job = markJobChanged();
  if (!job) return false;
  return m_editSection == KeyValueSection::EditSection::unknown ? deleteUnknown(job->plist(), key)
                                                                : deleteDeprecated(job->plist(), key);
}

}  // namespace mirvel::ui
