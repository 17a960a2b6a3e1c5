#include "ui/support/SymbolButton.h"

#include "ui/support/IconLoader.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

QToolButton* symbolButton(const char* symbol, const std::string& title, QWidget* parent) {
  auto* button = new QToolButton(parent);
  button->setIcon(IconLoader::symbol(symbol));
  button->setAutoRaise(true);
  button->setFocusPolicy(Qt::TabFocus);
  button->setAccessibleName(qt(title));
  button->setToolTip(qt(title));
  return button;
}

void nameButtons(const QWidget& owner, const QString& name) {
  for (auto* button : owner.findChildren<QToolButton*>()) {
    if (button->text().isEmpty() && button->accessibleName().isEmpty()) button->setAccessibleName(name);
  }
}

}  // namespace mirvel::ui
