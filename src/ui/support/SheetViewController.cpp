#include "ui/support/SheetViewController.h"

#include <QScreen>
#include <QStringList>

#include "ui/support/QtText.h"

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

QList<int> numbersIn(const std::optional<std::string>& text) {
  QList<int> result;
  if (!text) return result;
  for (const QString& word : qt(*text).split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
    bool isNumber = false;
    result.append(word.toInt(&isNumber));
    if (!isNumber) return {};
  }
  return result;
}

std::string textOf(const QList<int>& numbers) {
  QStringList words;
  for (const int number : numbers) words.append(QString::number(number));
  return utf8(words.join(QLatin1Char(' ')));
}

}  // namespace mirvel::ui
