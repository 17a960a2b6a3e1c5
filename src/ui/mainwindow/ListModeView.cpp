#include "ui/mainwindow/ListModeView.h"

#include <QHeaderView>
#include <QMenu>
#include <QScrollBar>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "core/mainwindow/JobMenu.h"
#include "core/mainwindow/ModeRules.h"
#include "core/mainwindow/WindowContext.h"
#include "core/mainwindow/WindowTexts.h"
#include "core/runs/RunStateTexts.h"
#include "core/session/Foundation.h"
#include "core/session/Notifications.h"
#include "core/session/Platform.h"
#include "ui/mainwindow/JobView.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

ListModeView::ListModeView(const WindowContext& context, IconLoader& icons, QWidget* parent)
    : QWidget(parent),
      m_context(context),
      m_table(new ListTable(this)),
      m_mode(context, *this),
      m_model(context.foundation.localize, m_mode, icons),
      m_delay(context.platform.mainQueue) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(m_table);
  setFocusProxy(m_table);
  m_table->setFrameShape(QFrame::NoFrame);
  m_table->setAccessibleName(qt(WindowTexts(context.foundation.localize).jobs()));
  m_table->setModel(&m_model);
  connectTable();
  setInitialWidths();
  restoreLayout();
}

ListModeView::~ListModeView() {
  keepLayout();
  m_table->setModel(nullptr);  // m_model is destroyed before the table
}

void ListModeView::connectTable() {
  m_table->emptyLabel = [this] { return qt(emptyStateLabel(m_context).value_or("")); };
  m_table->selectionMayChange = [this] { return m_mode.selectionMayChange(); };
  m_table->selectionDidChange = [this](int row) { m_mode.selectionDidChange(static_cast<std::size_t>(row)); };
  m_loadingChanged = m_context.notifications.loadingChanged.subscribe([this] { m_table->viewport()->update(); });
  m_hostChanged = m_context.notifications.hostChanged.subscribe([this] { m_table->viewport()->update(); });

  connect(m_table->header(), &QHeaderView::sortIndicatorChanged, this, &ListModeView::sortBy);
  connect(m_table, &QWidget::customContextMenuRequested, this, &ListModeView::showRowMenu);
  connect(m_table->header(), &QWidget::customContextMenuRequested, this, &ListModeView::showHeaderMenu);
}

void ListModeView::setInitialWidths() {
  // In average characters of the font, enough for names and commands of common length.
  const int character = fontMetrics().averageCharWidth();
  m_table->header()->resizeSection(static_cast<int>(ListColumn::Name), 27 * character);
  m_table->header()->resizeSection(static_cast<int>(ListColumn::Summary), 23 * character);
  for (const auto column : {ListColumn::Kind, ListColumn::Enabled, ListColumn::KeepAlive, ListColumn::Scheduled}) {
    const int section = static_cast<int>(column);
    m_table->header()->resizeSection(section, m_table->header()->sectionSizeHint(section));
  }
  m_table->header()->resizeSection(static_cast<int>(ListColumn::State), widthOfStates());
  m_table->header()->resizeSection(static_cast<int>(ListColumn::LastRun), 24 * character);
  m_table->header()->setStretchLastSection(true);
}

/// An icon and the longest word.
int ListModeView::widthOfStates() const {
  const RunStateTexts texts(m_context.foundation.localize);
  int widest = 0;
  for (int state = 0; state < static_cast<int>(JobState::Unknown); ++state) {
    widest = std::max(widest, fontMetrics().horizontalAdvance(qt(texts.state(static_cast<JobState>(state)))));
  }
  // The style of the table has margins at both ends, and between icon and word.
  const int margin = m_table->style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, m_table) + 1;
  return widest + m_table->style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, m_table) + 5 * margin;
}

