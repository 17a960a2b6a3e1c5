#pragma once

#include <string>
#include <vector>

#include "core/editor/JobDetails.h"
#include "ui/editor/EditorContext.h"
#include "ui/editor/SectionGrid.h"

namespace mirvel::ui {

class GeneralDisplaySection;
class ValueText;

/// The read-only details of a job of another kind than launchd's.
class JobDetailsView final : public StackScrollView {
 public:
  explicit JobDetailsView(const EditorContext& context);

  /// Shows the selected job. Scroll position and selected text are kept unless another job was shown before.
  void updateDetail();
  void updateIcon() { updateDetail(); }

 private:
  void make(const std::vector<JobDetails::Row>& rows);

  const EditorContext m_context;
  std::string m_path;                 ///< of the shown job
  std::vector<std::string> m_labels;  ///< of its rows
  GeneralDisplaySection* m_general = nullptr;
  std::vector<ValueText*> m_values;  ///< one for each label
};

}  // namespace mirvel::ui
