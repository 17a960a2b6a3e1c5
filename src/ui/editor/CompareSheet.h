#pragma once

#include <QDialog>
#include <functional>

#include "core/editor/EditController.h"
#include "core/locale/Localize.h"

namespace mirvel::ui {

/// Shows two versions of a job file side by side and asks which one to keep.
class CompareSheet final : public QDialog {
 public:
  /// Passes the answer to `completion` and deletes itself. Return, Escape and the close button choose neither.
  CompareSheet(const Localize& localize, const Versions& versions, std::function<void(VersionChoice)> completion,
               QWidget* window);

 private:
  QWidget* makeTexts(const Localize& localize, const Versions& versions);
};

}  // namespace mirvel::ui
