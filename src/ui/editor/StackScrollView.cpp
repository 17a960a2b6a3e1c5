#include "ui/editor/StackScrollView.h"

#include <QEvent>
#include <QScrollBar>

namespace mirvel::ui {

StackScrollView::StackScrollView(const QString& accessibleName) {
  setWidgetResizable(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::NoFocus);  // what stands in it takes the keys
  setAccessibleName(accessibleName);
}

QSize StackScrollView::minimumSizeHint() const {
  QSize size = QScrollArea::minimumSizeHint();
  if (widget()) size.setWidth(widget()->minimumSizeHint().width() + verticalScrollBar()->sizeHint().width());
  return size;
}

/// The stack of a scroll area lays itself out without telling whoever lays out the area.
bool StackScrollView::eventFilter(QObject* watched, QEvent* event) {
  const bool isDone = QScrollArea::eventFilter(watched, event);
  if (watched == widget() && event->type() == QEvent::LayoutRequest) updateGeometry();
  return isDone;
}

}  // namespace mirvel::ui
