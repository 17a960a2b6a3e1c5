#pragma once

#include <QStackedWidget>
#include <functional>

#include "core/session/DetailType.h"
#include "ui/editor/EditorContext.h"

namespace mirvel::ui {

class JobDetailsView;
class LaunchdDisplayViewController;
class LaunchdEditViewController;

/// The details pane, with a tab for each kind of view. Is `shell.detail` during its lifetime, and opens the
/// information sheet.
class DetailViewController final : public QStackedWidget, private DetailType {
 public:
  explicit DetailViewController(const EditorContext& context, QWidget* parent = nullptr);
  ~DetailViewController() override;

  const LaunchdEditViewController& editor() const { return *m_edit; }

  std::function<void()> focusLeft;  ///< moves the focus elsewhere, as the focused widget is about to be removed

 private:
  void updateDetail() override;
  void clearDetail() override;
  void updateIcon() override;
  DetailTab detailTab() const override { return m_detailTab; }
  void showDisplay() override;
  void showEdit() override;

  void showInfo();
  QWidget* childOf(DetailTab tab) const;
  void show(DetailTab tab);
  void updateTab();
  void passFocusOn() const;

  const EditorContext m_context;
  DetailTab m_detailTab = DetailTab::NoSelection;
  QWidget* m_noSelection;
  LaunchdDisplayViewController* m_display;
  LaunchdEditViewController* m_edit;
  JobDetailsView* m_otherJob;
};

}  // namespace mirvel::ui
