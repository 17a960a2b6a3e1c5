#pragma once

#include <optional>

#include "core/editor/GeneralRules.h"
#include "ui/editor/LaunchdViewController.h"
#include "ui/support/IconLoader.h"

class QPushButton;

namespace mirvel::ui {

/// A launchd job to be looked at, with the button that opens the editor.
class LaunchdDisplayViewController final : public LaunchdViewController {
 public:
  LaunchdDisplayViewController(Program& program, IconLoader& icons);

  /// Shows the selected job. What stays as it is keeps its place, and a text that is being copied its mark.
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

    bool operator==(const Shown&) const = default;
  };

  std::vector<StackEntry> entries(const Launchd& launchd) const override;
  Section* makeSection(StackSection section) override;

  IconLoader& m_icons;
  QPushButton* m_editButton;
  std::optional<Shown> m_shown;
  std::string m_shownPath;  ///< of the job that the sections are about, even if they are to be made anew
};

}  // namespace mirvel::ui
