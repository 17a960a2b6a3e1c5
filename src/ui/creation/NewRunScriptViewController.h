#pragma once

#include <QLabel>
#include <QVBoxLayout>
#include <QWidget>

#include "core/app/Program.h"
#include "core/creation/RunChoosers.h"
#include "ui/creation/ElidedButton.h"
#include "ui/scripts/ScriptText.h"

namespace mirvel::ui {

/// The page that chooses a script for a new job, or has one written. The widget for its text is made when the first one
/// is written.
class NewRunScriptViewController final : public QWidget {
 public:
  /// Both outlive the page.
  NewRunScriptViewController(Program& program, NewRunScript& script, QWidget* parent = nullptr);

  /// Shows the script as it is now. To be called when the sheet tells of a change; the page's own operations do so.
  void redraw();
  /// Gives the focus to the text, or else to the first button.
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

  Program& m_program;
  NewRunScript& m_script;
  ElidedButton* m_choose;
  QPushButton* m_createNew;
  QPushButton* m_save;
  QLabel* m_hint;
  QVBoxLayout* m_layout;
  ScriptText* m_text = nullptr;  ///< null: none was written yet
};

}  // namespace mirvel::ui
