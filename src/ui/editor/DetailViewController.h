#pragma once

#include <QStackedWidget>
#include <functional>

#include "core/app/Program.h"
#include "ui/support/IconLoader.h"

namespace mirvel::ui {

class JobDetailsView;
class LaunchdDisplayViewController;
class LaunchdEditViewController;

/// What the window shows of the selected job: a tab for each form of it.
class DetailViewController final : public QStackedWidget, private DetailType {
 public:
  DetailViewController(Program& program, IconLoader& icons, QWidget* parent = nullptr);
  ~DetailViewController() override;

  const LaunchdEditViewController& editor() const { return *m_edit; }

  std::function<void()> keysLeft;  ///< what had the keys goes: they are to go elsewhere

 private:
  void updateDetail() override;
  void clearDetail() override;
  void updateIcon() override;
  DetailTab detailTab() const override { return m_detailTab; }
  void showDisplay() override;
  void showEdit() override;

  QWidget* childOf(DetailTab tab) const;
  void show(DetailTab tab);
  void updateTab();
  void passKeysOn() const;

  Program& m_program;
  DetailTab m_detailTab = DetailTab::noSelection;
  QWidget* m_noSelection;
  LaunchdDisplayViewController* m_display;
  LaunchdEditViewController* m_edit;
  JobDetailsView* m_otherJob;
};

}  // namespace mirvel::ui
