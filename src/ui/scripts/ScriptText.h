#pragma once

#include <QWidget>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "core/locale/Localize.h"
#include "core/scripts/SyntaxType.h"

namespace mirvel::ui {

class ScriptEditor;

/// The text of a script, to be read and edited: coloured by its language, in lines that aren't wrapped, from left to
/// right in windows of any direction. The bytes of the text stay as they are, line ends and what isn't UTF-8 included;
/// new lines end as the first one does. `makeScriptText` makes one.
///
/// Tab inserts one. Control-Tab leaves for the next widget, Shift-Tab (with nothing selected) for the one before.
class ScriptText final : public QWidget {
  Q_OBJECT
 public:
  /// Makes the editor within as a child of a widget.
  using MakeEditor = std::function<ScriptEditor&(QWidget&)>;

  /// `name` tells what this is to those who can't see it. `localize` outlives it.
  ScriptText(const MakeEditor& make, const Localize& localize, const QString& name, QWidget* parent = nullptr);
  ~ScriptText() override;

  /// In UTF-8, if it is a text.
  std::string text() const;
  /// Sets the whole text, unmodified and with nothing to be undone, and the insertion point to its start. `textChanged`
  /// is told once, unless the text was empty and still is.
  void setText(std::string_view text);
  bool isModified() const;
  void setModified(bool modified);

  SyntaxType syntax() const { return m_syntax; }
  /// Colours the text as one in that language. Insertion point and undo stay.
  void setSyntax(SyntaxType type);
  /// Whether each change of the text sets the syntax by its first line, if that tells one.
  void setDetectsSyntax(bool detects);

  /// Bytes of the text before the insertion point.
  std::size_t insertionPoint() const;
  /// Moves it, with nothing selected, and scrolls there. A point behind the text is its end, one within a character is
  /// behind that.
  void setInsertionPoint(std::size_t point);

  bool areLineNumbersVisible() const { return m_lineNumbers; }
  void setLineNumbersVisible(bool visible);

 signals:
  /// Told when the text has changed, by a call or by the user.
  void textChanged();
  /// Told when the syntax has changed, by a call or by what was typed.
  void syntaxChanged();

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void textHasChanged();
  void detectSyntax();
  void showMenu(QPoint position);

  const Localize& m_localize;
  ScriptEditor& m_editor;
  SyntaxType m_syntax = SyntaxType::none;
  bool m_detectsSyntax = false;
  bool m_lineNumbers = true;
};

}  // namespace mirvel::ui