void ListModeView::restoreLayout() {
  const Defaults& defaults = m_context.foundation.defaults;
  m_table->setPlaces(layoutIn(defaults.text(Defaults::Key::listColumns).value_or("")));
  if (const auto sort = sortIn(defaults.text(Defaults::Key::listSort).value_or(""))) {
    m_table->header()->setSortIndicator(static_cast<int>(*listColumn(sort->key)),
                                        sort->isAscending ? Qt::AscendingOrder : Qt::DescendingOrder);
  }
  m_keptLayout = layoutText(m_table->places());
  // While a column border is dragged, every pixel is reported. The layout is saved half a second after the last change.
  const auto keepSoon = [this] { m_delay(0.5, [this] { keepLayout(); }); };
  connect(m_table->header(), &QHeaderView::sectionResized, this, keepSoon);
  connect(m_table->header(), &QHeaderView::sectionMoved, this, keepSoon);
}

void ListModeView::keepLayout() {
  const std::string layout = layoutText(m_table->places());
  if (layout == std::exchange(m_keptLayout, layout)) return;
  // If the settings can't be written, only the column layout is lost.
  (void)m_context.foundation.defaults.setText(Defaults::Key::listColumns, layout);
}

void ListModeView::keepSort(const SortDescriptor& descriptor) {
  Defaults& defaults = m_context.foundation.defaults;
  const std::string text = sortText(descriptor);
  if (defaults.text(Defaults::Key::listSort) != text) (void)defaults.setText(Defaults::Key::listSort, text);
}

void ListModeView::sortBy(int column, Qt::SortOrder order) {
  if (column < 0) return;
  const auto sorted = allListColumns.at(static_cast<std::size_t>(column));
  const SortDescriptor descriptor{std::string(identifier(sorted)), order == Qt::AscendingOrder};
  m_mode.setSortDescriptor(descriptor);
  keepSort(descriptor);
}

void ListModeView::reload() {
  const int position = m_table->verticalScrollBar()->value();
  m_model.reload();
  m_table->verticalScrollBar()->setValue(position);
}

void ListModeView::mark(std::optional<std::size_t> row) {
  m_table->mark(row ? static_cast<int>(*row) : -1);
}

void ListModeView::scrollTo(std::size_t row) {
  m_table->scrollTo(m_model.index(static_cast<int>(row), 0));
}

void ListModeView::prepareHeaders() {
  m_model.reloadHeaders();
}

void ListModeView::reloadRow(std::size_t row) {
  m_model.reloadRow(static_cast<int>(row));
}

void ListModeView::redraw() {
  m_table->viewport()->update();
}

void ListModeView::addColumnItems(QMenu& menu) {
  for (const ListColumn column : defaultListOrder) {
    QAction* item = menu.addAction(qt(title(column, m_context.foundation.localize)));
    item->setCheckable(true);
    item->setChecked(!m_table->isColumnHidden(static_cast<int>(column)));
    connect(item, &QAction::triggered, this, [this, column] { toggleTableColumn(column); });
  }
}

void ListModeView::toggleTableColumn(ListColumn column) {
  if (const auto columns = toggled(m_table->visibleColumns(), column)) {
    m_table->setVisibleColumns(*columns);
    keepLayout();
  } else {
    m_context.platform.workspace.beep();
  }
}

void ListModeView::showRowMenu(const QPoint& position) {
  const QModelIndex index = m_table->indexAt(position);
  if (index.isValid()) popUp(m_mode.menuForRow(static_cast<std::size_t>(index.row())), *m_table, position);
}

void ListModeView::showHeaderMenu(const QPoint& position) {
  const int column = m_table->header()->logicalIndexAt(position);
  if (column < 0) return;
  const Localize& localize = m_context.foundation.localize;
  auto* menu = new QMenu(m_table);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  QFont font = menu->font();
  font.setPointSize(11);
  menu->setFont(font);
  menu->addAction(qt(WindowTexts(localize).rightSizeThisColumn()), this,
                  [this, column] { m_table->rightSize(column); });
  menu->addAction(qt(WindowTexts(localize).rightSizeAllColumnsIndividually()), this,
                  [this] { m_table->rightSizeAll(); });
  menu->addSeparator();
  addColumnItems(*menu);
  menu->popup(m_table->header()->mapToGlobal(position));
}

}  // namespace mirvel::ui
