#pragma once

#include <QRadioButton>

namespace mirvel::ui {

/// A radio button that is seen in any palette, on or not.
class RadioButton final : public QRadioButton {
 public:
  using QRadioButton::QRadioButton;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace mirvel::ui
