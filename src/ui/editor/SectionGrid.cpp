#include "ui/editor/SectionGrid.h"

#include <QGuiApplication>
#include <QLabel>

#include "core/support/Bidirectional.h"

#include "ui/support/QtText.h"
#include "ui/support/SecondaryLabel.h"

namespace mirvel::ui {

SectionGrid::SectionGrid(QWidget* section) : QGridLayout(section) {
  setContentsMargins(0, 0, 0, 0);
  setColumnMinimumWidth(0, labelWidth);
  setColumnStretch(1, 1);
  setHorizontalSpacing(columnSpacing);
  setVerticalSpacing(8);
}

QLabel* SectionGrid::addLabel(const std::string& title, QWidget& field, Qt::Alignment vertical) {
  // In a line from right to left the colon stands at the left of a Latin title.
  const std::string isolated = bidirectionalString({title}, {}, QGuiApplication::isRightToLeft());
  auto* label = new SecondaryLabel(qt(isolated) + QLatin1Char(':'));
  label->setMaximumWidth(labelWidth);
  label->setBuddy(&field);
  if (field.accessibleName().isEmpty()) field.setAccessibleName(qt(title));
  addWidget(label, rowCount(), 0, Qt::AlignTrailing | vertical);
  return label;
}

QLabel* SectionGrid::addField(const std::string& title, QWidget& field, bool isStretched) {
  QLabel* label = addLabel(title, field, Qt::AlignVCenter);
  addWidget(&field, rowCount() - 1, 1, isStretched ? Qt::AlignVCenter : Qt::AlignLeading | Qt::AlignVCenter);
  return label;
}

QLabel* SectionGrid::addText(const std::string& title, QWidget& field, int textTop) {
  QLabel* label = addLabel(title, field, Qt::AlignTop);
  const int difference = label->fontMetrics().ascent() - field.fontMetrics().ascent();
  label->setContentsMargins(0, std::max(0, textTop - difference), 0, 0);
  addWidget(&field, rowCount() - 1, 1, Qt::AlignTop);
  return label;
}

void SectionGrid::addRow(QWidget& field) {
  addWidget(&field, rowCount(), 1);
  addStrut(rowCount() - 1);
}

QWidget* SectionGrid::addStrut(int row) {
  auto* strut = new QWidget;
  strut->setFixedSize(labelWidth, 0);
  addWidget(strut, row, 0);
  return strut;
}

}  // namespace mirvel::ui
