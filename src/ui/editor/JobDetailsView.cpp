#include "ui/editor/JobDetailsView.h"

#include <QHBoxLayout>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "core/editor/EditorTexts.h"
#include "core/mainwindow/MainWindowController.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "core/session/Selection.h"
#include "core/text/Strings.h"
#include "ui/editor/GeneralSection.h"
#include "ui/scripts/ScriptLook.h"
#include "ui/scripts/ScriptModule.h"
#include "ui/support/Controls.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

namespace {

using Row = JobDetails::Row;

/// The height of a script, which scrolls beyond that.
int heightOf(const Row& row) {
  constexpr std::size_t columns = 36;  // that usually fit into a line of the pane
  constexpr std::size_t fewest = 3;
  constexpr std::size_t most = 20;
  std::size_t lines = 0;
  for (const auto line : String::split(row.text, '\n')) {
    lines += 1 + line.size() / columns;
    if (lines >= most) break;
  }
  return static_cast<int>(std::clamp(lines, fewest, most)) * QFontMetrics(scriptFont()).lineSpacing();
}

bool hasSameForm(const Row& a, const Row& b) {
  return a.label == b.label && a.style == b.style && a.button == b.button;
}

}  // namespace

JobDetailsValue::JobDetailsValue(const EditorContext& context, const Row& row) : m_context(context), m_row(row) {
  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  if (row.style == Row::Style::Script) {
    makeScript(row);
    layout->addWidget(m_script, 1);
  } else {
    m_text = new ValueText({});
    if (row.style == Row::Style::Code) m_text->setCode();
    m_text->setAccessibleName(qt(row.label));
    layout->addWidget(m_text, 1, Qt::AlignTop);
  }
  if (row.button != Row::Button::None) makeButton();
  setFont(m_text ? m_text->font() : scriptFont());
}

void JobDetailsValue::makeScript(const Row& row) {
  m_script = makeScriptText(m_context.platform.console, m_context.foundation.localize, qt(row.label), this);
  m_script->setLineNumbersVisible(false);
  m_script->setWrapsLines(true);
  m_script->setEditable(false);
}

void JobDetailsValue::makeButton() {
  auto* const button = symbolButton("folder-open", m_context.foundation.localize.revealInFinder());
  button->setAccessibleDescription(qt(m_row.label));
  connect(button, &QToolButton::clicked, this, [this] { reveal(); });
  layout()->addWidget(button);
  layout()->setAlignment(button, Qt::AlignTop);
}

void JobDetailsValue::reveal() {
  const auto job = m_context.selection.job();
  if (m_row.button == Row::Button::Path) {
    m_context.platform.workspace.reveal(URL::file(m_row.path));
  } else if (job) {
    m_context.mainWindow.revealInFinder(*job);
  }
}

void JobDetailsValue::show(const Row& row) {
  m_row = row;
  if (m_text) {
    replaceText(*m_text, shownText(row.text));
    m_text->setToolTip(shownToolTip(row.path));
    return;
  }
  const std::string text = utf8(shownText(row.text));
  m_script->setSyntax(row.syntax);
  if (m_script->text() != text) m_script->setText(text);
  m_script->setFixedHeight(heightOf(row) + m_script->minimumSizeHint().height() / 2);
}

JobDetailsView::JobDetailsView(const EditorContext& context)
    : StackScrollView(qt(EditorTexts(context.foundation.localize).details())), m_context(context) {}

void JobDetailsView::updateDetail() {
  const auto job = m_context.selection.job();
  if (!job) return;
  const Foundation& foundation = m_context.foundation;
  auto rows = JobDetails::rows(*job, m_context.kinds, foundation.localize, foundation.roots.home.native());
  // Refilled in place for the same job, so that selected text and scroll position survive a scan.
  const bool isSame = std::equal(rows.begin(), rows.end(), m_rows.begin(), m_rows.end(), hasSameForm);
  if (m_path != job->url.text() || !isSame) make(rows);
  m_path = job->url.text();
  m_rows = std::move(rows);
  GeneralRules::Display display = GeneralRules::display(*job, m_context.kinds, foundation.localize);
  display.run.clear();  // the rows show it in more detail
  m_general->show(display);
  for (std::size_t i = 0; i < m_rows.size(); ++i) m_values[i]->show(m_rows[i]);
}

void JobDetailsView::make(const std::vector<Row>& rows) {
  auto* stack = new QWidget;
  auto* layout = new QVBoxLayout(stack);
  layout->setContentsMargins(SectionGrid::paneMargins());
  layout->setSpacing(SectionGrid::sectionSpacing);
  m_general = new GeneralDisplaySection(m_context);
  layout->addWidget(m_general);
  auto* rowsView = new QWidget;
  auto* grid = new SectionGrid(rowsView);
  m_values.clear();
  for (const Row& row : rows) {
    grid->addText(row.label, *m_values.emplace_back(new JobDetailsValue(m_context, row)), 0);
  }
  layout->addWidget(rowsView);
  layout->addStretch();
  setWidget(stack);
}

}  // namespace mirvel::ui
