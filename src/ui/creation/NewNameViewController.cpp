#include "ui/creation/NewNameViewController.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/app/Program.h"
#include "core/creation/CreationTexts.h"
#include "ui/creation/KindButtons.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

NewNameViewController::NewNameViewController(Program& program, NewController& controller)
    : NewType(New::Page::name, controller),
      m_startingPoints(startingPoints(program.foundation.localize, program.foundation.roots)),
      m_nameTextField(new QLineEdit),
      m_kindButtons(new KindButtons(program)),
      m_startingPointButtons(new QButtonGroup(this)) {
  const Localize& localize = program.foundation.localize;
  m_nameTextField->setObjectName(QStringLiteral("nameTextField"));
  m_nameTextField->setAccessibleName(qt(localize.name()));
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(makeForm(localize));
  layout->addStretch();
  layout->addWidget(new SecondaryLabel(qt(CreationTexts(localize).orBeginWith()) + QLatin1Char(':')));
  layout->addWidget(makeStartingPoints(localize));

  connect(m_nameTextField, &QLineEdit::textChanged, this, [this](const QString& text) {
    if (utf8(text) != newController.name.name()) newController.name.setName(utf8(text));
  });
  connect(m_kindButtons, &KindButtons::kindChosen, this, [this](int tag) { newController.name.kindChanged(tag); });
}

QLayout* NewNameViewController::makeForm(const Localize& localize) {
  auto* form = new QGridLayout;
  auto* nameTitle = new QLabel(qt(localize.name()) + QLatin1Char(':'));
  nameTitle->setBuddy(m_nameTextField);
  auto* kindTitle = new QLabel(qt(localize.forString()) + QLatin1Char(':'));
  kindTitle->setFixedHeight(m_kindButtons->lineHeight());
  form->addWidget(nameTitle, 0, 0);
  form->addWidget(m_nameTextField, 0, 1);
  form->addWidget(kindTitle, 1, 0, Qt::AlignTop);
  form->addWidget(m_kindButtons, 1, 1);
  return form;
}

QWidget* NewNameViewController::makeStartingPoints(const Localize& localize) {
  auto* buttons = new QWidget;
  buttons->setAccessibleName(qt(CreationTexts(localize).orBeginWith()));
  auto* grid = new QGridLayout(buttons);
  grid->setContentsMargins(0, 0, 0, 0);
  constexpr int columns = 2;
  for (int i = 0; i < static_cast<int>(m_startingPoints.size()); ++i) {
    auto* button = new QPushButton(qt(m_startingPoints[static_cast<std::size_t>(i)].title));
    button->setAutoDefault(false);
    m_startingPointButtons->addButton(button, i);
    grid->addWidget(button, i / columns, i % columns);
  }
  connect(m_startingPointButtons, &QButtonGroup::idClicked, this, [this](int id) { begin(id); });
  return buttons;
}

void NewNameViewController::begin(int startingPoint) {
  newController.begin(m_startingPoints[static_cast<std::size_t>(startingPoint)].job.clone());
  focusOnFirst();
}

void NewNameViewController::redraw() {
  const QString name = qt(newController.name.name());
  if (m_nameTextField->text() != name) m_nameTextField->setText(name);
  m_kindButtons->setChosen(newController.name.chosenKind());
}

void NewNameViewController::focusOnFirst() {
  m_nameTextField->setFocus();
  m_nameTextField->selectAll();
}

}  // namespace mirvel::ui
