#pragma once

#include <QDialog>
#include <functional>

#include "core/app/Program.h"
#include "core/editor/EditController.h"

namespace mirvel::ui {

/// Two versions of a job file side by side, of which the user chooses one.
class CompareSheet final : public QDialog {
 public:
  /// `completion` gets the answer, and the sheet goes. Return, Escape and the close button choose neither.
  CompareSheet(Program& program, const Versions& versions, std::function<void(Choice)> completion, QWidget* window);

 private:
  QWidget* makeTexts(const Localize& localize, const Versions& versions);
};

}  // namespace mirvel::ui
