#pragma once

#include <QWidget>

#include "core/creation/NewController.h"

namespace mirvel::ui {

/// A page of the sheet that makes a new job.
class NewType : public QWidget {
 public:
  NewType(New::Page thePage, NewController& controller) : page(thePage), newController(controller) {}

  /// Shows what the job is by now.
  virtual void redraw() = 0;
  /// Gives the focus to what is to be filled in first.
  virtual void focusOnFirst() = 0;
  /// The page comes to be shown, and goes.
  virtual void appear() {}
  virtual void disappear() {}

  const New::Page page;

 protected:
  NewController& newController;
};

}  // namespace mirvel::ui
