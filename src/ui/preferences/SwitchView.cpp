#include "ui/preferences/SwitchView.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QStyle>
#include <QVBoxLayout>

#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "ui/support/Controls.h"
#include "ui/support/IconLoader.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

SwitchView::SwitchView(const PreferencesContext& context, const SettingSwitch& row)
    : m_context(context), m_key(row.key), m_box(new CheckBox(qt(row.title))) {
  m_box->setObjectName(qt(m_key));
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins({});
  layout->setSpacing(0);
  layout->addWidget(m_box);
  if (!row.hint.empty()) {
    m_box->setAccessibleDescription(qt(row.hint));
    layout->addLayout(makeHint(row));
  }
  Defaults& defaults = m_context.foundation.defaults;
  const auto show = [this, &defaults] { setCheckedQuietly(*m_box, defaults.boolean(m_key)); };
  show();
  m_changed = defaults.changed().subscribe([this, show](const std::string& key) {
    if (key == m_key) show();
  });
  connect(m_box, &QCheckBox::clicked, this, [this](bool isOn) { clicked(isOn); });
}

/// Below the title of the check box. A warning isn't quiet, and has a sign.
QLayout* SwitchView::makeHint(const SettingSwitch& row) {
  auto* const layout = new QHBoxLayout;
  layout->setSpacing(style()->pixelMetric(QStyle::PM_CheckBoxLabelSpacing));
  layout->addSpacing(style()->pixelMetric(QStyle::PM_IndicatorWidth) +
                     style()->pixelMetric(QStyle::PM_CheckBoxLabelSpacing));
  if (row.isRisky) {
    m_sign = new QLabel;
    layout->addWidget(m_sign, 0, Qt::AlignTop);
    showSign();
  }
  QLabel* const hint = row.isRisky ? new QLabel(qt(row.hint)) : static_cast<QLabel*>(new SecondaryLabel(qt(row.hint)));
  hint->setWordWrap(true);
  layout->addWidget(hint, 1);
  return layout;
}

void SwitchView::showSign() {
  if (m_sign)
    m_sign->setPixmap(IconLoader::symbol("dialog-warning").pixmap(style()->pixelMetric(QStyle::PM_SmallIconSize)));
}

void SwitchView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) showSign();
}

void SwitchView::clicked(bool isOn) {
  const bool isInEffect = SettingSwitches::set(m_key, isOn, m_context.foundation.defaults, m_context.platform.interface,
                                               m_context.foundation.localize);
  setCheckedQuietly(*m_box, isInEffect);
}

QGroupBox* makeGroup(const std::string& title) {
  auto* const box = new QGroupBox(literalTitle(qt(title)));
  new QVBoxLayout(box);
  return box;
}

QGroupBox* makeGroup(const PreferencesContext& context, const SettingGroup& group) {
  QGroupBox* const box = makeGroup(group.title);
  for (const SettingSwitch& row : group.switches) box->layout()->addWidget(new SwitchView(context, row));
  return box;
}

QLabel* makeParagraph(const std::string& text) {
  auto* const label = new QLabel(qt(text));
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  return label;
}

}  // namespace mirvel::ui
