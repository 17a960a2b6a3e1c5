#pragma once

#include <QKeySequence>
#include <QList>
#include <QObject>
#include <functional>
#include <string>
#include <vector>

#include "ui/documents/ScriptContext.h"

class QAction;
class QMainWindow;
class QMenu;

namespace mirvel {
class ScriptDocument;
}

namespace mirvel::ui {

class EditScriptViewController;

/// The menu bar of a script's window, which owns this object.
class ScriptMenus final : public QObject {
  Q_OBJECT
 public:
  /// All must outlive this object.
  ScriptMenus(const ScriptContext& context, ScriptDocument& document, EditScriptViewController& content,
              QMainWindow& window);

  /// Updates which items are enabled and have a mark.
  void validate();

 private:
  QMenu* addMenu(const std::string& title);
  QMenu* addFilled(QMenu& menu, const std::string& title, const std::function<void(QMenu&)>& fill);
  QAction* add(QMenu& menu, const std::string& title, const QList<QKeySequence>& keys,
               const std::function<void()>& perform, const std::function<bool()>& isEnabled = {},
               const std::function<bool()>& isOn = {});
  void makeFileMenu();
  void makeEditMenu();
  void makeViewMenu();
  void makeScriptMenu();
  void goToLine();

  struct Item {
    QAction* action;
    std::function<bool()> isEnabled;
    std::function<bool()> isOn;
  };

  const ScriptContext& m_context;
  ScriptDocument& m_document;
  EditScriptViewController& m_content;
  QMainWindow& m_window;
  std::vector<Item> m_items;
};

}  // namespace mirvel::ui
