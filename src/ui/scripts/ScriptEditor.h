#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "core/scripts/SyntaxType.h"

class QWidget;

namespace mirvel::ui {

struct ScriptLook;

/// The widget in a `ScriptText` that shows and edits the text. It is a child of another, which deletes it. What is the
/// same for all of them is said and done there.
///
/// The bytes of the text stay as they are, line ends and what isn't UTF-8 included; new lines end as the first one
/// does. Keys that leave the widget are those of `exitOf`.
class ScriptEditor {
 public:
  ScriptEditor() = default;
  virtual ~ScriptEditor() = default;
  ScriptEditor(const ScriptEditor&) = delete;
  ScriptEditor& operator=(const ScriptEditor&) = delete;

  /// Has the slots `undo`, `redo`, `cut`, `copy`, `paste` and `selectAll`.
  virtual QWidget& widget() = 0;

  virtual std::string bytes() const = 0;
  /// Sets the whole text, unmodified and with nothing to be undone, and the insertion point to its start. `changed` is
  /// called once, unless the text was empty and still is.
  virtual void setBytes(std::string_view text) = 0;
  virtual bool isModified() const = 0;
  virtual void setModified(bool modified) = 0;

  /// Bytes before the insertion point.
  virtual std::size_t insertionPoint() const = 0;
  /// Moves it, with nothing selected, and scrolls there. A point behind the text is its end, one within a character is
  /// behind that.
  virtual void setInsertionPoint(std::size_t point) = 0;

  virtual bool canUndo() const = 0;
  virtual bool canRedo() const = 0;
  virtual bool hasSelection() const = 0;
  virtual void deleteSelection() = 0;

  /// Text, insertion point and what can be undone stay with each of these. An editor may have no colours.
  virtual void setSyntax(SyntaxType type) = 0;
  virtual void setLook(const ScriptLook& look) = 0;
  virtual void setLineNumbersVisible(bool visible) = 0;

  /// Called when the text has changed.
  std::function<void()> changed = {};

 protected:
  void tellOfChange() const {
    if (changed) changed();
  }
};

}  // namespace mirvel::ui
