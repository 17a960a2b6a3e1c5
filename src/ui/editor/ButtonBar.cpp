#include "ui/editor/ButtonBar.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "ui/support/Labels.h"

namespace mirvel::ui {

ButtonBar::ButtonBar(QWidget* parent) : QWidget(parent), m_row(new QHBoxLayout) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(new Hairline);
  m_row->setContentsMargins(20, 10, 20, 10);
  m_row->setSpacing(8);
  layout->addLayout(m_row);
}

}  // namespace mirvel::ui
