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

}  // namespace mirvel::ui
