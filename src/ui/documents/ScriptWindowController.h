#pragma once

#include <QMainWindow>

#include "core/base/Signal.h"
#include "core/documents/ScriptView.h"
#include "ui/documents/ScriptContext.h"

namespace mirvel {
class ScriptDocument;
}

namespace mirvel::ui {

class EditScriptViewController;
class ScriptMenus;

/// The window of a script. While it is active, the Save command of the program saves its script.
class ScriptWindowController final : public QMainWindow, public ScriptView {
  Q_OBJECT
 public:
  /// Both must outlive the window.
  ScriptWindowController(const ScriptContext& context, ScriptDocument& document);
  ~ScriptWindowController() override;

  EditScriptViewController& content() { return *m_content; }

  std::string text() const override;
  void setText(std::shared_ptr<const std::string> text, std::function<void()> done) override;
  void replaceText(const std::string& text) override;
  bool isModified() const override;
  void setModified(bool isModified) override;
  void refresh() override;
  void bringToFront() override;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void enterShell();
  void leaveShell();
  void saveSize();

  const ScriptContext& m_context;
  ScriptDocument& m_document;
  EditScriptViewController* m_content = nullptr;
  ScriptMenus* m_menus = nullptr;
  bool m_isActive = false;
};

}  // namespace mirvel::ui
