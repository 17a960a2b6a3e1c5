#include "ui/editor/RootSection.h"

#include <QLineEdit>

#include "core/editor/GeneralRules.h"
#include "ui/editor/SectionGrid.h"
#include "ui/support/CheckBox.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

constexpr auto initGroupsHelp =
    "This optional key specifies whether initgroups(3) to initialize the group list for the job. The default is true. "
    "This key will be ignored if the UserName key is not set.";
constexpr auto userNameHelp =
    "This optional key specifies the user to run the job as. This key is only applicable for services that are loaded "
    "into the privileged system domain.";
constexpr auto groupNameHelp =
    "This optional key specifies the group to run the job as. This key is only applicable for services that are loaded "
    "into the privileged system domain. If UserName is set and GroupName is not, then the group will be set to the "
    "primary group of the user.";

}  // namespace

RootSection::RootSection(Program& theProgram)
    : Section(theProgram),
      m_initGroupsButton(new CheckBox(QStringLiteral("InitGroups"))),
      m_userNameTextField(new QLineEdit),
      m_groupNameTextField(new QLineEdit) {
  m_initGroupsButton->setToolTip(QLatin1String(initGroupsHelp));
  m_userNameTextField->setToolTip(QLatin1String(userNameHelp));
  m_groupNameTextField->setToolTip(QLatin1String(groupNameHelp));
  m_initGroupsButton->setObjectName(QStringLiteral("initGroupsButton"));
  m_userNameTextField->setObjectName(QStringLiteral("userNameTextField"));
  m_groupNameTextField->setObjectName(QStringLiteral("groupNameTextField"));
  auto* grid = new SectionGrid(this);
  grid->addRow(*m_initGroupsButton);
  grid->addField("UserName", *m_userNameTextField);
  grid->addField("GroupName", *m_groupNameTextField);

  connect(m_initGroupsButton, &QCheckBox::toggled, this, [this](bool isOn) {
    if (Launchd* const job = markJobChanged()) job->plist().initGroups = isOn;
  });
  connect(m_userNameTextField, &QLineEdit::textChanged, this, [this](const QString& text) {
    if (Launchd* const job = markJobChanged("UserName")) {
      GeneralRules::userName(job->plist(), utf8(text));
    }
  });
  connect(m_groupNameTextField, &QLineEdit::textChanged, this, [this](const QString& text) {
    if (Launchd* const job = markJobChanged("GroupName")) {
      GeneralRules::groupName(job->plist(), utf8(text));
    }
  });
  m_rootChanged = program().notifications.rootChanged.subscribe([this] { updateInterface(); });
}

void RootSection::fill(const Launchd& launchd) {
  const auto& plist = launchd.plist();
  m_initGroupsButton->setChecked(plist.initGroups.value_or(true));
  m_userNameTextField->setText(qt(plist.userName.value_or("")));
  m_groupNameTextField->setText(qt(plist.groupName.value_or("")));
  updateInterface();
}

void RootSection::updateInterface() {
  const auto job = launchd();
  const bool isRoot = job && job->kind.isDaemon();
  for (QWidget* control : {static_cast<QWidget*>(m_initGroupsButton), static_cast<QWidget*>(m_userNameTextField),
                           static_cast<QWidget*>(m_groupNameTextField)}) {
    control->setEnabled(isRoot);
  }
}

}  // namespace mirvel::ui
