#pragma once

#include <QKeySequence>
#include <QObject>
#include <string>
#include <vector>

#include "core/locale/Localize.h"

class QAction;
class QMenu;

namespace mirvel::ui {

/// A command that every text widget has.
struct TextCommand {
  std::string title;
  const char* slot;  ///< slot of the text widget
  QKeySequence::StandardKey key;
  const char* symbol = nullptr;
};

/// Undo, Redo, Cut, Copy, Paste and Select All, in this order.
std::vector<TextCommand> textCommands(const Localize& localize);

/// Adds a command to a menu, with a separator after Redo. The shortcut is only displayed, because text widgets handle
/// it themselves.
QAction* addTextCommand(QMenu& menu, const TextCommand& command);

/// Keeps the keys that delete text in an editable field from triggering menu shortcuts of the same keys, which would
/// delete jobs.
class TextKeys final : public QObject {
 public:
  /// Filters the events of all widgets of the application for as long as it exists.
  explicit TextKeys(QObject* parent);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace mirvel::ui
