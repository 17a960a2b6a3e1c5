#pragma once

#include <QWidget>
#include <array>
#include <cstdint>
#include <functional>

#include "core/text/Octal.h"

class QCheckBox;
class QGridLayout;
class QLabel;
class QLineEdit;

namespace mirvel {
class Localize;
}

namespace mirvel::ui {

/// A file mode creation mask: the octal number, a box for each permission, ticked if the mask withholds it, and a line
/// with the permissions that new files and folders have.
class MaskControl final : public QWidget {
 public:
  /// Takes ownership of the field for the number. `name` and `help` are those of the field, for the boxes.
  MaskControl(QLineEdit& text, const std::string& name, std::string_view help, const Localize& localize);

  /// Called when the user has clicked a box, with the permissions that are withheld now. Required.
  std::function<void(const Octal::Mask& mask)> clicked;

  /// Shows a mask in the boxes and in the line below, which is hidden while the number isn't valid.
  void setMask(std::int64_t mask, bool isValid);

 private:
  void addBoxes(QGridLayout& grid, const std::string& name, std::string_view help);
  Octal::Mask mask() const;

  const Localize& m_localize;
  std::array<std::array<QCheckBox*, 3>, 3> m_boxes;  ///< by class of users; each for reading, writing, executing
  QLabel* m_preview;
};

}  // namespace mirvel::ui
