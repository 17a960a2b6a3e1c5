#include "ui/editor/RunsSection.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>

#include "core/mainwindow/MenuController.h"
#include "core/runs/FailedOutput.h"
#include "core/runs/RunStateTexts.h"
#include "core/session/Platform.h"
#include "core/session/Selection.h"
#include "ui/editor/SectionGrid.h"
#include "ui/support/FlowLayout.h"
#include "ui/support/IconLoader.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

namespace {

void showIcon(QLabel& label, const std::optional<Image>& image, IconLoader& icons) {
  const int side = label.style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, &label);
  label.setPixmap(image ? icons.icon(*image).pixmap(QSize(side, side), label.devicePixelRatioF()) : QPixmap());
}

double now(const EditorContext& context) {
  return context.platform.clock.secondsSince1970();
}

}  // namespace

RunsSection::RunsSection(const EditorContext& theContext)
    : Section(theContext),
      m_icon(new QLabel),  // without an accessible name, as the text says the same
      m_lines(new ValueText({})),
      m_output(new ValueText({})),
      m_outputChanged(theContext.failedOutput.changed().subscribe([this] { showOutput(); })) {
  const RunStateTexts texts(localize());
  auto* const grid = new SectionGrid(this);
  auto* const state = new QWidget;
  auto* const row = new QHBoxLayout(state);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(m_icon, 0, Qt::AlignTop);
  row->addWidget(m_lines, 1);
  m_lines->setAccessibleName(qt(texts.runs()));
  grid->addRow(*state);
  m_output->setCode();
  grid->addText(texts.lastOutput(), *m_output, 0);
  auto* const buttons = new QWidget;
  makeButtons(*buttons);
  grid->addRow(*buttons);
}

void RunsSection::makeButtons(QWidget& place) {
  const RunStateTexts texts(localize());
  m_run = new QPushButton(qt(texts.runNow()));
  m_disable = new QPushButton(qt(texts.disable()));
  m_log = new QPushButton(qt(texts.showLog()));
  auto* const flow = new FlowLayout(&place);
  flow->setContentsMargins(0, 0, 0, 0);
  for (QPushButton* const button : {m_run, m_disable, m_log}) flow->addWidget(button);
  connect(m_run, &QPushButton::clicked, this,
          [this] { context().menus.perform(runCommand(context().menus.context())); });
  connect(m_disable, &QPushButton::clicked, this, [this] { context().menus.perform(Command::Disable); });
  connect(m_log, &QPushButton::clicked, this, [this] { context().menus.perform(Command::Log); });
}

void RunsSection::fill(const Launchd& launchd) {
  const RunDetails details = runDetails(launchd, context().runs, context().moments, now(context()), localize());
  showIcon(*m_icon, stateImage(details.state, localize()), context().icons);
  QStringList lines;
  for (const std::string& line : details.lines) lines << shownText(line);
  replaceText(*m_lines, lines.join(QLatin1Char('\n')));
  if (details.failedRun) {
    context().failedOutput.fetch(launchd, *details.failedRun);
  } else {
    context().failedOutput.clear();
  }
  showOutput();
  showButtons();
}

void RunsSection::showOutput() {
  QStringList lines;
  for (const QString& line : qt(context().failedOutput.text()).split(QLatin1Char('\n'))) {
    lines << shownText(utf8(line));
  }
  replaceText(*m_output, lines.join(QLatin1Char('\n')));
  m_output->setVisible(!context().failedOutput.text().empty());
}

void RunsSection::showButtons() {
  const RunStateTexts texts(localize());
  CommandContext commands = context().menus.context();
  commands.hasSheet = false;  // it covers the buttons, and nobody would enable them again when it is closed
  const Command command = runCommand(commands);
  m_run->setText(qt(command == Command::Stop      ? texts.stop()
                    : command == Command::Restart ? texts.restart()
                                                  : texts.runNow()));
  const bool canBeLoaded = commands.selected && commands.selected->canBeLoaded();
  m_run->setVisible(canBeLoaded);
  m_run->setEnabled(mirvel::isEnabled(command, commands));
  m_run->setToolTip(qt(whyDisabled(command, commands)));
  m_disable->setVisible(isShown(Command::Disable, commands));
  m_disable->setEnabled(mirvel::isEnabled(Command::Disable, commands));
  m_disable->setToolTip(qt(whyDisabled(Command::Disable, commands)));
  m_log->setVisible(canBeLoaded && context().menus.isOffered(Command::Log));
}

RunsLine::RunsLine(QWidget* parent) : QWidget(parent), m_icon(new QLabel), m_text(new ElidedLabel) {
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(0, SectionGrid::columnSpacing, 0, 0);  // the line is below the field of the search
  row->addWidget(m_icon);
  row->addWidget(m_text, 1);
  hide();
}

void RunsLine::update(const EditorContext& context) {
  const auto job = context.selection.launchd();
  const Localize& localize = context.foundation.localize;
  const std::string text = job ? runSummary(*job, context.runs, context.moments, now(context), localize) : "";
  if (job) showIcon(*m_icon, stateImage(context.runs.state(*job), localize), context.icons);
  m_text->setFullText(shownText(text));
  setVisible(!text.empty());
}

}  // namespace mirvel::ui
