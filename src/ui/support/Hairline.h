#pragma once

#include <QWidget>

namespace mirvel::ui {

/// A thin line across, seen on windows of any palette.
class Hairline final : public QWidget {
 public:
  explicit Hairline(QWidget* parent = nullptr);

  QSize sizeHint() const override { return {1, 1}; }

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace mirvel::ui
