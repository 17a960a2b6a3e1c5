#include "ui/runs/LogSheet.h"

#include <QAction>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>
#include <utility>

#include "core/ports/Workspace.h"
#include "core/runs/LogTexts.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "ui/runs/LogTable.h"
#include "ui/support/Controls.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"
#include "ui/support/TextCommands.h"

namespace mirvel::ui {

namespace {

QComboBox* popUpButton(const char* name, const std::string& title) {
  auto* const button = new QComboBox;
  button->setObjectName(QLatin1String(name));
  button->setToolTip(qt(title));
  button->setAccessibleName(qt(title));
  guardFromWheel(*button);
  return button;
}

/// Return must neither close the sheet nor start another query while a filter is typed.
QPushButton* plainButton(const char* name, const std::string& title) {
  auto* const button = new QPushButton(literalTitle(qt(title)));
  button->setObjectName(QLatin1String(name));
  button->setAutoDefault(false);
  return button;
}

ElidedLabel* titleLabel(const std::string& title) {
  auto* const label = new ElidedLabel;
  label->setObjectName(QStringLiteral("logTitleTextField"));
  QFont bold = label->font();
  bold.setBold(true);
  label->setFont(bold);
  label->setFullText(shownText(title));
  return label;
}

QProgressBar* busyIndicator() {
  auto* const bar = new QProgressBar;
  bar->setObjectName(QStringLiteral("progressIndicator"));
  bar->setRange(0, 0);
  bar->setTextVisible(false);
  constexpr int widthInCharacters = 12;
  bar->setFixedWidth(bar->fontMetrics().averageCharWidth() * widthInCharacters);
  QSizePolicy policy = bar->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  bar->setSizePolicy(policy);
  return bar;
}

/// Identifies a row in the log, also after sorting. A gap has the number of the line after it.
std::int64_t identity(const LogRow& row) {
  return 2 * row.number + (row.kind == LogRow::Kind::Gap ? 1 : 0);
}

}  // namespace

LogSheet::LogSheet(const SessionContext& session, ActionController& actions, const Job& job, QWidget& window)
    : SheetViewController(window, session.foundation.defaults, "LogSheet"),
      m_session(session),
      m_log(session, actions, job),
      m_model(new LogTableModel(m_log, session.foundation.localize)),
      m_table(new LogTable),
      m_length(popUpButton("lengthPopUpButton", LogTexts(session.foundation.localize).length())),
      m_period(popUpButton("periodPopUpButton", LogTexts(session.foundation.localize).timePeriod())),
      m_refreshCancel(plainButton("refreshCancelButton", {})),
      m_progress(busyIndicator()),
      m_filter(filterField(session.foundation.localize)),
      m_follow(new CheckBox(qt(LogTexts(session.foundation.localize).follow()))),
      m_status(new SecondaryLabel({})) {
  setWindowTitle(shownText(m_log.title()).simplified());
  m_status->setObjectName(QStringLiteral("status"));
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(titleLabel(m_log.title()));
  layout->addLayout(makePeriod());
  layout->addWidget(makeTable(), 1);
  layout->addWidget(m_status);
  layout->addLayout(makeButtons());
  addShortcuts();
  m_stateChanged = m_log.stateChanged().subscribe([this] { showState(); });
  m_rowsWillChange = m_log.rowsWillChange().subscribe([this] { rememberView(); });
  m_rowsChanged = m_log.rowsChanged().subscribe([this](const LogChange& change) { showRows(change); });
  showState();
  restoreSize({fontMetrics().averageCharWidth() * 140, fontMetrics().lineSpacing() * 32});
  m_table->setFocus();
}

// Hiding arranges the table once more, which needs the log.
LogSheet::~LogSheet() {
  hide();
}

QHBoxLayout* LogSheet::makePeriod() {
  const Localize& localize = m_session.foundation.localize;
  const Defaults& defaults = m_session.foundation.defaults;
  for (const auto number : logLengths) m_length->addItem(qt(localize.int_(number)));
  const auto units = localize.lowercase();
  for (const auto& unit : {units.minutes(), units.hours(), units.days()}) m_period->addItem(qt(unit));
  m_length->setCurrentIndex(defaults.logLength() < m_length->count() ? static_cast<int>(defaults.logLength()) : 0);
  m_period->setCurrentIndex(defaults.logPeriod() < m_period->count() ? static_cast<int>(defaults.logPeriod()) : 1);
  m_filter->setObjectName(QStringLiteral("filterSearchField"));
  constexpr int fewestCharacters = 20;
  m_filter->setMinimumWidth(m_filter->fontMetrics().averageCharWidth() * fewestCharacters);
  connect(m_refreshCancel, &QPushButton::clicked, this, [this] { m_log.isRunning() ? m_log.cancel() : refresh(); });
  connect(m_filter, &QLineEdit::textChanged, this, [this](const QString& text) { m_log.setFilter(utf8(text)); });
  auto* const layout = new QHBoxLayout;
  layout->addWidget(m_length);
  layout->addWidget(m_period);
  layout->addWidget(m_refreshCancel);
  layout->addWidget(m_progress);
  layout->addStretch();
  layout->addWidget(m_filter, 2);
  return layout;
}

QWidget* LogSheet::makeTable() {
  const Localize& localize = m_session.foundation.localize;
  m_model->setParent(m_table);
  m_table->setModel(m_model);
  m_table->setObjectName(QStringLiteral("tableView"));
  m_table->setAccessibleName(qt(LogTexts(localize).log()));
  m_table->emptyLabel = [this] { return m_log.isRunning() ? QString() : qt(m_session.foundation.localize.noItems()); };
  const LogRow sample{.seconds = m_session.platform.clock.secondsSince1970()};
  m_table->header()->resizeSection(
      0, fontMetrics().horizontalAdvance(qt(m_log.date(sample))) + fontMetrics().averageCharWidth() * 8);
  connect(m_table->header(), &QHeaderView::sortIndicatorChanged, this, &LogSheet::sort);
  for (const TextCommand& command : textCommands(localize)) {
    if (command.key != QKeySequence::Copy && command.key != QKeySequence::SelectAll) continue;
    auto* const action = new QAction(qt(command.title), m_table);
    action->setShortcuts(command.key);
    action->setShortcutContext(Qt::WidgetShortcut);
    connect(action, &QAction::triggered, this,
            [this, isCopy = command.key == QKeySequence::Copy] { isCopy ? copy() : m_table->selectAll(); });
    m_table->addAction(action);
  }
  m_table->setContextMenuPolicy(Qt::ActionsContextMenu);
  return m_table;
}

QHBoxLayout* LogSheet::makeButtons() {
  const LogTexts texts(m_session.foundation.localize);
  m_follow->setObjectName(QStringLiteral("followCheckBox"));
  setHelp(*m_follow, texts.followHelp());
  connect(m_follow, &QCheckBox::toggled, this, [this](bool isOn) { m_log.setFollowing(isOn); });
  auto* const layout = new QHBoxLayout;
  layout->addWidget(m_follow);
  addOpenButtons(*layout);
  layout->addStretch();
  auto* const done = plainButton("doneButton", texts.done());
  connect(done, &QPushButton::clicked, this, &QDialog::accept);
  layout->addWidget(done);
  return layout;
}

void LogSheet::addOpenButtons(QHBoxLayout& layout) {
  for (const auto& file : m_log.outputFiles()) {
    auto* const button = plainButton("openButton", file.title);
    button->setToolTip(shownToolTip(file.url.text()));
    connect(button, &QPushButton::clicked, this, [this, file] { m_log.open(file); });
    layout.addWidget(button);
  }
}

void LogSheet::addShortcuts() {
  const auto add = [this](QKeySequence::StandardKey key, auto act) {
    auto* const shortcut = new QShortcut(key, this);
    connect(shortcut, &QShortcut::activated, this, act);
  };
  add(QKeySequence::Find, [this] {
    m_isFilterAwaited = !m_filter->isEnabled();
    (m_isFilterAwaited ? static_cast<QWidget*>(m_table) : m_filter)->setFocus(Qt::ShortcutFocusReason);
  });
  add(QKeySequence::Refresh, [this] { refresh(); });
}

void LogSheet::showEvent(QShowEvent* event) {
  SheetViewController::showEvent(event);
  if (!std::exchange(m_wasShown, true)) refresh();
}

void LogSheet::refresh() {
  m_log.refresh(m_length->currentIndex(), m_period->currentIndex());
}

void LogSheet::showState() {
  const Localize& localize = m_session.foundation.localize;
  const bool isRunning = m_log.isRunning();
  m_refreshCancel->setText(literalTitle(qt(isRunning ? localize.cancel() : LogTexts(localize).refresh())));
  m_progress->setVisible(isRunning);
  enableFilter(!isRunning);
  setCheckedQuietly(*m_follow, m_log.isFollowing());
  m_status->setText(qt(m_log.status()));
  m_table->viewport()->update();
}

/// A field that is disabled loses the focus. It gets it back unless the user has moved it meanwhile.
void LogSheet::enableFilter(bool isEnabled) {
  if (!isEnabled && m_filter->hasFocus()) {
    m_isFilterAwaited = true;
    m_table->setFocus();
  }
  m_filter->setEnabled(isEnabled);
  if (isEnabled && std::exchange(m_isFilterAwaited, false) && m_table->hasFocus()) m_filter->setFocus();
}

void LogSheet::rememberView() {
  m_wasAtEnd = m_log.isFollowing() && m_table->isAtEnd();
  m_selected.clear();
  for (const std::size_t row : m_table->selectedRows()) m_selected.insert(identity(m_log.rows().at(row)));
}

void LogSheet::showRows(const LogChange& change) {
  m_model->rowsDidChange(change);
  if (change.isReset && !m_selected.empty()) {
    m_table->select([this](std::size_t row) { return m_selected.contains(identity(m_log.rows().at(row))); });
  }
  if (m_wasAtEnd && (change.isReset || change.first > 0)) m_table->scrollToBottom();
}

void LogSheet::sort(int column, Qt::SortOrder order) {
  if (column < 0) return m_log.setOrder(std::nullopt);
  m_log.setOrder(LogOrder{static_cast<LogColumn>(column), order == Qt::AscendingOrder});
}

void LogSheet::copy() {
  const std::string text = m_log.copiedText(m_table->selectedRows());
  if (text.empty()) return m_session.platform.workspace.beep();
  m_session.platform.workspace.copy(text, std::nullopt);
}

}  // namespace mirvel::ui
