#include "ui/support/FrameNumbers.h"

#include <QStringList>

#include "ui/support/QtText.h"

namespace mirvel::ui {

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
