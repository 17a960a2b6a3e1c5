#pragma once

#include <functional>
#include <memory>
#include <string>

namespace mirvel {

/// The window of a script, as seen by the core. Implemented by the shell; for the main thread.
class ScriptView {
 public:
  ScriptView() = default;
  virtual ~ScriptView() = default;
  ScriptView(const ScriptView&) = delete;
  ScriptView& operator=(const ScriptView&) = delete;

  /// The text as it is now, in UTF-8. Not to be called before `setText` has finished.
  virtual std::string text() const = 0;
  /// Replaces the text, and then calls `done`; a large text is inserted in pieces, so that the window stays usable. The
  /// text counts as unmodified, and can't be edited until then.
  virtual void setText(std::shared_ptr<const std::string> text, std::function<void()> done) = 0;
  /// Replaces the text as an edit that can be undone.
  virtual void replaceText(const std::string& text) = 0;
  /// Whether the text has been edited since the last call of `setText` or `setModified(false)`, not counting edits that
  /// have been undone.
  virtual bool isModified() const = 0;
  virtual void setModified(bool isModified) = 0;
  /// The state of the document has changed.
  virtual void refresh() = 0;
  virtual void bringToFront() = 0;
};

}  // namespace mirvel
