#pragma once

#include <QStackedWidget>

#include "core/creation/NewController.h"

namespace mirvel::ui {

/// A page of the sheet that creates a job.
class NewType : public QWidget {
 public:
  NewType(New::Page thePage, NewController& controller) : page(thePage), newController(controller) {}

  /// Updates the controls from the controller.
  virtual void redraw() = 0;
  /// Gives the focus to the control that is to be filled in first.
  virtual void focusOnFirst() = 0;
  /// Called before the page is shown, and before it is hidden or destroyed.
  virtual void appear() {}
  virtual void disappear() {}

  const New::Page page;

 protected:
  NewController& newController;
};

/// Contains the pages, and shows one of them.
class NewTabViewController final : public QStackedWidget {
 public:
  using QStackedWidget::QStackedWidget;

  NewType& selected() const { return *static_cast<NewType*>(currentWidget()); }
  /// Shows the page with this index, and gives it the focus. Does nothing if it is shown already.
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
