#pragma once

#include <QDialog>
#include <QList>
#include <optional>
#include <string>

#include "core/settings/Defaults.h"

namespace mirvel::ui {

/// A window-modal sheet of the main window that is deleted when it closes. If the user can resize it, its size is
/// stored under the frame name.
class SheetViewController : public QDialog {
 public:
  void done(int result) override;

 protected:
  /// `window` becomes the parent; `defaults` must outlive the sheet.
  SheetViewController(QWidget& window, Defaults& defaults, const char* frameName);

  /// Restores the stored size, or applies `usual` if there is none. Only for resizable sheets.
  void restoreSize(QSize usual);

 private:
  Defaults& m_defaults;
  const std::string m_key;
  bool m_hasSize = false;
};

/// Parses the numbers of a stored position or size. Returns an empty list if there is none or it is malformed.
QList<int> numbersIn(const std::optional<std::string>& text);
std::string textOf(const QList<int>& numbers);

}  // namespace mirvel::ui
