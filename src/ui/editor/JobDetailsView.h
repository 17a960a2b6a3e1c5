#pragma once

#include <optional>
#include <vector>

#include "core/editor/GeneralRules.h"
#include "core/editor/JobDetails.h"
#include "ui/editor/StackScrollView.h"
#include "ui/support/IconLoader.h"

namespace mirvel::ui {

/// A job that isn't launchd's, to be looked at.
class JobDetailsView final : public StackScrollView {
 public:
  JobDetailsView(Program& program, IconLoader& icons);

  /// Shows the selected job. What stays as it is keeps its place, and a text that is being copied its mark.
  void updateDetail();
  void updateIcon();

 private:
  struct Shown {
    GeneralRules::Display general;
    std::vector<JobDetails::Row> rows;

    bool operator==(const Shown&) const = default;
  };

  void show(const Shown& content);

  Program& m_program;
  IconLoader& m_icons;
  std::optional<Shown> m_shown;
};

}  // namespace mirvel::ui
