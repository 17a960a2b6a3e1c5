#include "ui/editor/GeneralDisplaySection.h"

#include <QCheckBox>
#include <QLabel>

#include "ui/editor/SectionGrid.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"
#include "ui/support/ValueText.h"

namespace mirvel::ui {

void GeneralDisplaySection::show(const GeneralRules::Display& display) {
  auto* iconImageView = new QLabel;  // says nothing that the texts don't
  iconImageView->setPixmap(pixmapOf(display.icon));
  auto* nameValueTextField = new ValueText(shownText(display.name));
  QFont bold = nameValueTextField->font();
  bold.setPointSizeF(bold.pointSizeF() * 1.35);
  bold.setBold(true);
  nameValueTextField->setTextFont(bold);
  nameValueTextField->setAccessibleName(qt(localize().name()));
  m_grid->addIcon(*iconImageView);
  m_grid->addWidget(nameValueTextField, 0, 1, Qt::AlignVCenter);

  m_grid->addText(localize().forString(), *new ValueText(qt(display.for_)), 0);
  if (!display.run.empty()) {
    auto* runValueTextField = new ValueText(shownText(display.run));
    runValueTextField->setCode();
    m_grid->addText(localize().run(), *runValueTextField, 0);
  }
  m_enabledButton->setEnabled(false);
  m_enabledButton->setChecked(display.isEnabled);
  m_grid->addRow(*m_enabledButton);
}

}  // namespace mirvel::ui
