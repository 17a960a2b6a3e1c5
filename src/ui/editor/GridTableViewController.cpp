#include "ui/editor/GridTableViewController.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QListWidget>
#include <QMenu>
#include <QPointer>
#include <QSignalBlocker>
#include <QStyle>
#include <QToolButton>
#include <algorithm>

#include "core/base/Const.h"
#include "core/text/Bidirectional.h"
#include "ui/editor/RowTextDelegate.h"
#include "ui/support/InvalidData.h"
#include "ui/support/OptionKey.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"
#include "ui/support/SymbolButton.h"

namespace mirvel::ui {

namespace {

constexpr int fewestRows = 4;  // in sight
constexpr int mostRows = 8;

bool isOurs(int key) {
#ifdef __APPLE__
  if (key == Qt::Key_Backspace) return true;
#endif
  return key == Qt::Key_Delete || key == Qt::Key_Insert || key == Qt::Key_Return || key == Qt::Key_Enter;
}

}  // namespace

GridTableViewController::GridTableViewController(Program& program, GridTable::Kind kind,
                                                 const GridTable::Source& content, const std::string& key,
                                                 GridTableDelegate& delegate, QWidget* parent)
    : QWidget(parent), m_program(program), m_table(kind, content, key, delegate), m_list(new QListWidget) {
  const Localize& localize = program.foundation.localize;
  const auto named = [&](const std::string& title) {
    return bidirectionalString({title, key}, Const::separator, localize.isRightToLeft());
  };
  m_addButton = symbolButton("list-add", named(localize.add()));
  m_deleteButton = symbolButton("list-remove", named(localize.delete_()));
  prepareList();
  prepareButtons();

  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(0);
  buttons->addWidget(m_addButton);
  buttons->addWidget(m_deleteButton);
  buttons->addStretch();
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(style()->pixelMetric(QStyle::PM_DefaultFrameWidth));
  layout->addWidget(m_list);
  layout->addLayout(buttons);
  setFocusProxy(m_list);
  fitHeight();
}

void GridTableViewController::prepareList() {
  m_list->setAccessibleName(qt(m_table.key()));
  m_list->setItemDelegate(new RowTextDelegate(m_table, m_list));
  m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  m_list->setTextElideMode(Qt::ElideMiddle);
  m_list->setUniformItemSizes(true);
  m_list->setEditTriggers(GridTable::isTextEditable(m_table.kind())
                              ? QAbstractItemView::DoubleClicked | QAbstractItemView::SelectedClicked |
                                    QAbstractItemView::EditKeyPressed
                              : QAbstractItemView::NoEditTriggers);
  for (const GridTable::Item& row : m_table.rows()) m_list->addItem(makeItem(row));
  markRows();
  m_list->installEventFilter(this);
  connect(m_list, &QListWidget::itemChanged, this, [this](QListWidgetItem* item) { itemChanged(*item); });
}

void GridTableViewController::prepareButtons() {
  const auto refresh = [this] { m_deleteButton->setEnabled(!m_list->selectedItems().isEmpty()); };
  connect(m_list, &QListWidget::itemSelectionChanged, this, refresh);
  refresh();
  connect(m_addButton, &QToolButton::clicked, this, [this] { add(); });
  connect(m_deleteButton, &QToolButton::clicked, this, [this] { deleteSelected(); });
}

QListWidgetItem* GridTableViewController::makeItem(const GridTable::Item& row) const {
  const GridTable::Kind kind = m_table.kind();
  auto* item = new QListWidgetItem(qt(row.string));
  item->setToolTip(shownToolTip(row.string));
  item->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled);
  if (GridTable::isTextEditable(kind)) item->setFlags(item->flags() | Qt::ItemIsEditable);
  if (GridTable::hasBox(kind)) {
    item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
    item->setCheckState(row.bool_ ? Qt::Checked : Qt::Unchecked);
  }
  if (GridTable::holdsPaths(kind)) item->setTextAlignment(Qt::AlignLeft | Qt::AlignAbsolute | Qt::AlignVCenter);
  return item;
}

void GridTableViewController::itemChanged(QListWidgetItem& item) {
  const auto row = static_cast<std::size_t>(m_list->row(&item));
  const std::string text = utf8(item.text());
  if (GridTable::hasBox(m_table.kind())) m_table.setBox(row, item.checkState() == Qt::Checked);
  m_table.setText(row, text);
  const QString toolTip = shownToolTip(text);
  if (item.toolTip() != toolTip) item.setToolTip(toolTip);
  markRows();
}

