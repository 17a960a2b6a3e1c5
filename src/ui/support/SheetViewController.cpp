#include "ui/support/SheetViewController.h"

#include <QScreen>

#include "ui/support/FrameNumbers.h"

namespace mirvel::ui {

SheetViewController::SheetViewController(QWidget& window, Defaults& defaults, const char* frameName)
    : QDialog(&window), m_defaults(defaults), m_key(std::string("NSWindow Frame ") + frameName) {
  setObjectName(QLatin1String(frameName));
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowModality(Qt::WindowModal);
}

void SheetViewController::restoreSize(QSize usual) {
  m_hasSize = true;
  const QList<int> numbers = numbersIn(m_defaults.text(m_key));
  const bool isKnown = numbers.size() == 2 && numbers[0] > 0 && numbers[1] > 0;
  resize((isKnown ? QSize(numbers[0], numbers[1]) : usual).boundedTo(screen()->availableSize()));
}

void SheetViewController::done(int result) {
  // If the settings can't be written, only the size is lost.
  if (m_hasSize) (void)m_defaults.setText(m_key, textOf({width(), height()}));
  QDialog::done(result);
}

}  // namespace mirvel::ui
