#include "ui/documents/ScriptBar.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QToolButton>

#include "core/documents/ScriptDocument.h"
#include "core/documents/ScriptJobs.h"
#include "core/documents/ScriptTexts.h"
#include "core/process/UserEntry.h"
#include "core/runs/JobControl.h"
#include "core/session/Catalogue.h"
#include "core/session/Foundation.h"
#include "ui/support/Controls.h"
#include "ui/support/IconLoader.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

std::vector<ScriptJobs> jobsOf(const ScriptContext& context, const ScriptDocument& document) {
  return jobsOfScript(context.catalogue.jobs(), {document.path(), document.openedPath()}, context.repairs, loginName());
}

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
    : QWidget(parent), m_context(context), m_document(document) {
  const ScriptTexts texts(context.foundation.localize);
  m_jobs = new QLabel(this);
  m_jobs->setWordWrap(true);
  m_jobs->setTextFormat(Qt::PlainText);
  m_run = button("media-playback-start", context.foundation.localize.run(), this);
  m_menu = new QMenu(m_run);
  connect(m_menu, &QMenu::aboutToShow, this, &ScriptBar::fillMenu);
  connect(m_run, &QToolButton::clicked, this, [this] {
    if (const Jobs all = jobs(); !all.empty()) emit runs(all.front());
  });
  m_check = button(nullptr, texts.checkSyntax(), this);
  connect(m_check, &QToolButton::clicked, this, &ScriptBar::checks);
  m_executable = new CheckBox(qt(texts.executable()), this);
  connect(m_executable, &QCheckBox::clicked, this, [this](bool isOn) { m_document.setExecutable(isOn); });
  auto* layout = new QHBoxLayout(this);
  layout->addWidget(m_jobs, 1);
  layout->addWidget(m_run);
  layout->addWidget(m_check);
  layout->addWidget(m_executable);
}

Jobs ScriptBar::jobs() const {
  Jobs result;
  for (const ScriptJobs& group : jobsOf(m_context, m_document)) {
    result.insert(result.end(), group.jobs.begin(), group.jobs.end());
  }
  return result;
}

void ScriptBar::refresh() {
  m_jobs->setText(qt(mirvel::textOf(jobsOf(m_context, m_document), m_context.foundation.localize)));
  const Jobs all = jobs();
  m_run->setMenu(all.size() > 1 ? m_menu : nullptr);
  m_run->setPopupMode(all.size() > 1 ? QToolButton::InstantPopup : QToolButton::DelayedPopup);
  const std::string obstacle =
      all.size() == 1 ? m_context.control.obstacle(RunOrder::RunNow, *all.front()) : std::string();
  m_run->setVisible(!all.empty());
  m_run->setEnabled(obstacle.empty());
  m_run->setToolTip(qt(obstacle));
  m_check->setEnabled(m_document.canCheckSyntax());
  m_check->setToolTip(m_document.canCheckSyntax() ? QString()
                                                  : qt(ScriptTexts(m_context.foundation.localize).noCheckFor()));
  setCheckedQuietly(*m_executable, m_document.isExecutable());
  m_executable->setEnabled(m_document.protection() != Protection::NotWritable);
}

void ScriptBar::fillMenu() {
  m_menu->clear();
  m_menu->setToolTipsVisible(true);
  for (const auto& job : jobs()) {
    const std::string obstacle = m_context.control.obstacle(RunOrder::RunNow, *job);
    QAction* const action = m_menu->addAction(literalTitle(qt(job->name)), this, [this, job] { emit runs(job); });
    action->setEnabled(obstacle.empty());
    action->setToolTip(qt(obstacle));
  }
}

}  // namespace mirvel::ui
