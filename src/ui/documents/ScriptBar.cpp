#include "ui/documents/ScriptBar.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QToolButton>

#include "core/documents/ScriptDocument.h"
#include "core/documents/ScriptTexts.h"
#include "core/process/UserEntry.h"
#include "core/runs/JobControl.h"
#include "core/runs/JobRuns.h"
#include "core/session/Catalogue.h"
#include "core/session/Foundation.h"
#include "core/session/Notifications.h"
#include "core/session/Platform.h"
#include "ui/support/Controls.h"
#include "ui/support/IconLoader.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

QToolButton* button(const char* symbol, const std::string& title, QWidget* parent) {
  auto* result = new QToolButton(parent);
  if (symbol) result->setIcon(IconLoader::symbol(symbol));
  result->setText(qt(title));
  result->setToolButtonStyle(symbol ? Qt::ToolButtonTextBesideIcon : Qt::ToolButtonTextOnly);
  result->setAutoRaise(true);
  result->setFocusPolicy(Qt::TabFocus);
  return result;
}

}  // namespace

ScriptBar::ScriptBar(const ScriptContext& context, ScriptDocument& document, QWidget* parent)
    : QWidget(parent),
      m_context(context),
      m_document(document),
      m_jobs(context.catalogue, context.repairs, context.platform, loginName()) {
  const ScriptTexts texts(context.foundation.localize);
  m_names = new QLabel(this);
  m_names->setWordWrap(true);
  m_names->setTextFormat(Qt::PlainText);
  m_run = button("media-playback-start", context.foundation.localize.run(), this);
  m_menu = new QMenu(m_run);
  connect(m_menu, &QMenu::aboutToShow, this, &ScriptBar::fillMenu);
  connect(m_run, &QToolButton::clicked, this, [this] {
    if (const Jobs all = m_jobs.jobs(); !all.empty()) emit runs(all.front());
  });
  m_check = button(nullptr, texts.checkSyntax(), this);
  connect(m_check, &QToolButton::clicked, this, &ScriptBar::checks);
  m_executable = new CheckBox(qt(texts.executable()), this);
  connect(m_executable, &QCheckBox::clicked, this, [this](bool isOn) { m_document.setExecutable(isOn); });
  auto* layout = new QHBoxLayout(this);
  layout->addWidget(m_names, 1);
  layout->addWidget(m_run);
  layout->addWidget(m_check);
  layout->addWidget(m_executable);
  m_linksRead = m_jobs.changed().subscribe([this] { refreshJobs(); });
  m_jobsUpdated = context.notifications.jobsUpdated.subscribe([this] { updateJobs(); });
  m_runsChanged = context.runs.changed().subscribe([this](const Jobs&) { refreshJobs(); });
  updateJobs();
}

void ScriptBar::updateJobs() {
  m_jobs.update({m_document.path(), m_document.openedPath()});
  refreshJobs();
}

void ScriptBar::refreshJobs() {
  m_names->setText(qt(mirvel::textOf(m_jobs.groups(), m_context.foundation.localize)));
  const Jobs all = m_jobs.jobs();
  m_run->setMenu(all.size() > 1 ? m_menu : nullptr);
  m_run->setPopupMode(all.size() > 1 ? QToolButton::InstantPopup : QToolButton::DelayedPopup);
  const std::string obstacle =
      all.size() == 1 ? m_context.control.obstacle(RunOrder::RunNow, *all.front()) : std::string();
  m_run->setVisible(!all.empty());
  m_run->setEnabled(obstacle.empty());
  m_run->setToolTip(qt(obstacle));
}

void ScriptBar::refresh() {
  const bool canCheck = m_document.canCheckSyntax();
  m_check->setEnabled(canCheck);
  m_check->setToolTip(canCheck ? QString() : qt(ScriptTexts(m_context.foundation.localize).noCheckFor()));
  setCheckedQuietly(*m_executable, m_document.isExecutable());
  m_executable->setEnabled(m_document.protection() != Protection::NotWritable);
}

void ScriptBar::fillMenu() {
  m_menu->clear();
  m_menu->setToolTipsVisible(true);
  for (const auto& job : m_jobs.jobs()) {
    const std::string obstacle = m_context.control.obstacle(RunOrder::RunNow, *job);
    QAction* const action = m_menu->addAction(literalTitle(qt(job->name)), this, [this, job] { emit runs(job); });
    action->setEnabled(obstacle.empty());
    action->setToolTip(qt(obstacle));
  }
}

}  // namespace mirvel::ui