/// The row that can't be saved has the colour of what is invalid.
void GridTableViewController::markRows() {
  const QSignalBlocker quiet(m_list);
  const auto refused = m_table.refusedRow();
  for (int row = 0; row < m_list->count(); ++row) {
    const bool isRefused = refused && *refused == static_cast<std::size_t>(row);
    const QVariant color = isRefused ? QVariant(invalidData(palette())) : QVariant();
    QListWidgetItem* const item = m_list->item(row);
    // Anything new, even the same, would end what is being typed in the row.
    if (item->data(Qt::ForegroundRole) != color) item->setData(Qt::ForegroundRole, color);
  }
}

std::optional<InvalidField> GridTableViewController::refuse() {
  const auto row = m_table.refusedRow();
  if (!row) return std::nullopt;
  m_list->setFocus();
  m_list->setCurrentRow(static_cast<int>(*row));
  return m_table.refuse(m_program.foundation.localize);
}

void GridTableViewController::add() {
  switch (GridTable::adding(m_table.kind())) {
    case GridTable::Adding::EmptyRow:
      return addRow({});
    case GridTable::Adding::FilePanel:
      return addChosen({.showsHiddenFiles = optionHeld()});
    case GridTable::Adding::FolderPanel:
      return addChosen({.choosesFolders = true, .showsHiddenFiles = optionHeld()});
    case GridTable::Adding::SessionTypeMenu:
      return showSessionTypes();
  }
}

void GridTableViewController::addChosen(const OpenPanel& panel) {
  const QPointer<GridTableViewController> self(this);  // the job may be gone before the panel is
  const auto chosen = m_program.platform.interface.openPanel(panel);
  if (!chosen || !self) return;
  if (!qtPath(*chosen)) return m_program.platform.workspace.beep();  // no job file can hold such a name
  addRow(chosen->native());
}

void GridTableViewController::showSessionTypes() {
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->setToolTipsVisible(true);
  for (const GridTable::SessionTypeItem& type : m_table.sessionTypeItems()) {
    QAction* action = menu->addAction(qt(type.title));
    action->setToolTip(qt(type.toolTip));
    action->setEnabled(type.isEnabled);
    connect(action, &QAction::triggered, this, [this, title = std::string(type.title)] { addRow(title); });
  }
  menu->popup(m_addButton->mapToGlobal(m_addButton->rect().bottomLeft()));
}

void GridTableViewController::addRow(const std::string& text) {
  m_list->setFocus();  // what is being typed in another row is done
  const std::size_t row = m_table.add(text);
  m_list->addItem(makeItem(m_table.rows()[row]));
  markRows();
  fitHeight();
  m_list->setCurrentRow(static_cast<int>(row));
  if (text.empty()) editSelected();
}

void GridTableViewController::deleteSelected() {
  const QList<QListWidgetItem*> selected = m_list->selectedItems();
  if (selected.isEmpty()) return;
  const int row = m_list->row(selected.front());
  (void)m_table.remove(static_cast<std::size_t>(row));  // there is such a row
  delete m_list->takeItem(row);
  markRows();
  fitHeight();
}

void GridTableViewController::editSelected() {
  if (QListWidgetItem* item = m_list->currentItem()) m_list->editItem(item);
}

bool GridTableViewController::eventFilter(QObject* watched, QEvent* event) {
  if (watched == m_list && event->type() == QEvent::FocusIn) selectForKeys(*static_cast<const QFocusEvent*>(event));
  const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
  if (watched != m_list || !isKey || !m_list->hasFocus()) return QWidget::eventFilter(watched, event);
  const auto* press = static_cast<const QKeyEvent*>(event);
  const bool isPlain = (press->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
  if (!isPlain || !isOurs(press->key())) return QWidget::eventFilter(watched, event);
  if (event->type() == QEvent::ShortcutOverride) {
    event->accept();  // no menu item is meant: there, the same key deletes the job
    return true;
  }
  return pressed(press->key());
}

/// Who comes by the keyboard has a row to work on: no key would select the only one.
void GridTableViewController::selectForKeys(const QFocusEvent& event) {
  const bool isByKey = event.reason() == Qt::TabFocusReason || event.reason() == Qt::BacktabFocusReason;
  if (isByKey && m_list->selectedItems().isEmpty()) m_list->setCurrentRow(std::max(0, m_list->currentRow()));
}

bool GridTableViewController::pressed(int key) {
  switch (key) {
    case Qt::Key_Insert:
      add();
      return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (GridTable::isTextEditable(m_table.kind())) editSelected();
      return true;
    default:
      deleteSelected();
      return true;
  }
}

void GridTableViewController::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) markRows();
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) fitHeight();
}

void GridTableViewController::fitHeight() {
  const int lineHeight = m_list->fontMetrics().height() + 2 * style()->pixelMetric(QStyle::PM_DefaultFrameWidth);
  const int rowHeight = std::max(m_list->sizeHintForRow(0), lineHeight);
  m_list->setFixedHeight(std::clamp(m_list->count(), fewestRows, mostRows) * rowHeight + 2 * m_list->frameWidth());
}

}  // namespace mirvel::ui
