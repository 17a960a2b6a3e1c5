#pragma once

#include <QWidget>

#include "core/creation/RunChoosers.h"

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace mirvel::ui {

class ElidedButton;
class ScriptText;

/// Chooses the script that a new job runs, or lets the user write one. The editor for the text is created when it is
/// first needed, since it loads a module.
class NewRunScriptViewController final : public QWidget {
 public:
  /// Both must outlive the page.
  NewRunScriptViewController(const CreationContext& context, NewRunScript& script, QWidget* parent = nullptr);

  /// Updates the controls. To be called when the script has changed; the page's own controls do this themselves.
  void redraw();
  /// Gives the focus to the text if it is shown, otherwise to the first button.
  void focusOnFirst();

 private:
  QLayout* makeButtons();
  void makeText();
  void redrawButtons();
  void redrawText();
  void textHasChanged();
  void choose();
  void createNew();
  void save();

  const CreationContext& m_context;
  NewRunScript& m_script;
  ElidedButton* m_choose;
  QPushButton* m_createNew;
  QPushButton* m_save;
  QLabel* m_hint;
  QVBoxLayout* m_layout;
  ScriptText* m_text = nullptr;  ///< null until a script is written
};

}  // namespace mirvel::ui
