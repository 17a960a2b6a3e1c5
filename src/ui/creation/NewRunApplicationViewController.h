#pragma once

#include <QWidget>

#include "core/creation/ApplicationList.h"
#include "core/creation/RunChoosers.h"
#include "core/locale/Localize.h"
#include "ui/support/IconLoader.h"

class QLabel;
class QLineEdit;

namespace mirvel {
class Program;
}  // namespace mirvel

namespace mirvel::ui {

class ApplicationModel;
class ApplicationView;
class ElidedLabel;

/// Chooses the application that a new job runs: of those that are installed, or any program file.
class NewRunApplicationViewController final : public QWidget {
 public:
  NewRunApplicationViewController(Program& program, NewRunApplication& chooser, IconLoader& icons);

  /// Looks for the applications.
  void appear();
  void redraw();

 private:
  void layOut();
  void showMatching();
  void choose(const QModelIndex& index);
  bool eventFilter(QObject* watched, QEvent* event) override;

  const Localize& m_localize;
  NewRunApplication& m_chooser;
  ApplicationList m_list;
  QLineEdit* m_filter;
  ApplicationModel* m_model;
  ApplicationView* m_view;
  ElidedLabel* m_shown;
  QLabel* m_shownTitle = nullptr;
};

}  // namespace mirvel::ui
