#pragma once

#include <QCheckBox>
#include <QPalette>

namespace mirvel::ui {

/// The palette to draw the box of a check box, or the circle of a radio button, with. Qt's own style derives its
/// outline from the window's colour, which leaves next to nothing of an empty box on a dark one.
QPalette boxPalette(QPalette palette);

/// A check box that is seen in any palette, ticked or not.
class CheckBox final : public QCheckBox {
 public:
  using QCheckBox::QCheckBox;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace mirvel::ui
