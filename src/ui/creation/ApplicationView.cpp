#include "ui/creation/ApplicationView.h"

#include "ui/support/Labels.h"

namespace mirvel::ui {

ApplicationView::ApplicationView(QWidget* parent) : QListView(parent) {
  constexpr int iconSize = 24;
  setIconSize(QSize(iconSize, iconSize));
  setUniformItemSizes(true);
  setTextElideMode(Qt::ElideRight);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

void ApplicationView::setEmptyText(const QString& text) {
  m_emptyText = text;
  viewport()->update();
}

void ApplicationView::paintEvent(QPaintEvent* event) {
  QListView::paintEvent(event);
  if (model() && model()->rowCount() == 0) drawEmptyLabel(*viewport(), m_emptyText);
}

}  // namespace mirvel::ui
