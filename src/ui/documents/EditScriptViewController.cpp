#include "ui/documents/EditScriptViewController.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/documents/ScriptDocument.h"
#include "core/documents/ScriptTexts.h"
#include "core/runs/JobControl.h"
#include "core/runs/JobRuns.h"
#include "core/session/Foundation.h"
#include "core/session/Notifications.h"
#include "core/session/Platform.h"
#include "ui/documents/FindBar.h"
#include "ui/documents/ScriptBar.h"
#include "ui/documents/ScriptStatusLine.h"
#include "ui/scripts/ScriptModule.h"
#include "ui/scripts/ScriptSettings.h"
#include "ui/scripts/ScriptText.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

EditScriptViewController::EditScriptViewController(const ScriptContext& context, ScriptDocument& document,
                                                   QWidget* parent)
    : QWidget(parent), m_context(context), m_document(document) {
  const Localize& localize = context.foundation.localize;
  m_bar = new ScriptBar(context, document, this);
  connect(m_bar, &ScriptBar::runs, this, &EditScriptViewController::run);
  connect(m_bar, &ScriptBar::checks, this, &EditScriptViewController::checkSyntax);
  makeNotice();
  m_text = makeScriptText(context.platform.console, localize, qt(document.name()), this);
  m_findBar = new FindBar(localize, *m_text, this);
  m_status = new ScriptStatusLine(context, document, *m_text, this);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(m_bar);
  layout->addWidget(m_notice);
  layout->addWidget(new Hairline(this));
  layout->addWidget(m_text, 1);
  layout->addWidget(m_findBar);
  layout->addWidget(new Hairline(this));
  layout->addWidget(m_status);
  connect(m_text, &ScriptText::textChanged, m_status, [this] { m_status->setMessage({}); });
  connect(m_text, &ScriptText::syntaxChanged, this, [this] { m_document.setSyntax(m_text->syntax()); });
  m_settingsChanged = context.foundation.defaults.changed().subscribe([this](const std::string&) { applyWrap(); });
  applyWrap();
  followLineNumbers(*m_text, context.foundation.defaults);
}

void EditScriptViewController::makeNotice() {
  m_notice = new QWidget(this);
  m_notice->setAutoFillBackground(true);
  m_notice->setBackgroundRole(QPalette::ToolTipBase);
  m_noticeText = new QLabel(m_notice);
  m_noticeText->setForegroundRole(QPalette::ToolTipText);
  m_noticeText->setWordWrap(true);
  m_noticeText->setTextFormat(Qt::PlainText);
  m_noticeButton = new QPushButton(qt(ScriptTexts(m_context.foundation.localize).useUnixLineEnds()), m_notice);
  connect(m_noticeButton, &QPushButton::clicked, this, [this] { m_document.convertLineEnds(LineEnd::Unix); });
  auto* layout = new QHBoxLayout(m_notice);
  layout->addWidget(m_noticeText, 1);
  layout->addWidget(m_noticeButton);
}

void EditScriptViewController::applyWrap() {
  m_text->setWrapsLines(m_context.foundation.defaults.boolean(Defaults::Key::wrapScripts));
}

void EditScriptViewController::setText(std::shared_ptr<const std::string> text, std::function<void()> done) {
  m_text->setDetectsSyntax(false);
  m_text->setColoured(!m_document.isLarge());
  m_text->setIndentation(m_document.form().indentsByTabs, m_document.form().indentation);
  m_text->setSyntax(m_document.syntax());
  m_text->setTextInPieces(std::move(text), [this, done = std::move(done)] {
    m_text->setDetectsSyntax(!m_document.isLarge());
    done();
  });
}

void EditScriptViewController::refresh() {
  m_text->setEditable(m_document.canSave());
  m_text->setSyntax(m_document.syntax());
  m_bar->refresh();
  m_status->refresh();
  refreshNotice();
}

void EditScriptViewController::refreshNotice() {
  const std::string notice = m_document.notice();
  m_noticeText->setText(qt(notice));
  m_noticeButton->setVisible(m_document.needsUnixLineEnds());
  m_notice->setVisible(!notice.empty());
}

void EditScriptViewController::checkSyntax() {
  const ScriptTexts texts(m_context.foundation.localize);
  if (!m_document.canCheckSyntax()) return m_status->setMessage(qt(texts.noCheckFor()));
  m_document.checkSyntax([this, texts](const std::optional<SyntaxProblem>& problem) {
    if (!problem) return m_status->setMessage(qt(texts.noProblemsFound()));
    if (problem->line > 0) {
      m_text->goToLine(static_cast<int>(problem->line));
      m_text->markLine(m_text->insertionPoint());
    }
    m_status->setMessage(qt(problem->message));
  });
}

void EditScriptViewController::run(const std::shared_ptr<Job>& job) {
  m_document.beforeRun([this, job] {
    if (m_context.control.obstacle(RunOrder::RunNow, *job).empty()) m_context.control.give(RunOrder::RunNow, job);
  });
}

}  // namespace mirvel::ui
