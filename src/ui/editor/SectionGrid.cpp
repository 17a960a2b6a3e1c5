#include "ui/editor/SectionGrid.h"

#include <QEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QScrollBar>
#include <memory>

#include "core/text/Bidirectional.h"
#include "ui/support/Controls.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

SectionGrid::SectionGrid(QWidget* section) : QGridLayout(section) {
  setContentsMargins(0, 0, 0, 0);
  // The distance is part of the first column, as a layout adds no spacing next to an empty column.
  setHorizontalSpacing(0);
  setColumnMinimumWidth(0, labelWidth + columnSpacing);
  setColumnStretch(1, 1);
  setVerticalSpacing(8);
}

QLabel* SectionGrid::addLabel(const std::string& title, QWidget& field, Qt::Alignment vertical) {
  // In a right-to-left line the colon belongs to the left of a Latin title.
  const bool isRightToLeft = QGuiApplication::isRightToLeft();
  const auto shown = [&](const QString& text) {
    return qt(bidirectionalString({utf8(text)}, {}, isRightToLeft)) + QLatin1Char(':');
  };
  auto* label = new SecondaryLabel(shown(qt(title)));
  if (label->sizeHint().width() > labelWidth) label->setText(shown(breakable(qt(title))));
  label->setWordWrap(label->sizeHint().width() > labelWidth);
  label->setFixedWidth(labelWidth);
  label->setAlignment(Qt::AlignVCenter | Qt::AlignAbsolute | (isRightToLeft ? Qt::AlignLeft : Qt::AlignRight));
  label->setBuddy(&field);
  field.installEventFilter(this);
  if (field.accessibleName().isEmpty()) field.setAccessibleName(qt(title));
  addWidget(label, rowCount(), 0, Qt::AlignLeading | vertical);
  return label;
}

/// A label is visible together with its field.
bool SectionGrid::eventFilter(QObject* watched, QEvent* event) {
  const bool isShown = event->type() == QEvent::ShowToParent;
  if (!isShown && event->type() != QEvent::HideToParent) return false;
  for (int i = 0; i < count(); ++i) {
    auto* const label = qobject_cast<QLabel*>(itemAt(i)->widget());
    if (label && label->buddy() == watched) label->setVisible(isShown);
  }
  return false;
}

void SectionGrid::addField(const std::string& title, QWidget& field, bool isStretched) {
  (void)addLabel(title, field, Qt::AlignVCenter);
  addWidget(&field, rowCount() - 1, 1, isStretched ? Qt::AlignVCenter : Qt::AlignLeading | Qt::AlignVCenter);
}

QLabel& SectionGrid::addText(const std::string& title, QWidget& field, int textTop) {
  QLabel* label = addLabel(title, field, Qt::AlignTop);
  const int difference = label->fontMetrics().ascent() - field.fontMetrics().ascent();
  label->setContentsMargins(0, std::max(0, textTop - difference), 0, 0);
  addWidget(&field, rowCount() - 1, 1, Qt::AlignTop);
  return *label;
}

void SectionGrid::addIcon(QWidget& icon) {
  auto* place = new QWidget;
  place->setFixedWidth(labelWidth);
  auto* row = new QHBoxLayout(place);
  row->setContentsMargins(0, 0, 0, 0);
  row->addStretch();
  row->addWidget(&icon);
  addWidget(place, 0, 0, Qt::AlignLeading | Qt::AlignVCenter);
}

void SectionGrid::addRow(QWidget& field) {
  addWidget(&field, rowCount(), 1);
}

void SectionGrid::clear() {
  while (const std::unique_ptr<QLayoutItem> item{takeAt(0)}) {
    discard(item->widget());
  }
}

void SectionGrid::indentFields(int distance) {
  setColumnMinimumWidth(0, labelWidth + columnSpacing + distance);
}

StackScrollView::StackScrollView(const QString& accessibleName) {
  setWidgetResizable(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::NoFocus);  // only its controls get the focus
  setAccessibleName(accessibleName);
}

QSize StackScrollView::minimumSizeHint() const {
  QSize size = QScrollArea::minimumSizeHint();
  if (widget()) size.setWidth(widget()->minimumSizeHint().width() + verticalScrollBar()->sizeHint().width());
  return size;
}

/// A scroll area doesn't notify its own layout when the minimum width of its content changes.
bool StackScrollView::eventFilter(QObject* watched, QEvent* event) {
  const bool isDone = QScrollArea::eventFilter(watched, event);
  if (watched == widget() && event->type() == QEvent::LayoutRequest) updateGeometry();
  return isDone;
}

}  // namespace mirvel::ui
