#include "ui/documents/ScriptMenus.h"

#include <QAction>
#include <QApplication>
#include <QInputDialog>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <limits>

#include "core/documents/ScriptDocuments.h"
#include "core/documents/ScriptTexts.h"
#include "core/mainwindow/MainMenuTexts.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "core/session/Shell.h"
#include "ui/documents/DocumentMenus.h"
#include "ui/documents/EditScriptViewController.h"
#include "ui/documents/FindBar.h"
#include "ui/scripts/ScriptEditor.h"
#include "ui/scripts/ScriptText.h"
#include "ui/support/Controls.h"
#include "ui/support/QtText.h"
#include "ui/support/TextCommands.h"

namespace mirvel::ui {

ScriptMenus::ScriptMenus(const ScriptContext& context, ScriptDocument& document, EditScriptViewController& content,
                         QMainWindow& window)
    : QObject(&window), m_context(context), m_document(document), m_content(content), m_window(window) {
  makeFileMenu();
  makeEditMenu();
  makeViewMenu();
  makeScriptMenu();
  for (QMenu* menu : window.menuBar()->findChildren<QMenu*>()) menu->setAccessibleName(menu->title());
}

QMenu* ScriptMenus::addMenu(const std::string& title) {
  QMenu* const menu = m_window.menuBar()->addMenu(qt(title));
  connect(menu, &QMenu::aboutToShow, this, &ScriptMenus::validate);
  return menu;
}

QMenu* ScriptMenus::addFilled(QMenu& menu, const std::string& title, const std::function<void(QMenu&)>& fill) {
  QMenu* const submenu = menu.addMenu(qt(title));
  connect(submenu, &QMenu::aboutToShow, this, [submenu, fill] {
    submenu->clear();
    fill(*submenu);
  });
  return submenu;
}

QAction* ScriptMenus::add(QMenu& menu, const std::string& title, const QList<QKeySequence>& keys,
                          const std::function<void()>& perform, const std::function<bool()>& isEnabled,
                          const std::function<bool()>& isOn) {
  QAction* const action = menu.addAction(qt(title));
  action->setShortcuts(keys);
  action->setCheckable(static_cast<bool>(isOn));
  connect(action, &QAction::triggered, this, [this, perform] {
    perform();
    validate();
  });
  m_items.push_back({action, isEnabled, isOn});
  return action;
}

void ScriptMenus::validate() {
  for (const Item& item : m_items) {
    if (item.isEnabled) item.action->setEnabled(item.isEnabled());
    if (item.isOn) item.action->setChecked(item.isOn());
  }
}

void ScriptMenus::makeFileMenu() {
  const Localize& localize = m_context.foundation.localize;
  const ScriptTexts texts(localize);
  QMenu* const menu = addMenu(texts.file());
  add(*menu, MainMenuTexts(localize).editScript(), {QKeySequence::Open}, [this] { m_context.shell.chooseScript(); });
  addFilled(*menu, texts.recentScripts(), [this](QMenu& recent) { fillRecentScripts(recent, m_context); });
  menu->addSeparator();
  const auto canSave = [this] { return m_document.canSave(); };
  add(
      *menu, texts.save(), {QKeySequence::Save}, [this] { m_document.save(); }, canSave);
  add(
      *menu, texts.reload(), {QKeySequence::Refresh}, [this] { m_document.reload(); },
      [this] { return !m_document.isLoading() && !m_document.isSaving(); });
  addFilled(*menu, texts.reopenWith(),
            [this, &localize](QMenu& encodings) { fillReopenWith(encodings, m_document, localize); });
  QMenu* const saving = addFilled(
      *menu, texts.saveWith(), [this, &localize](QMenu& encodings) { fillSaveWith(encodings, m_document, localize); });
  connect(menu, &QMenu::aboutToShow, saving, [saving, canSave] { saving->setEnabled(canSave()); });
  addFilled(*menu, texts.revisions(),
            [this, &localize](QMenu& revisions) { fillRevisions(revisions, m_document, localize); });
  menu->addSeparator();
  add(
      *menu, texts.print(), {QKeySequence::Print}, [this] { m_content.text().print(qt(m_document.name())); },
      [this] { return m_content.text().canPrint() && !m_document.isLoading(); });
  menu->addSeparator();
  add(*menu, texts.close(), {QKeySequence::Close}, [this] { m_window.close(); });
}

void ScriptMenus::makeEditMenu() {
  const Localize& localize = m_context.foundation.localize;
  const ScriptTexts texts(localize);
  QMenu* const menu = addMenu(texts.edit());
  for (const TextCommand& command : textCommands(localize)) {
    QAction* const action = addTextCommand(*menu, command);
    connect(action, &QAction::triggered, this, [slot = command.slot] {
      if (QWidget* const focus = QApplication::focusWidget()) QMetaObject::invokeMethod(focus, slot);
    });
  }
  menu->addSeparator();
  FindBar& bar = m_content.findBar();
  add(*menu, texts.find(), {QKeySequence::Find}, [&bar] { bar.open(); });
  add(*menu, texts.findNext(), QKeySequence::keyBindings(QKeySequence::FindNext), [&bar] { bar.findNext(); });
  add(*menu, texts.findPrevious(), QKeySequence::keyBindings(QKeySequence::FindPrevious),
      [&bar] { bar.findPrevious(); });
  add(*menu, texts.goToLine(), {Qt::CTRL | Qt::Key_L}, [this] { goToLine(); });
  menu->addSeparator();
  QMenu* const lineEnds = addFilled(*menu, texts.convertLineEnds(),
                                    [this, &localize](QMenu& choices) { fillLineEnds(choices, m_document, localize); });
  connect(menu, &QMenu::aboutToShow, lineEnds,
          [lineEnds, this] { lineEnds->setEnabled(m_document.canSave() && !m_document.isLarge()); });
}

void ScriptMenus::goToLine() {
  bool isChosen = false;
  const QString title = qt(ScriptTexts(m_context.foundation.localize).lineNumber());
  ScriptText& text = m_content.text();
  const int line = QInputDialog::getInt(&m_window, title, title, text.position().line, 1,
                                        std::numeric_limits<int>::max(), 1, &isChosen);
  if (isChosen) text.goToLine(line);
}

void ScriptMenus::makeViewMenu() {
  const ScriptTexts texts(m_context.foundation.localize);
  Defaults& defaults = m_context.foundation.defaults;
  QMenu* const menu = addMenu(texts.view());
  const auto addSetting = [&](const std::string& title, std::string_view key) {
    add(
        *menu, title, {}, [&defaults, key] { (void)defaults.negate(key); },  // failures have been reported
        {}, [&defaults, key] { return defaults.boolean(key); });
  };
  addSetting(texts.lineNumbers(), Defaults::Key::showLineNumbers);
  addSetting(texts.wrapLines(), Defaults::Key::wrapScripts);
  addFilled(*menu, texts.language(),
            [this](QMenu& languages) { fillLanguages(languages, m_document, m_content.text()); });
  menu->addSeparator();
  ScriptText& text = m_content.text();
  add(*menu, texts.zoomIn(), {QKeySequence::ZoomIn, Qt::CTRL | Qt::Key_Equal}, [&text] { text.zoom(1); });
  add(*menu, texts.zoomOut(), {QKeySequence::ZoomOut}, [&text] { text.zoom(-1); });
  add(*menu, texts.actualSize(), {Qt::CTRL | Qt::Key_0}, [&text] { text.zoom(0); });
}

void ScriptMenus::makeScriptMenu() {
  const ScriptTexts texts(m_context.foundation.localize);
  QMenu* const menu = addMenu(texts.script());
  add(
      *menu, texts.checkSyntaxItem(), {Qt::CTRL | Qt::Key_K}, [this] { m_content.checkSyntax(); },
      [this] { return m_document.canCheckSyntax(); });
  add(
      *menu, texts.executable(), {}, [this] { m_document.setExecutable(!m_document.isExecutable()); },
      [this] { return m_document.protection() != Protection::NotWritable; },
      [this] { return m_document.isExecutable(); });
  add(*menu, m_context.foundation.localize.revealInFinder(), {Qt::CTRL | Qt::SHIFT | Qt::Key_R},
      [this] { m_context.platform.workspace.reveal(URL::file(m_document.path())); });
}

}  // namespace mirvel::ui
