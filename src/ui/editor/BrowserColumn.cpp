#include "ui/editor/BrowserColumn.h"

#include <QContextMenuEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

#include "core/editor/Browser.h"
#include "core/editor/BrowserTexts.h"
#include "core/editor/EditorTexts.h"
#include "ui/support/Controls.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

void BrowserList::setHint(const QString& hint) {
  if (hint == m_hint) return;
  m_hint = hint;
  setAccessibleDescription(hint);
  viewport()->update();
}

/// Tab ends the naming, whereas Qt would edit the next name.
void BrowserList::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
  const bool isTab = hint == QAbstractItemDelegate::EditNextItem || hint == QAbstractItemDelegate::EditPreviousItem;
  QListView::closeEditor(editor, isTab ? QAbstractItemDelegate::NoHint : hint);
  if (named) named(hint);
}

QPoint BrowserList::menuPosition() const {
  const QRect row = visualRect(currentIndex());
  return viewport()->mapToGlobal(isRightToLeft() ? row.bottomRight() : row.bottomLeft());
}

void BrowserList::contextMenuEvent(QContextMenuEvent* event) {
  if (!menuWanted) return;
  menuWanted(event->reason() == QContextMenuEvent::Keyboard ? menuPosition() : event->globalPos());
  event->accept();
}

void BrowserList::paintEvent(QPaintEvent* event) {
  QListView::paintEvent(event);
  if (m_hint.isEmpty() || model()->rowCount() > 0) return;
  QPainter painter(viewport());
  painter.setPen(palette().color(QPalette::PlaceholderText));
  painter.drawText(viewport()->rect(), Qt::AlignCenter | Qt::TextWordWrap, m_hint);
}

BrowserColumn::BrowserColumn(Browser& browser, std::size_t column, BrowserModel::Access access,
                             const Localize& localize)
    : m_browser(browser),
      m_column(column),
      m_model(new BrowserModel(browser, column, access, this)),
      m_list(new BrowserList) {
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(style()->pixelMetric(QStyle::PM_DefaultFrameWidth));
  if (access == BrowserModel::Access::Editable) {
    makeHeader(localize);
    layout->addWidget(m_header);
  }
  prepareList();
  layout->addWidget(m_list, 1);
}

BrowserColumn::~BrowserColumn() {
  m_model->renamed = nullptr;
  m_list->named = nullptr;
  picked = nullptr;
  delete m_list;
}

void BrowserColumn::makeHeader(const Localize& localize) {
  const BrowserTexts texts(localize);
  const auto number = static_cast<std::int64_t>(m_column) + 1;
  m_header = new QWidget;
  m_header->setAccessibleName(qt(std::string(m_browser.schema().text()) + ' ' + texts.columnControls()));
  m_title = new ElidedLabel;
  m_title->setForegroundRole(QPalette::PlaceholderText);
  m_addButton = symbolButton("list-add", EditorTexts(localize).add());
  m_addButton->setAccessibleName(qt(texts.addInColumn(number)));
  m_deleteButton = symbolButton("list-remove", localize.delete_());
  m_deleteButton->setAccessibleName(qt(texts.deleteInColumn(number)));
  auto* const row = new QHBoxLayout(m_header);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(0);
  row->addWidget(m_title, 1);
  row->addWidget(m_addButton);
  row->addWidget(m_deleteButton);
  connect(m_addButton, &QToolButton::clicked, this, [this] { addWanted(); });
  connect(m_deleteButton, &QToolButton::clicked, this, [this] { deleteWanted(); });
}

void BrowserColumn::prepareList() {
  m_list->setModel(m_model);
  m_list->setItemDelegate(new BrowserDelegate(m_list));
  m_list->setEditTriggers(QAbstractItemView::DoubleClicked);
  m_list->setTextElideMode(Qt::ElideMiddle);
  m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  m_list->setUniformItemSizes(true);
  m_list->setMinimumHeight(1);  // Qt's own minimum is taller than an empty browser
  connect(m_list->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
    const QModelIndexList rows = m_list->selectionModel()->selectedIndexes();
    if (!m_isFollowing && !rows.isEmpty() && picked) picked(static_cast<std::size_t>(rows.front().row()));
  });
}

QPoint BrowserColumn::menuPosition() const {
  return m_addButton->mapToGlobal(m_addButton->rect().bottomLeft());
}

QWidgetList BrowserColumn::tabStops() const {
  return m_header ? QWidgetList{m_addButton, m_deleteButton, m_list} : QWidgetList{m_list};
}

void BrowserColumn::follow() {
  m_isFollowing = true;
  m_model->follow();
  const auto row = m_browser.selected(m_column);
  select(row);
  m_isFollowing = false;
  if (m_column == 0) m_list->setHint(qt(m_browser.emptyText()));
  const auto parent = m_column > 0 ? m_browser.selected(m_column - 1) : std::nullopt;
  const std::string parentTitle = parent ? m_browser.title(m_column - 1, *parent) : std::string();
  m_list->setAccessibleName(qt(parentTitle.empty() ? m_browser.schema().text() : std::string_view(parentTitle)));
  updateGeometry();
  if (!m_header) return;
  m_title->setFullText(qt(parentTitle));
  const auto offers = m_browser.offers(m_column);
  m_addButton->setEnabled(std::any_of(offers.begin(), offers.end(), [](const auto& offer) { return offer.isEnabled; }));
  m_deleteButton->setEnabled(row.has_value());
}

void BrowserColumn::select(std::optional<std::size_t> row) {
  if (!row) return m_list->clearSelection();
  const QModelIndex index = m_model->index(static_cast<int>(*row));
  if (m_list->currentIndex() != index || !m_list->selectionModel()->isSelected(index)) m_list->setCurrentIndex(index);
}

int BrowserColumn::headerHeight() const {
  return m_header ? m_header->sizeHint().height() + layout()->spacing() : 0;
}

int BrowserColumn::listHeight(int rows) const {
  return rows * (fontMetrics().height() + 2 * style()->pixelMetric(QStyle::PM_DefaultFrameWidth)) +
         2 * m_list->frameWidth();
}

/// Qt's own hint measures each row, which takes seconds for a list that is long enough.
int BrowserColumn::widthOfNames() const {
  constexpr int mostMeasured = 100;
  int width = 0;
  for (int row = 0; row < std::min(m_model->rowCount(), mostMeasured); ++row) {
    width = std::max(width, m_list->sizeHintForIndex(m_model->index(row)).width());
  }
  return width;
}

/// As wide as the names, within limits: two columns usually fit into the narrowest pane.
QSize BrowserColumn::minimumSizeHint() const {
  constexpr int fewestCharacters = 18;
  constexpr int mostCharacters = 28;
  const QScrollBar& bar = *m_list->verticalScrollBar();
  const int names = widthOfNames() + 2 * m_list->frameWidth() + (bar.maximum() > 0 ? bar.sizeHint().width() : 0);
  const int character = fontMetrics().averageCharWidth();
  return {std::clamp(names, fewestCharacters * character, mostCharacters * character),
          QWidget::minimumSizeHint().height()};
}

}  // namespace mirvel::ui
