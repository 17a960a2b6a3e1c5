#pragma once

#include <QKeyEvent>

namespace mirvel::ui {

/// Where a key goes to from the text of a script instead of changing it.
enum class Exit { None, Next, Previous };

/// Tab is text, so there are other ways out: with Control it goes to the next widget, with Shift to the one before, but
/// for a text that moves its selected lines to the left by that.
inline Exit exitOf(const QKeyEvent& event, bool movesSelection) {
  if (event.key() != Qt::Key_Tab && event.key() != Qt::Key_Backtab) return Exit::None;
  const bool isBack = event.key() == Qt::Key_Backtab || event.modifiers().testFlag(Qt::ShiftModifier);
  const bool isControl = (event.modifiers() & (Qt::ControlModifier | Qt::MetaModifier)) != Qt::NoModifier;
  if (!isControl && (!isBack || movesSelection)) return Exit::None;
  return isBack ? Exit::Previous : Exit::Next;
}

}  // namespace mirvel::ui
