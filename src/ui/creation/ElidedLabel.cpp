#include "ui/creation/ElidedLabel.h"

#include <QEvent>
#include <algorithm>

#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);  // names of files may look like markup
}

void ElidedLabel::setFullText(const QString& text) {
  m_text = shownText(utf8(text)).simplified();  // a file's name may have line ends
  setAccessibleName(m_text);
  updateGeometry();
  elide();
}

QSize ElidedLabel::sizeHint() const {
  const int widest = 60 * fontMetrics().averageCharWidth();
  const int all = fontMetrics().horizontalAdvance(m_text) + 2 * margin();
  return {std::min(all, widest), QLabel::sizeHint().height()};
}

QSize ElidedLabel::minimumSizeHint() const {
  return {8 * fontMetrics().averageCharWidth(), QLabel::minimumSizeHint().height()};
}

void ElidedLabel::resizeEvent(QResizeEvent* event) {
  QLabel::resizeEvent(event);
  elide();
}

void ElidedLabel::changeEvent(QEvent* event) {
  QLabel::changeEvent(event);
  if (event->type() == QEvent::FontChange) elide();
}

void ElidedLabel::elide() {
  const QString shown = fontMetrics().elidedText(m_text, Qt::ElideMiddle, contentsRect().width());
  if (shown != text()) setText(shown);
  setToolTip(shown == m_text ? QString() : shownToolTip(utf8(m_text)));
}

}  // namespace mirvel::ui
