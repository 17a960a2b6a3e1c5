#pragma once

#include <QCheckBox>
#include <QPalette>

namespace mirvel::ui {

/// The palette for drawing the box of a check box or the circle of a radio button. Qt's Fusion style derives their
/// outline from the window colour, which makes an empty box almost invisible on dark windows.
QPalette boxPalette(QPalette palette);

/// A check box whose outline is visible with any palette, checked or not.
class CheckBox final : public QCheckBox {
 public:
  using QCheckBox::QCheckBox;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace mirvel::ui
