#include "ui/creation/NewWhatViewController.h"

#include <QButtonGroup>
#include <QCommandLinkButton>
#include <QKeyEvent>
#include <QLabel>
#include <QVBoxLayout>
#include <algorithm>

#include "core/app/Program.h"
#include "core/creation/CreationTexts.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

NewWhatViewController::NewWhatViewController(Program& program, NewController& controller, IconLoader& icons)
    : NewType(New::Page::what, controller), m_buttons(new QButtonGroup(this)) {
  const Localize& localize = program.foundation.localize;
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(new QLabel(qt(controller.what.title())));
  const auto icon = [&icons](const char* name) { return icons.icon(Image::named(name)); };
  using Run = New::Run;
  addChoice(Run::application, localize.application(), CreationTexts(localize).applicationHint(),
            icon("application-x-executable"));
  addChoice(Run::script, CreationTexts(localize).script(), CreationTexts(localize).scriptHint(), icon("text-x-script"));
  addChoice(Run::command, localize.command(), CreationTexts(localize).commandHint(), icon("utilities-terminal"));
  layout->addStretch();
  connect(m_buttons, &QButtonGroup::idToggled, this, [this](int id, bool isOn) {
    if (isOn) newController.what.choose(static_cast<Run>(id));
  });
}

void NewWhatViewController::addChoice(New::Run run, const std::string& title, const std::string& hint,
                                      const QIcon& icon) {
  auto* button = new QCommandLinkButton(qt(title), qt(hint));
  constexpr int iconSize = 32;
  button->setIcon(icon);
  button->setIconSize(QSize(iconSize, iconSize));
  button->setCheckable(true);
  button->setAutoDefault(false);
  button->installEventFilter(this);
  m_buttons->addButton(button, static_cast<int>(run));
  layout()->addWidget(button);
}

/// The arrows choose, from the first one on, where none was chosen.
bool NewWhatViewController::eventFilter(QObject* watched, QEvent* event) {
  const int key = event->type() == QEvent::KeyPress ? static_cast<const QKeyEvent*>(event)->key() : 0;
  if (key != Qt::Key_Down && key != Qt::Key_Up) return NewType::eventFilter(watched, event);
  const int last = static_cast<int>(m_buttons->buttons().size()) - 1;
  const int id = std::clamp(m_buttons->checkedId() + (key == Qt::Key_Down ? 1 : -1), 0, last);
  m_buttons->button(id)->click();
  m_buttons->button(id)->setFocus();
  return true;
}

void NewWhatViewController::redraw() {
  const auto chosen = newController.what.chosen();
  const QSignalBlocker quiet(m_buttons);
  m_buttons->setExclusive(false);  // an exclusive group always has one that is on
  for (QAbstractButton* button : m_buttons->buttons()) {
    button->setChecked(chosen && m_buttons->id(button) == static_cast<int>(*chosen));
  }
  m_buttons->setExclusive(true);
}

void NewWhatViewController::focusOnFirst() {
  QAbstractButton* const chosen = m_buttons->checkedButton();
  (chosen ? chosen : m_buttons->buttons().constFirst())->setFocus();
}

}  // namespace mirvel::ui
