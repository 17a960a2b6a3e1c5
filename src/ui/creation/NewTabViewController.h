#pragma once

#include <QStackedWidget>

#include "ui/creation/NewType.h"

namespace mirvel::ui {

/// Holds the pages, and shows one of them.
class NewTabViewController final : public QStackedWidget {
 public:
  using QStackedWidget::QStackedWidget;

  NewType& selected() const { return *static_cast<NewType*>(currentWidget()); }
  /// Shows the page with that number, which gets the keys.
  void selectTab(int index) {
    if (index == m_shown) return;
    if (m_shown != none) selected().disappear();
    m_shown = index;
    setCurrentIndex(index);
    selected().appear();
    selected().redraw();
    selected().focusOnFirst();
  }

 private:
  static constexpr int none = -1;

  int m_shown = none;
};

}  // namespace mirvel::ui
