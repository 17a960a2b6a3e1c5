#pragma once

#include <QRadioButton>

namespace mirvel::ui {

/// A radio button whose outline is visible with any palette, checked or not.
class RadioButton final : public QRadioButton {
 public:
  using QRadioButton::QRadioButton;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace mirvel::ui
