#include "ui/preferences/PreferencesAdvancedViewController.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/preferences/PreferencesTexts.h"
#include "core/preferences/SettingSwitches.h"
#include "core/preferences/Uninstaller.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "ui/preferences/FoldersViewController.h"
#include "ui/preferences/SwitchView.h"
#include "ui/support/Controls.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

PreferencesAdvancedViewController::PreferencesAdvancedViewController(const PreferencesContext& context,
                                                                     IconLoader& icons)
    : PreferenceTabViewController(qt(PreferencesTexts(context.foundation.localize).advanced()), "document-properties",
                                  "preferencesadvanced"),
      m_context(context),
      m_icons(icons),
      m_folders(context.foundation.defaults, context.extraFolders, context.foundation.localize,
                context.foundation.roots.home),
      m_uninstallButton(new QPushButton),
      m_uninstallStatus(makeParagraph({})),
      m_foldersTextField(makeParagraph({})) {
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(makeHelpers());
  layout->addWidget(makeFolders());
  layout->addWidget(makeGroup(m_context, SettingSwitches::systemJobs(m_context.foundation.localize)));
  layout->addStretch();
  showUninstaller();
  showFolders();
  m_uninstallerChanged = m_context.uninstaller.changed().subscribe([this] { showUninstaller(); });
  m_foldersChanged = m_folders.changed().subscribe([this] { showFolders(); });
}

QWidget* PreferencesAdvancedViewController::makeHelpers() {
  const Localize& localize = m_context.foundation.localize;
  QGroupBox* const group = makeGroup(PreferencesTexts(localize).internalHelperTools());
  group->layout()->addWidget(new SwitchView(m_context, SettingSwitches::showInternalHelpers(localize)));
  m_uninstallButton->setObjectName(QStringLiteral("uninstallButton"));
  m_uninstallButton->setAutoDefault(false);
  m_uninstallStatus->setObjectName(QStringLiteral("uninstallStatus"));
  auto* const row = new QHBoxLayout;
  row->addWidget(m_uninstallButton);
  row->addWidget(m_uninstallStatus, 1);
  static_cast<QVBoxLayout*>(group->layout())->addLayout(row);
  connect(m_uninstallButton, &QPushButton::clicked, this, [this] { uninstallInternalHelpers(); });
  return group;
}

QWidget* PreferencesAdvancedViewController::makeFolders() {
  const Localize& localize = m_context.foundation.localize;
  QGroupBox* const group = makeGroup(localize.folders());
  auto* const editFoldersButton = new QPushButton(literalTitle(qt(localize.ellipsis().edit())));
  editFoldersButton->setObjectName(QStringLiteral("editFoldersButton"));
  editFoldersButton->setAccessibleDescription(qt(localize.folders()));
  editFoldersButton->setAutoDefault(false);
  auto* const row = new QHBoxLayout;
  row->addWidget(editFoldersButton);
  row->addWidget(m_foldersTextField, 1);
  static_cast<QVBoxLayout*>(group->layout())->addLayout(row);
  connect(editFoldersButton, &QPushButton::clicked, this, [this] { editFolders(); });
  return group;
}

void PreferencesAdvancedViewController::uninstallInternalHelpers() {
  Uninstaller& uninstaller = m_context.uninstaller;
  uninstaller.state() == Uninstaller::State::Waiting ? uninstaller.cancel() : uninstaller.uninstall();
}

void PreferencesAdvancedViewController::showUninstaller() {
  const Localize& localize = m_context.foundation.localize;
  const auto state = m_context.uninstaller.state();
  const bool canCancel = state == Uninstaller::State::Waiting;
  m_uninstallButton->setText(literalTitle(qt(canCancel ? localize.cancel() : PreferencesTexts(localize).uninstall())));
  m_uninstallButton->setEnabled(state != Uninstaller::State::Working);
  m_uninstallStatus->setText(qt(m_context.uninstaller.status()));
}

void PreferencesAdvancedViewController::showFolders() {
  const auto number = static_cast<std::int64_t>(m_folders.folders().size());
  m_foldersTextField->setText(qt(PreferencesTexts(m_context.foundation.localize).numberOfFolders(number)));
}

void PreferencesAdvancedViewController::editFolders() {
  (new FoldersViewController(m_context, m_folders, m_icons, *window()))->open();
}

}  // namespace mirvel::ui
