#pragma once

#include <QPlainTextEdit>

#include "ui/scripts/ScriptEditor.h"

namespace mirvel::ui {

/// Edits a script without colours and line numbers; used when the module isn't available. With a selection, Tab and
/// Shift-Tab indent and unindent its lines.
class PlainEditor final : public QPlainTextEdit, public ScriptEditor {
  Q_OBJECT
 public:
  explicit PlainEditor(QWidget* parent = nullptr);

  QWidget& widget() override { return *this; }
  std::string bytes() const override;
  void setBytes(std::string_view text) override;
  bool isModified() const override { return document()->isModified(); }
  void setModified(bool modified) override { document()->setModified(modified); }
  std::size_t insertionPoint() const override;
  void setInsertionPoint(std::size_t point) override;
  bool canUndo() const override { return document()->isUndoAvailable(); }
  bool canRedo() const override { return document()->isRedoAvailable(); }
  bool hasSelection() const override { return textCursor().hasSelection(); }
  void deleteSelection() override { textCursor().removeSelectedText(); }
  void setSyntax(SyntaxType) override {}
  void setLook(const ScriptLook& look) override;
  void setLineNumbersVisible(bool) override {}
  void setWrapsLines(bool wraps) override { setLineWrapMode(wraps ? WidgetWidth : NoWrap); }
  void setEditable(bool editable) override;
  void markLine(std::optional<std::size_t> point) override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  bool isSelectionOfLines() const;
  void moveLines(bool right);
  QTextCursor cursorAt(std::size_t point) const;
  void showMark();

  std::string m_lineEnd = "\n";
  QColor m_markColor;
  QTextCursor m_mark;  ///< null if no line is marked
};

}  // namespace mirvel::ui
