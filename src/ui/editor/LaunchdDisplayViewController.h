#pragma once

#include <array>
#include <optional>
#include <string>

#include "core/editor/GeneralRules.h"
#include "core/runs/JobControl.h"
#include "core/runs/RunDetails.h"
#include "ui/editor/LaunchdViewController.h"

class QPushButton;

namespace mirvel::ui {

/// The read-only details of a launchd job, and a button that opens the editor.
class LaunchdDisplayViewController final : public LaunchdViewController {
 public:
  explicit LaunchdDisplayViewController(const EditorContext& context);

  /// Shows the selected job. Focus, selected text and scroll position are kept unless another job was shown before.
  void updateDetail();
  void updateIcon();
  void clearDetail();

 protected:
  void hideEvent(QHideEvent* event) override;

 private:
  struct Shown {
    std::string path;
    GeneralRules::Display general;
    jobfile::Plist record;
    RunDetails runs;
    std::array<std::string, allRunOrders.size()> orderObstacles;

    bool operator==(const Shown&) const = default;
  };

  std::vector<StackEntry> entries(const Launchd& launchd) const override;
  Section* makeSection(StackSection section) override;
  void runsChanged(const Jobs& jobs);

  ProblemsSummary* m_problems;
  Subscription m_problemsChanged;
  Subscription m_runsChanged;
  QPushButton* m_editButton;
  std::optional<Shown> m_shown;
};

}  // namespace mirvel::ui
