#include "ui/editor/DetailViewController.h"

#include <utility>

#include "core/editor/EditorTexts.h"
#include "core/editor/JobDetails.h"
#include "core/mainwindow/MainWindowController.h"
#include "core/session/Editing.h"
#include "core/session/Foundation.h"
#include "core/session/Selection.h"
#include "core/session/Shell.h"
#include "core/text/Strings.h"
#include "ui/editor/InfoTextSheet.h"
#include "ui/editor/JobDetailsView.h"
#include "ui/editor/LaunchdDisplayViewController.h"
#include "ui/editor/LaunchdEditViewController.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

// In pixels; sections that need more make the pane wider.
constexpr int narrowest = 420;

QWidget* makeNoSelection(const Localize& localize) {
  auto* label = new SecondaryLabel(qt(String::firstUppercased(EditorTexts(localize).noSelection())));
  label->setMinimumWidth(narrowest);
  label->setAlignment(Qt::AlignCenter);
  QFont font = label->font();
  font.setPointSizeF(font.pointSizeF() * 1.5);
  label->setFont(font);
  return label;
}

}  // namespace

DetailViewController::DetailViewController(const EditorContext& context, QWidget* parent)
    : QStackedWidget(parent),
      m_context(context),
      m_noSelection(makeNoSelection(context.foundation.localize)),
      m_display(new LaunchdDisplayViewController(context)),
      m_edit(new LaunchdEditViewController(context)),
      m_otherJob(new JobDetailsView(context)) {
  for (QWidget* const tab : {m_noSelection, static_cast<QWidget*>(m_display), static_cast<QWidget*>(m_edit),
                             static_cast<QWidget*>(m_otherJob)}) {
    addWidget(tab);
  }
  setAccessibleName(qt(EditorTexts(context.foundation.localize).details()));
  m_context.shell.detail = this;
  m_context.shell.sheets[Sheet::Info] = [this] { showInfo(); };
}

DetailViewController::~DetailViewController() {
  m_context.shell.detail = nullptr;
  m_context.shell.sheets.erase(Sheet::Info);
}

/// Does nothing while the window has a sheet.
void DetailViewController::showInfo() {
  const MainWindowType* const mainWindow = m_context.shell.mainWindow;
  const auto job = m_context.selection.job();
  if (!job || (mainWindow && mainWindow->hasSheet())) return;
  if (m_context.shell.edit) m_context.shell.edit->endEditing();  // the sheet shows what has been typed
  openInfoSheet(m_context, job, *window());
}

QWidget* DetailViewController::childOf(DetailTab tab) const {
  switch (tab) {
    case DetailTab::LaunchdDisplay:
      return m_display;
    case DetailTab::LaunchdEdit:
      return m_edit;
    case DetailTab::LoginItem:
    case DetailTab::StartupItem:
    case DetailTab::PrivilegedHelperTool:
      return m_otherJob;
    case DetailTab::NoSelection:
      break;
  }
  return m_noSelection;
}

void DetailViewController::show(DetailTab tab) {
  if (tab != m_detailTab && tab != DetailTab::LaunchdEdit) passFocusOn();
  setCurrentWidget(childOf(tab));
  const DetailTab before = std::exchange(m_detailTab, tab);
  if (before == tab) return;
  if (before == DetailTab::LaunchdEdit) m_edit->clearDetail();  // otherwise discarded input could come back
  m_context.mainWindow.updateTitle();
  if (m_context.shell.mainWindow) m_context.shell.mainWindow->validateVisibleItems();  // the commands depend on the tab
}

/// To be called before the focused widget is removed: Qt would move the focus to an arbitrary widget of the next tab,
/// or to none.
void DetailViewController::passFocusOn() const {
  const QWidget* const focus = window()->focusWidget();
  if (focusLeft && (!focus || isAncestorOf(focus))) focusLeft();
}

void DetailViewController::updateTab() {
  switch (m_detailTab) {
    case DetailTab::NoSelection:
      return;
    case DetailTab::LaunchdDisplay:
      return m_display->updateDetail();
    case DetailTab::LaunchdEdit:
      return m_edit->updateDetail();
    case DetailTab::LoginItem:
    case DetailTab::StartupItem:
    case DetailTab::PrivilegedHelperTool:
      return m_otherJob->updateDetail();
  }
}

void DetailViewController::updateDetail() {
  show(detailTabFor(m_context.selection.job().get(), m_context.editing.hasUnsavedChanges()));
  updateTab();
}

void DetailViewController::clearDetail() {
  passFocusOn();
  m_display->clearDetail();
  m_edit->clearDetail();
  if (m_context.shell.edit) m_context.shell.edit->updateButtons();
  show(DetailTab::NoSelection);
}

void DetailViewController::updateIcon() {
  m_display->updateIcon();
  m_otherJob->updateIcon();
  m_edit->updateIcon();
}

void DetailViewController::showDisplay() {
  m_context.editing.reset();
  if (!m_context.selection.job()) return updateDetail();
  show(DetailTab::LaunchdDisplay);
  updateTab();
}

void DetailViewController::showEdit() {
  const bool isEntering = m_detailTab != DetailTab::LaunchdEdit;
  show(DetailTab::LaunchdEdit);
  updateTab();
  if (isEntering) m_edit->focusOnFirst();
}

}  // namespace mirvel::ui
