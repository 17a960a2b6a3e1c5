#include "ui/creation/CreationControls.h"

#include <QButtonGroup>
#include <QEvent>
#include <QStyleOptionButton>
#include <QVBoxLayout>
#include <algorithm>

#include "core/creation/Creation.h"
#include "ui/support/Controls.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

namespace {

/// "kindUserAgentButton" for the kind `userAgent`.
QString nameOfButton(Kind kind) {
  QString name = qt(kind.name());
  name[0] = name.at(0).toUpper();
  return QStringLiteral("kind%1Button").arg(name);
}

/// The title may be the full name of a user, which has any length.
void setElidedTitle(QRadioButton& button, const QString& title) {
  const int longest = 48 * button.fontMetrics().averageCharWidth();
  const QString shown = button.fontMetrics().elidedText(title.simplified(), Qt::ElideMiddle, longest);
  button.setText(literalTitle(shown));
  button.setAccessibleName(title);
  if (shown != title) button.setToolTip(shownToolTip(utf8(title)));
}

}  // namespace

void ElidedButton::setTitle(const std::string& title) {
  m_path.clear();
  setText(literalTitle(qt(title)));
  setToolTip(QString());
}

void ElidedButton::setPath(const std::string& path) {
  m_path = qt(path);
  setText(literalTitle(m_path));
  setToolTip(shownToolTip(path));
}

QSize ElidedButton::minimumSizeHint() const {
  constexpr int fewestCharacters = 12;
  return {fontMetrics().averageCharWidth() * fewestCharacters, QPushButton::minimumSizeHint().height()};
}

/// Elides while drawing: `text()` stays the whole path, for assistive technology and the size hint.
void ElidedButton::initStyleOption(QStyleOptionButton* option) const {
  QPushButton::initStyleOption(option);
  if (m_path.isEmpty()) return;
  const int room = style()->subElementRect(QStyle::SE_PushButtonContents, option, this).width();
  const bool fits = option->fontMetrics.horizontalAdvance(m_path) <= room;
  const int elided = room - style()->pixelMetric(QStyle::PM_ButtonMargin, option, this);
  const QString shown = fits ? m_path : option->fontMetrics.elidedText(m_path, Qt::ElideMiddle, elided);
  option->text = literalTitle(leftToRight(shown));
}

void checkQuietly(QButtonGroup& group, std::optional<int> id) {
  const QSignalBlocker quiet(&group);
  group.setExclusive(false);
  for (QAbstractButton* button : group.buttons()) button->setChecked(id && group.id(button) == *id);
  group.setExclusive(true);
}

KindButtons::KindButtons(KindTexts& kinds, QWidget* parent) : QWidget(parent), m_buttons(new QButtonGroup(this)) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  for (const KindChoice& choice : kindChoices(kinds)) {
    auto* button = new RadioButton;
    button->setObjectName(nameOfButton(choice.kind));
    setElidedTitle(*button, qt(choice.title));
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
  checkQuietly(*m_buttons, kind ? std::optional(kind->rawValue()) : std::nullopt);
  if (QAbstractButton* const chosen = m_buttons->checkedButton()) setFocusProxy(chosen);
}

}  // namespace mirvel::ui
