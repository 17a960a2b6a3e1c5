#pragma once

#include <QWidget>
#include <vector>

#include "core/creation/NewController.h"
#include "ui/support/IconLoader.h"

class QLabel;

namespace mirvel::ui {

/// The pages of a sheet: which one the user is on, and what comes before and behind it.
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

}  // namespace mirvel::ui
