#include "ui/editor/ProblemsView.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "core/catalogue/Launchd.h"
#include "core/editor/EditorTexts.h"
#include "core/editor/JobProblems.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "core/session/Selection.h"
#include "core/text/Bidirectional.h"
#include "ui/editor/EditorContext.h"
#include "ui/editor/SectionGrid.h"
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

/// A sentence with a button beside it or, where that would leave too little room, below it.
class ProblemLine final : public QWidget {
 public:
  ProblemLine(QWidget& text, QWidget& button) : m_layout(new QBoxLayout(QBoxLayout::LeftToRight, this)) {
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->addWidget(&text, 1);
    m_layout->addWidget(&button, 0, Qt::AlignTop | Qt::AlignLeading);
  }

 protected:
  void resizeEvent(QResizeEvent* event) override {
    QWidget::resizeEvent(event);
    constexpr int charactersPerLine = 45;
    const bool isNarrow = width() < fontMetrics().averageCharWidth() * charactersPerLine;
    m_layout->setDirection(isNarrow ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
  }

 private:
  QBoxLayout* m_layout;
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
  if (problem.fixTitle.empty()) {
    layout->addWidget(text, 1);
    return line;
  }
  auto* const button = new QPushButton(literalTitle(qt(problem.fixTitle)));
  button->setAccessibleDescription(qt(problem.text));
  connect(button, &QPushButton::clicked, this, [this, index] {
    const auto fix = m_problems[index].fix;  // the fix may replace the lines
    fix();
  });
  layout->addWidget(new ProblemLine(*text, *button), 1);
  return line;
}

std::vector<FieldProblem> fieldProblems(const EditorContext& context) {
  const Localize& localize = context.foundation.localize;
  const auto job = context.selection.launchd();
  const bool isEditable = job && job->kind.isEditable(context.foundation.defaults.editSystemJobs());
  std::vector<FieldProblem> result;
  for (const lint::Finding& finding : context.problems.findings()) {
    FieldProblem problem{.key = finding.field(), .text = finding.clause.sentence(localize)};
    const bool isOfPart = finding.keyPath != problem.key && !finding.keyPath.ends_with('.' + problem.key);
    if (isOfPart) problem.text = bidirectionalString({finding.keyPath, problem.text}, ": ", localize.isRightToLeft());
    if (finding.fix && isEditable) {
      problem.fixTitle = finding.fix->title.title(localize);
      problem.fix = [context, fix = *finding.fix] {
        if (applyFix(context, context.saving, fix)) return;
        const EditorTexts texts(context.foundation.localize);
        context.platform.interface.error(texts.theProblemCouldntBeResolved(),
                                         texts.theJobHasChangedSinceItWasChecked());
      };
    }
    result.push_back(std::move(problem));
  }
  return result;
}

std::vector<FieldProblem> withKeys(std::vector<FieldProblem> problems, bool isRightToLeft) {
  for (FieldProblem& problem : problems) {
    const bool isNamed = problem.key.empty() || problem.text.find(problem.key) != std::string::npos;
    if (!isNamed) problem.text = bidirectionalString({problem.key, problem.text}, ": ", isRightToLeft);
  }
  return problems;
}

ProblemsSummary::ProblemsSummary(const EditorContext& context)
    : m_button(new QToolButton), m_problems(new ProblemsView) {
  m_button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  m_button->setIcon(IconLoader::symbol("dialog-warning"));
  m_button->setAutoRaise(true);
  m_button->setCheckable(true);
  m_button->setAccessibleName(qt(EditorTexts(context.foundation.localize).problems()));
  auto* const layout = new QVBoxLayout(this);
  const QMargins margins = SectionGrid::paneMargins();
  layout->setContentsMargins(margins.left(), SectionGrid::sectionSpacing, margins.right(), 0);
  layout->addWidget(m_button, 0, Qt::AlignLeading);
  layout->addWidget(m_problems);
  connect(m_button, &QToolButton::toggled, this, [this, context] { update(context); });
  update(context);
}

void ProblemsSummary::update(const EditorContext& context) {
  m_button->setText(qt(problemSummary(context.problems.findings(), context.foundation.localize)));
  m_button->setAccessibleDescription(m_button->text());
  m_problems->setProblems(m_button->isChecked() ? withKeys(fieldProblems(context), isRightToLeft())
                                                : std::vector<FieldProblem>());
  setVisible(!context.problems.findings().empty());
}

}  // namespace mirvel::ui
