#pragma once

#include <optional>
#include <vector>

#include "core/editor/GeneralRules.h"
#include "core/editor/JobDetails.h"
#include "ui/editor/EditorContext.h"
#include "ui/editor/StackScrollView.h"

namespace mirvel::ui {

/// The read-only details of a job that isn't launchd's.
class JobDetailsView final : public StackScrollView {
 public:
  explicit JobDetailsView(const EditorContext& context);

  /// Shows the selected job. If nothing has changed, scroll position and selected text stay.
  void updateDetail();
  void updateIcon();

 private:
  struct Shown {
    GeneralRules::Display general;
    std::vector<JobDetails::Row> rows;

    bool operator==(const Shown&) const = default;
  };

  void show(const Shown& content);

  const EditorContext m_context;
  std::optional<Shown> m_shown;
};

}  // namespace mirvel::ui
