#pragma once

#include <QWidget>
#include <functional>
#include <string>
#include <vector>

class QToolButton;

namespace mirvel::ui {

/// A problem of the selected job, as lint has found it.
struct FieldProblem {
  std::string key;            ///< of the field; empty for a problem of the whole job
  std::string text;           ///< a localized sentence
  std::string fixTitle = {};  ///< of a button that resolves the problem; empty if there is none
  std::function<void()> fix = {};
};

struct EditorContext;

/// The problems of the selected job. A problem of a part of the key's value names that part.
std::vector<FieldProblem> fieldProblems(const EditorContext& context);
/// The problems for a place that doesn't show their keys, each with its key.
std::vector<FieldProblem> withKeys(std::vector<FieldProblem> problems, bool isRightToLeft);

/// Lines with problems: a quiet mark, a sentence that can be copied, and a button if the problem can be resolved.
/// Hidden while there are none.
class ProblemsView final : public QWidget {
 public:
  explicit ProblemsView(QWidget* parent = nullptr);

  /// Replaces the lines. Lines with the same texts keep their widgets, and so the focus.
  void setProblems(std::vector<FieldProblem> problems);

 private:
  QWidget* makeLine(std::size_t index);

  std::vector<FieldProblem> m_problems;
  std::vector<QWidget*> m_lines;
};

/// One line such as "2 warnings" above the details of a job, which shows the problems below it when it is clicked.
/// Hidden while there are none.
class ProblemsSummary final : public QWidget {
 public:
  explicit ProblemsSummary(const EditorContext& context);

  void update(const EditorContext& context);

 private:
  QToolButton* m_button;
  ProblemsView* m_problems;
};

}  // namespace mirvel::ui
