#pragma once

#include <vector>

#include "core/creation/NewController.h"
#include "ui/support/SheetViewController.h"

class QLabel;
class QPushButton;

namespace mirvel::ui {

class IconLoader;
class NewTabViewController;

/// The titles of all pages, with the current one marked.
class PageBar final : public QWidget {
 public:
  explicit PageBar(IconLoader& icons, QWidget* parent = nullptr);

  void draw(const std::vector<NewController::Cell>& cells);

 private:
  struct Labels {
    QLabel* mark;
    QLabel* text;
  };

  void addCell();

  IconLoader& m_icons;
  std::vector<Labels> m_cells;
};

/// The sheet that creates a new job, page by page.
class NewViewController final : public SheetViewController {
  Q_OBJECT

 public:
  /// Context and icons must outlive the sheet.
  NewViewController(const CreationContext& context, IconLoader& icons, QWidget& window);
  ~NewViewController() override;

  NewController& controller() { return m_controller; }

 private:
  void addPages(const CreationContext& context, IconLoader& icons);
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
