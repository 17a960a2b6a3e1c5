#pragma once

#include <QPlainTextEdit>
#include <map>
#include <string>

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
  void replaceBytes(std::string_view text) override;
  void beginBytes() override { m_pieces.clear(); }
  void appendBytes(std::string_view piece) override { m_pieces += piece; }
  void endBytes(std::string_view lineEnd) override;
  bool isModified() const override { return document()->isModified(); }
  void setModified(bool modified) override { document()->setModified(modified); }
  std::size_t insertionPoint() const override;
  void setInsertionPoint(std::size_t point) override;
  TextPosition position() const override;
  void goToLine(int line) override;
  bool find(const TextSearch& search, bool isBackwards) override;
  bool replace(const TextSearch& search, std::string_view replacement) override;
  int replaceAll(const TextSearch& search, std::string_view replacement) override;
  bool canUndo() const override { return document()->isUndoAvailable(); }
  bool canRedo() const override { return document()->isRedoAvailable(); }
  bool hasSelection() const override { return textCursor().hasSelection(); }
  void deleteSelection() override { textCursor().removeSelectedText(); }
  void setSyntax(SyntaxType) override {}
  void setLook(const ScriptLook& look) override;
  void setColoured(bool) override {}
  void setIndentation(bool byTabs, int columns) override;
  void zoom(int points) override;
  bool print(const QString&, const QString&) override { return false; }
  bool canPrint() const override { return false; }
  void setLineNumbersVisible(bool) override {}
  void setWrapsLines(bool wraps) override { setLineWrapMode(wraps ? WidgetWidth : NoWrap); }
  void setEditable(bool editable) override;
  void markLine(std::optional<std::size_t> point) override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  bool isSelectionOfLines() const;
  void moveLines(bool right);
  QTextCursor matchAfter(const TextSearch& search, const QTextCursor& from, bool isBackwards) const;
  QString replacementOf(const QTextCursor& match, const TextSearch& search, std::string_view replacement) const;
  int replaceInLines(QTextCursor& edit, const TextSearch& search, std::string_view replacement) const;
  const std::string& lineEnd() const;
  void forgetLineEndsFrom(int steps);
  QTextCursor cursorAt(std::size_t point) const;
  void showMark();

  /// By the number of steps that can be undone: how lines end from there on. So, undoing a conversion undoes it.
  std::map<int, std::string> m_lineEnds = {{0, "\n"}};
  std::string m_pieces;  ///< until the text is complete
  QString m_indentation = QStringLiteral("\t");
  int m_zoom = 0;  ///< in points
  QColor m_markColor;
  QTextCursor m_mark;  ///< null if no line is marked
};

}  // namespace mirvel::ui
