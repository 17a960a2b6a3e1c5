#include "ui/creation/KindButtons.h"

#include <QButtonGroup>
#include <QVBoxLayout>

#include "core/app/Program.h"
#include "core/creation/Creation.h"
#include "ui/support/Controls.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

/// "kindUserAgentButton" for the kind `userAgent`.
QString nameOfButton(Kind kind) {
  QString name = qt(kind.name());
  name[0] = name.at(0).toUpper();
  return QStringLiteral("kind%1Button").arg(name);
}

/// A title that is too long, such as a user's name may be, is cut in its middle and told by the tool tip.
void setTitle(QRadioButton& button, const QString& title) {
  const int longest = 48 * button.fontMetrics().averageCharWidth();
  const QString shown = button.fontMetrics().elidedText(title.simplified(), Qt::ElideMiddle, longest);
  button.setText(literalTitle(shown));
  button.setAccessibleName(title);
  if (shown != title) button.setToolTip(title);
}

}  // namespace

KindButtons::KindButtons(Program& program, QWidget* parent) : QWidget(parent), m_buttons(new QButtonGroup(this)) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  for (const KindChoice& choice : kindChoices(program.kinds)) {
    auto* button = new RadioButton;
    button->setObjectName(nameOfButton(choice.kind));
    setTitle(*button, qt(choice.title));
    m_buttons->addButton(button, choice.kind.rawValue());
    layout->addWidget(button);
  }
  setFocusProxy(m_buttons->buttons().constFirst());
  connect(m_buttons, &QButtonGroup::idToggled, this, [this](int tag, bool isOn) {
    if (!isOn) return;
    setFocusProxy(m_buttons->button(tag));
    Q_EMIT kindChosen(tag);
  });
}

int KindButtons::lineHeight() const {
  return m_buttons->buttons().constFirst()->sizeHint().height();
}

void KindButtons::setChosen(std::optional<Kind> kind) {
  const QSignalBlocker quiet(m_buttons);
  m_buttons->setExclusive(false);  // a group that is exclusive keeps one button on
  for (QAbstractButton* button : m_buttons->buttons()) {
    const bool isChosen = kind && m_buttons->id(button) == kind->rawValue();
    button->setChecked(isChosen);
    if (isChosen) setFocusProxy(button);
  }
  m_buttons->setExclusive(true);
}

}  // namespace mirvel::ui
