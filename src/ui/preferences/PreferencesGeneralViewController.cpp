#include "ui/preferences/PreferencesGeneralViewController.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "core/preferences/PreferencesTexts.h"
#include "core/preferences/SettingSwitches.h"
#include "core/preferences/SettingsReset.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "ui/preferences/SwitchView.h"
#include "ui/support/Controls.h"
#include "ui/support/FlowLayout.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

RevisionsStepper::RevisionsStepper(const PreferencesContext& context)
    : m_setting(context.foundation.defaults, context.revisions, context.platform.interface, context.platform.mainQueue,
                context.foundation.localize) {
  setObjectName(QStringLiteral("revisionsStepper"));
  setAccessibleName(qt(PreferencesTexts(context.foundation.localize).revisions()));
  setKeyboardTracking(false);
  guardFromWheel(*this);
  show();
  m_changed = context.foundation.defaults.changed().subscribe([this](const std::string& key) {
    if (key == Defaults::Key::numberOfSavedRevisions) show();
  });
  connect(this, &QSpinBox::valueChanged, this, [this](int position) { m_setting.step(position, [this] { show(); }); });
  connect(this, &QSpinBox::editingFinished, this, [this] { commit(); });
}

void RevisionsStepper::show() {
  const QSignalBlocker quiet(*this);
  setRange(m_setting.minimum(), m_setting.maximum());
  setValue(m_setting.position());
}

/// Closing the window ends the input before it is hidden. When a visible window is destroyed, the input is given up.
void RevisionsStepper::commit() {
  if (window()->isHidden()) return abandon();
  m_setting.commit(value());
  show();
}

void RevisionsStepper::abandon() {
  m_setting.abandon();
  show();
}

void RevisionsStepper::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Cancel)) abandon();
  QSpinBox::keyPressEvent(event);  // leaves it to the window, which closes
}

void RevisionsStepper::hideEvent(QHideEvent* event) {
  QSpinBox::hideEvent(event);
  if (!event->spontaneous()) commit();  // another pane is shown, for example
}

QValidator::State RevisionsStepper::validate(QString& input, int& /*position*/) const {
  if (m_setting.positionOf(utf8(input))) return QValidator::Acceptable;
  return m_setting.mayContinue(utf8(input)) ? QValidator::Intermediate : QValidator::Invalid;
}

int RevisionsStepper::valueFromText(const QString& text) const {
  return m_setting.positionOf(utf8(text)).value_or(value());
}

QString RevisionsStepper::textFromValue(int value) const {
  return qt(m_setting.text(value));
}

PreferencesGeneralViewController::PreferencesGeneralViewController(const PreferencesContext& context)
    : PreferenceTabViewController(qt(PreferencesTexts(context.foundation.localize).general()), "preferences-system",
                                  "preferencesgeneral"),
      m_context(context),
      m_askAgainButton(new QPushButton) {
  auto* const layout = new QVBoxLayout(this);
  for (const SettingGroup& group : SettingSwitches::general(m_context.foundation.localize)) {
    layout->addWidget(makeGroup(m_context, group));
  }
  layout->addWidget(makeRevisions());
  layout->addWidget(makeReset());
  layout->addStretch();
  updateAskAgain();
  m_changed = m_context.foundation.defaults.changed().subscribe([this](const std::string&) { updateAskAgain(); });
}

QWidget* PreferencesGeneralViewController::makeRevisions() {
  const PreferencesTexts texts(m_context.foundation.localize);
  QGroupBox* const group = makeGroup(texts.revisions());
  auto* const row = new QHBoxLayout;
  row->addWidget(new RevisionsStepper(m_context));
  row->addWidget(makeParagraph(texts.keepForEachJob()), 1);
  static_cast<QVBoxLayout*>(group->layout())->addLayout(row);
  return group;
}

QWidget* PreferencesGeneralViewController::makeReset() {
  const Localize& localize = m_context.foundation.localize;
  const PreferencesTexts texts(localize);
  QGroupBox* const group = makeGroup(texts.reset());
  auto* const resetButton = new QPushButton(literalTitle(qt(texts.resetAll())));
  resetButton->setObjectName(QStringLiteral("resetButton"));
  m_askAgainButton->setText(literalTitle(qt(texts.askEverythingAgain())));
  m_askAgainButton->setObjectName(QStringLiteral("askAgainButton"));
  auto* const row = new QHBoxLayout;
  for (QPushButton* const button : {m_askAgainButton, resetButton}) {
    button->setAutoDefault(false);
    row->addWidget(button);
  }
  row->addStretch();
  static_cast<QVBoxLayout*>(group->layout())->addLayout(row);
  connect(m_askAgainButton, &QPushButton::clicked, this,
          [this] { SettingsReset::askEverythingAgain(m_context.foundation.defaults); });
  connect(resetButton, &QPushButton::clicked, this, [this, &localize] {
    SettingsReset::resetAll(m_context.foundation.defaults, m_context.revisions, m_context.platform.interface, localize);
  });
  return group;
}

void PreferencesGeneralViewController::updateAskAgain() {
  m_askAgainButton->setEnabled(SettingsReset::hasSuppressedQuestions(m_context.foundation.defaults));
}

}  // namespace mirvel::ui
