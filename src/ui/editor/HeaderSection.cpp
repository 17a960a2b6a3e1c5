#include "ui/editor/HeaderSection.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>

#include "ui/support/QtText.h"

namespace mirvel::ui {

HeaderSection::HeaderSection(const std::string& title, QWidget* parent) : QWidget(parent) {
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 8, 0, 0);
  auto* titleTextField = new QLabel(qt(title));
  titleTextField->setTextFormat(Qt::PlainText);
  QFont bold = titleTextField->font();
  bold.setBold(true);
  titleTextField->setFont(bold);
  auto* line = new QFrame;
  line->setFrameShape(QFrame::HLine);
  line->setForegroundRole(QPalette::Mid);
  line->setFrameShadow(QFrame::Plain);
  layout->addWidget(titleTextField);
  layout->addWidget(line, 1);
  setAccessibleName(qt(title));
}

}  // namespace mirvel::ui
