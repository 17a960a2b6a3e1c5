#pragma once

#include <string>
#include <vector>

#include "core/editor/JobDetails.h"
#include "ui/editor/EditorContext.h"
#include "ui/editor/SectionGrid.h"

namespace mirvel::ui {

class GeneralDisplaySection;
class ScriptText;
class ValueText;

/// The value of a row of details: a text or a script, with a button that reveals what it is about.
class JobDetailsValue final : public QWidget {
 public:
  /// A value in the form that the row has. Its text has yet to be shown.
  JobDetailsValue(const EditorContext& context, const JobDetails::Row& row);

  /// Shows another row of the same form. Scroll position and selected text are kept if the text is the same.
  void show(const JobDetails::Row& row);

 private:
  void makeScript(const JobDetails::Row& row);
  void makeButton();
  void reveal();

  const EditorContext m_context;
  JobDetails::Row m_row;
  ValueText* m_text = nullptr;     ///< null for a script
  ScriptText* m_script = nullptr;  ///< null for a text
};

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
  std::string m_path;                   ///< of the shown job
  std::vector<JobDetails::Row> m_rows;  ///< as shown
  GeneralDisplaySection* m_general = nullptr;
  std::vector<JobDetailsValue*> m_values;  ///< one for each row
};

}  // namespace mirvel::ui
