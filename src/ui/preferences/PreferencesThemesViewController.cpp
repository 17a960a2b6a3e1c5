#include "ui/preferences/PreferencesThemesViewController.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "core/preferences/PreferencesTexts.h"
#include "core/preferences/Themes.h"
#include "core/session/Foundation.h"
#include "core/session/Notifications.h"
#include "core/session/Platform.h"
#include "ui/preferences/SwitchView.h"
#include "ui/scripts/ScriptModule.h"
#include "ui/scripts/ScriptSettings.h"
#include "ui/support/Controls.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

PreferencesThemesViewController::PreferencesThemesViewController(const PreferencesContext& context)
    : PreferenceTabViewController(qt(PreferencesTexts(context.foundation.localize).themes()), "mirvel-theme",
                                  "preferencesthemes"),
      m_context(context),
      m_themesPopUpButton(new QComboBox) {
  const Localize& localize = m_context.foundation.localize;
  const PreferencesTexts texts(localize);
  m_themesPopUpButton->setObjectName(QStringLiteral("themesPopUpButton"));
  guardFromWheel(*m_themesPopUpButton);
  for (const Theme theme : Themes::all) m_themesPopUpButton->addItem(qt(Themes::title(theme, localize)));

  auto* const label = new QLabel(qt(texts.colorsOfScripts() + ":"));
  label->setBuddy(m_themesPopUpButton);
  m_themesPopUpButton->setAccessibleName(qt(texts.colorsOfScripts()));
  auto* const row = new QHBoxLayout;
  row->addWidget(label);
  row->addWidget(m_themesPopUpButton);
  row->addStretch();
  auto* const hint = new SecondaryLabel(qt(texts.automaticHint()));
  hint->setWordWrap(true);
  ScriptText* const preview = makeScriptText(m_context.platform.console, localize, qt(texts.preview()));
  preview->setDetectsSyntax(true);
  preview->setText(Themes::sample);
  preview->setEditable(false);
  followLineNumbers(*preview, m_context.foundation.defaults);

  auto* const layout = new QVBoxLayout(this);
  layout->addLayout(row);
  layout->addWidget(hint);
  layout->addWidget(preview, 1);
  connect(m_themesPopUpButton, &QComboBox::activated, this, [this](int index) {
    Themes::choose(Themes::all.at(static_cast<std::size_t>(index)), m_context.foundation.defaults);
  });
  show();
  m_themeChanged = m_context.notifications.themeChanged.subscribe([this] { show(); });
}

void PreferencesThemesViewController::show() {
  const Theme theme = Themes::current(m_context.foundation.defaults);
  m_themesPopUpButton->setCurrentIndex(static_cast<int>(theme));
}

}  // namespace mirvel::ui
