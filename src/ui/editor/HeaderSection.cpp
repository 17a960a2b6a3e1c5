#include "ui/editor/HeaderSection.h"

#include <QHBoxLayout>
#include <QLabel>

#include "ui/support/Hairline.h"
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
  layout->addWidget(titleTextField);
  layout->addWidget(new Hairline, 1);
  setAccessibleName(qt(title));
}

}  // namespace mirvel::ui
