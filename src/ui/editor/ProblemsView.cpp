#include "ui/editor/ProblemsView.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "ui/support/Controls.h"
#include "ui/support/IconLoader.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

/// Drawn at each paint, since the colour of a symbol follows the palette.
class WarningMark final : public QWidget {
 public:
  WarningMark() {
    const int side = fontMetrics().height();
    setFixedSize(side, side);
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    IconLoader::symbol("dialog-warning").paint(&painter, rect());
  }
};

bool isSameLine(const FieldProblem& a, const FieldProblem& b) {
  return a.text == b.text && a.fixTitle == b.fixTitle;
}

}  // namespace

ProblemsView::ProblemsView(QWidget* parent) : QWidget(parent) {
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(style()->pixelMetric(QStyle::PM_DefaultFrameWidth));
  hide();
}

void ProblemsView::setProblems(std::vector<FieldProblem> problems) {
  const bool isSame = std::equal(problems.begin(), problems.end(), m_problems.begin(), m_problems.end(), isSameLine);
  m_problems = std::move(problems);
  if (isSame) return;
  for (QWidget* const line : std::exchange(m_lines, {})) discard(line);
  for (std::size_t i = 0; i < m_problems.size(); ++i) {
    m_lines.push_back(makeLine(i));
    layout()->addWidget(m_lines.back());
  }
  setVisible(!m_problems.empty());
}

QWidget* ProblemsView::makeLine(std::size_t index) {
  const FieldProblem& problem = m_problems[index];
  auto* const line = new QWidget;
  auto* const layout = new QHBoxLayout(line);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(new WarningMark, 0, Qt::AlignTop);
  auto* const text = new ValueText(qt(problem.text));
  text->setAccessibleName(qt(problem.text));
  layout->addWidget(text, 1);
  if (problem.fixTitle.empty()) return line;
  auto* const button = new QPushButton(literalTitle(qt(problem.fixTitle)));
  button->setAccessibleDescription(qt(problem.text));
  connect(button, &QPushButton::clicked, this, [this, index] {
    const auto fix = m_problems[index].fix;  // the fix may replace the lines
    fix();
  });
  layout->addWidget(button, 0, Qt::AlignTop);
  return line;
}

}  // namespace mirvel::ui
