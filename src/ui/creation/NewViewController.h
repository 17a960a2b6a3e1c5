#pragma once

#include "core/creation/NewController.h"
#include "ui/support/IconLoader.h"
#include "ui/support/SheetViewController.h"

class QPushButton;

namespace mirvel {
class Program;
}  // namespace mirvel

namespace mirvel::ui {

class NewTabViewController;
class PageBar;

/// The sheet that leads to a new job.
class NewViewController final : public SheetViewController {
  Q_OBJECT

 public:
  /// Deletes itself when it is closed. Program and icons outlive it.
  NewViewController(Program& program, IconLoader& icons, QWidget& window);
  ~NewViewController() override;

  NewController& controller() { return m_controller; }

 private:
  void addPages(Program& program, IconLoader& icons);
  QWidget* makeButtons(const Localize& localize);
  void next();
  void redraw();

  NewController m_controller;
  PageBar* m_pageBar;
  NewTabViewController* m_tabViewController;
  QPushButton* m_previousButton = nullptr;
  QPushButton* m_nextButton = nullptr;
};

}  // namespace mirvel::ui
