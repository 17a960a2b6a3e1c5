#include "ui/creation/ElidedButton.h"

#include <QStyleOptionButton>

#include "ui/support/Controls.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

void ElidedButton::setTitle(const std::string& title) {
  m_path.clear();
  setText(literalTitle(qt(title)));
  setToolTip(QString());
}

void ElidedButton::setPath(const std::string& path) {
  m_path = qt(path);
  setText(literalTitle(m_path));
  setToolTip(shownToolTip(path));
}

QSize ElidedButton::minimumSizeHint() const {
  constexpr int fewestCharacters = 12;
  return {fontMetrics().averageCharWidth() * fewestCharacters, QPushButton::minimumSizeHint().height()};
}

void ElidedButton::initStyleOption(QStyleOptionButton* option) const {
  QPushButton::initStyleOption(option);
  if (m_path.isEmpty()) return;
  const int room = style()->subElementRect(QStyle::SE_PushButtonContents, option, this).width();
  const bool fits = option->fontMetrics.horizontalAdvance(m_path) <= room;
  const int elided = room - style()->pixelMetric(QStyle::PM_ButtonMargin, option, this);
  const QString shown = fits ? m_path : option->fontMetrics.elidedText(m_path, Qt::ElideMiddle, elided);
  option->text = literalTitle(leftToRight(shown));
}

}  // namespace mirvel::ui
