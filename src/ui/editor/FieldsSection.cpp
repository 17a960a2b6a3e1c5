#include "ui/editor/FieldsSection.h"

#include "core/session/Notifications.h"
#include "ui/editor/SectionGrid.h"

namespace mirvel::ui {

FieldsSection::FieldsSection(const EditorContext& theContext, StackSection section)
    : Section(theContext), m_form(*this) {
  m_form.add(fieldsOf(section), *new SectionGrid(this));
  m_rootChanged = theContext.notifications.rootChanged.subscribe([this] {
    if (const auto job = launchd()) configure(job);
  });
}

}  // namespace mirvel::ui
