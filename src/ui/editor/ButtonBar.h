#pragma once

#include <QWidget>

class QHBoxLayout;

namespace mirvel::ui {

/// The line of buttons below the details, apart from what scrolls above it.
class ButtonBar final : public QWidget {
 public:
  explicit ButtonBar(QWidget* parent = nullptr);

  QHBoxLayout& row() { return *m_row; }

 private:
  QHBoxLayout* m_row;
};

}  // namespace mirvel::ui
