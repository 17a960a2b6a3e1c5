#include "ui/support/FilterField.h"

#include <QLineEdit>

#include "core/locale/Localize.h"
#include "ui/support/IconLoader.h"
#include "ui/support/QtText.h"
#include "ui/support/SymbolButton.h"

namespace mirvel::ui {

QLineEdit* filterField(const Localize& localize) {
  auto* field = new QLineEdit;
  const QString name = qt(localize.filter());
  field->setPlaceholderText(name);
  field->setAccessibleName(name);
  field->setClearButtonEnabled(true);
  nameButtons(*field, qt(localize.cancel()));
  field->addAction(IconLoader::symbol("edit-find"), QLineEdit::LeadingPosition);
  nameButtons(*field, name);
  return field;
}

}  // namespace mirvel::ui
