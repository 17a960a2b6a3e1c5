#pragma once

#include <QDialog>
#include <string>

#include "core/settings/Defaults.h"

namespace mirvel::ui {

/// A sheet on the main window: keeps all else from being used, and goes when it is closed. The size that the user gives
/// it is kept under its frame name.
class SheetViewController : public QDialog {
 public:
  void done(int result) override;

 protected:
  /// The window owns the sheet; the settings outlive it.
  SheetViewController(QWidget& window, Defaults& defaults, const char* frameName);

  /// Gives it the size that it had last, or else this one. For a sheet that the user can size.
  void restoreSize(QSize usual);

 private:
  Defaults& m_defaults;
  const std::string m_key;
  bool m_hasSize = false;
};

}  // namespace mirvel::ui
