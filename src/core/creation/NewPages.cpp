#include "core/creation/NewPages.h"

#include "core/creation/CreationContext.h"
#include "core/creation/CreationTexts.h"
#include "core/files/URL.h"
#include "core/schedule/ScheduledController.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"

namespace mirvel {

void NewNamePage::setName(std::string text) {
  m_sheet.job.plist.name = std::move(text);
  m_sheet.notifyChanged();
}

void NewNamePage::kindChanged(int tag) {
  m_chosen = kindOfTag(tag);
  if (m_chosen) m_sheet.job.kind = *m_chosen;
  m_sheet.notifyChanged();
}

std::string NewWhatPage::title() const {
  return CreationTexts(m_sheet.context.foundation.localize).chooseWhatYouWantToRun() + ':';
}

void NewWhatPage::choose(New::Run run) {
  m_sheet.job.runPage = run;
  m_sheet.notifyChanged();
}

void NewWhenPage::runAtLoad(bool isOn) {
  m_sheet.job.plist.runAtLoad = isOn;
  m_sheet.notifyChanged();
}

void NewWhenPage::keepAlive(bool isOn) {
  if (isOn) {
    m_sheet.job.plist.keepAlive = jobfile::KeepAlive{.successfulExit = true};
  } else {
    m_sheet.job.plist.keepAlive.reset();
  }
  m_sheet.notifyChanged();
}

void NewWhenPage::scheduled(bool isOn) {
  m_sheet.job.isScheduled = isOn;
  if (isOn && m_editor && m_editor->numberOfRows() == 0) m_editor->addRow();
  m_sheet.notifyChanged();
}

std::string NewWhenPage::watchedFolder() const {
  const auto& paths = m_sheet.job.plist.watchPaths;
  if (!paths || paths->empty()) return {};
  return localizedDisplayPath(paths->front(), m_sheet.context.foundation.roots.home.native());
}

void NewWhenPage::chooseWatchedFolder(bool showsHiddenFiles) {
  const auto folder =
      m_sheet.context.platform.interface.openPanel({.choosesFolders = true, .showsHiddenFiles = showsHiddenFiles});
  if (!folder) return;
  m_sheet.job.plist.watchPaths = {folder->native()};
  m_sheet.notifyChanged();
}

void NewWhenPage::setRuleEditor(Scheduled::RuleEditor* editor) {
  keepRules();
  if (m_editor) {
    m_rows = m_editor->content();
    m_editor->setDelegate(nullptr);
  }
  m_editor = editor;
  if (!m_editor) return;
  fillEditor();
  m_editor->setDelegate(this);
}

void NewWhenPage::fillEditor() {
  if (m_rows.empty()) {
    m_sheet.context.scheduledController.load(m_sheet.job.rules, *m_editor);
  } else {
    m_editor->setContent(m_rows);
  }
}

std::optional<InvalidField> NewWhenPage::refuse() const {
  return isScheduled() && m_editor ? m_editor->refuse() : std::nullopt;
}

void NewWhenPage::applyRules(jobfile::Plist& plist) const {
  if (!isScheduled()) return;
  ScheduledController& controller = m_sheet.context.scheduledController;
  Scheduled::RuleEditor own(controller);  // used if the page has no editor
  if (!m_editor) controller.load(m_sheet.job.rules, own);
  Scheduled::apply((m_editor ? *m_editor : own).applied(), plist);
}

void NewWhenPage::keepRules() {
  if (m_editor) m_sheet.job.rules = m_editor->rules();
}

void NewWhenPage::reset() {
  m_rows.clear();
  if (m_editor) fillEditor();
}

void NewWhenPage::rulesDidChange() {
  // An empty schedule isn't one: the check box goes off, and checking it again adds a rule.
  if (m_editor && m_editor->numberOfRows() == 0) m_sheet.job.isScheduled = false;
  m_sheet.notifyChanged();
}

}  // namespace mirvel
