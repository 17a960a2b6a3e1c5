#include "ui/editor/EditTableView.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QStyle>
#include <QTableView>
#include <QToolButton>
#include <algorithm>
#include <utility>

#include "core/base/Const.h"
#include "core/editor/EditorTexts.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "core/text/Bidirectional.h"
#include "ui/editor/ChooseFile.h"
#include "ui/editor/EditTableModel.h"
#include "ui/support/Controls.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

namespace {

constexpr int fewestRows = 4;  // visible
constexpr int mostRows = 8;

/// A table view that Tab leaves after the last cell, whereas Qt would continue with the first one.
class CellView final : public QTableView {
 protected:
  void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override {
    const QModelIndex next = hint == QAbstractItemDelegate::EditNextItem       ? neighbour(1)
                             : hint == QAbstractItemDelegate::EditPreviousItem ? neighbour(-1)
                                                                               : QModelIndex();
    const bool isTab = hint == QAbstractItemDelegate::EditNextItem || hint == QAbstractItemDelegate::EditPreviousItem;
    QTableView::closeEditor(editor, isTab ? QAbstractItemDelegate::NoHint : hint);
    if (!next.isValid()) return;
    setCurrentIndex(next);
    edit(next);
  }

 private:
  QModelIndex neighbour(int step) const {
    const int columns = model()->columnCount();
    for (int cell = currentIndex().row() * columns + currentIndex().column() + step;
         cell >= 0 && cell < model()->rowCount() * columns; cell += step) {
      const QModelIndex index = model()->index(cell / columns, cell % columns);
      if (index.flags().testFlag(Qt::ItemIsEditable)) return index;
    }
    return {};
  }
};

bool isOurs(int key) {
#ifdef __APPLE__
  if (key == Qt::Key_Backspace) return true;
#endif
  return key == Qt::Key_Delete || key == Qt::Key_Insert || key == Qt::Key_Return || key == Qt::Key_Enter;
}

}  // namespace

EditTableView::EditTableView(const Foundation& foundation, const Platform& platform, const TableFormat& format,
                             std::string key)
    : m_localize(foundation.localize),
      m_platform(platform),
      m_key(std::move(key)),
      m_table(format,
              [this](Editing::Step step, const std::string& cell) {
                if (changed) changed(step, cell);
              }),
      m_model(new EditTableModel(m_table, foundation.collator, qt(m_key), this)),
      m_view(new CellView) {
  prepareView();
  makeButtons();
  auto* const buttons = new QHBoxLayout;
  buttons->setSpacing(0);
  buttons->addWidget(m_addButton);
  buttons->addWidget(m_deleteButton);
  buttons->addStretch();
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(style()->pixelMetric(QStyle::PM_DefaultFrameWidth));
  layout->addWidget(m_view);
  layout->addLayout(buttons);
  setFocusProxy(m_view);
  fitHeight();
  updateButtons();
}

/// Deletes the view before the rows: an open cell editor commits when it loses the focus.
EditTableView::~EditTableView() {
  changed = nullptr;
  delete m_view;
}

void EditTableView::prepareView() {
  m_view->setModel(m_model);
  m_view->setItemDelegate(new EditTableDelegate(*m_model, m_view));
  m_view->setAccessibleName(qt(m_key));
  m_view->setShowGrid(false);
  m_view->setWordWrap(false);
  m_view->setTabKeyNavigation(false);
  m_view->setTextElideMode(Qt::ElideMiddle);
  m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
  m_view->setSelectionMode(QAbstractItemView::SingleSelection);
  m_view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  m_view->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::SelectedClicked |
                          QAbstractItemView::EditKeyPressed);
  m_view->verticalHeader()->hide();
  m_view->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  m_view->horizontalHeader()->setVisible(m_table.isSortable());
  m_view->horizontalHeader()->setHighlightSections(false);
  m_view->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
  m_view->setSortingEnabled(m_table.isSortable());
  m_view->installEventFilter(this);
}

void EditTableView::makeButtons() {
  const auto named = [&](const std::string& title) {
    return bidirectionalString({title, m_key}, Const::separator, m_localize.isRightToLeft());
  };
  m_addButton = symbolButton("list-add", named(EditorTexts(m_localize).add()));
  m_deleteButton = symbolButton("list-remove", named(m_localize.delete_()));
  connect(m_addButton, &QToolButton::clicked, this, [this] { add(); });
  connect(m_deleteButton, &QToolButton::clicked, this, [this] { deleteSelected(); });
  connect(m_view->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { updateButtons(); });
  connect(m_model, &QAbstractItemModel::rowsRemoved, this, [this] { updateButtons(); });
}

void EditTableView::updateButtons() {
  m_addButton->setEnabled(m_isEditable);
  m_deleteButton->setEnabled(m_view->selectionModel()->hasSelection());
}

void EditTableView::fill(const std::vector<TableRow>& rows) {
  m_model->fill(rows);
  fitHeight();
}

void EditTableView::setEditable(bool isEditable) {
  m_isEditable = isEditable;
  m_model->setEditable(isEditable);
  updateButtons();
}

std::optional<InvalidField> EditTableView::refuse() {
  const auto row = m_table.refusedPosition();
  if (!row) return std::nullopt;
  m_view->setFocus();
  m_view->setCurrentIndex(m_model->index(static_cast<int>(*row), 0));
  return m_table.refuse(m_key, m_localize);
}

void EditTableView::add() {
  if (!m_isEditable) return;
  switch (m_table.format().adding) {
    case TableFormat::Adding::EmptyRow:
      return addRow({});
    case TableFormat::Adding::FilePanel:
      return addChosen({.showsHiddenFiles = optionHeld()});
    case TableFormat::Adding::FolderPanel:
      return addChosen({.choosesFolders = true, .showsHiddenFiles = optionHeld()});
    case TableFormat::Adding::Menu:
      return showMenu();
  }
}

void EditTableView::addChosen(const OpenPanel& panel) {
  if (const auto chosen = chooseFile(*this, m_platform, panel)) addRow(chosen->native());
}

void EditTableView::showMenu() {
  auto* const menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->setToolTipsVisible(true);
  for (const EditTable::Offer& offer : m_table.offers()) {
    QAction* const action = menu->addAction(qt(offer.item.title));
    action->setToolTip(helpText(offer.item.help));
    action->setEnabled(offer.isEnabled);
    connect(action, &QAction::triggered, this, [this, title = std::string(offer.item.title)] { addRow(title); });
  }
  menu->popup(m_addButton->mapToGlobal(m_addButton->rect().bottomLeft()));
}

/// Opens an editor for the first empty cell of the new row.
void EditTableView::addRow(const std::string& text) {
  m_view->setFocus();  // commits an open cell editor
  const int row = m_model->add(text);
  fitHeight();
  int column = 0;
  while (column < m_model->columnCount() && !m_model->index(row, column).data(Qt::EditRole).toString().isEmpty()) {
    ++column;
  }
  const bool isFull = column == m_model->columnCount();
  const QModelIndex cell = m_model->index(row, isFull ? 0 : column);
  m_view->setCurrentIndex(cell);
  if (!isFull && cell.flags().testFlag(Qt::ItemIsEditable)) m_view->edit(cell);
}

void EditTableView::deleteSelected() {
  const QModelIndexList selected = m_view->selectionModel()->selectedRows();
  if (selected.isEmpty()) return;
  m_model->removeAt(selected.front().row());
  fitHeight();
}

bool EditTableView::eventFilter(QObject* watched, QEvent* event) {
  if (watched == m_view && event->type() == QEvent::FocusIn) selectForKeys(*static_cast<const QFocusEvent*>(event));
  const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
  if (watched != m_view || !isKey || !m_view->hasFocus()) return QWidget::eventFilter(watched, event);
  const auto* const press = static_cast<const QKeyEvent*>(event);
  const bool isPlain = (press->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
  if (!isPlain || !isOurs(press->key())) return QWidget::eventFilter(watched, event);
  if (event->type() == QEvent::ShortcutOverride) {
    event->accept();  // otherwise the menu command with the same key would delete the job
    return true;
  }
  return pressed(press->key());
}

/// Selects a row when the table gets the focus by keyboard, as no key would select the only row.
void EditTableView::selectForKeys(const QFocusEvent& event) {
  const bool isByKey = event.reason() == Qt::TabFocusReason || event.reason() == Qt::BacktabFocusReason;
  if (!isByKey || m_view->selectionModel()->hasSelection()) return;
  m_view->setCurrentIndex(m_model->index(std::max(0, m_view->currentIndex().row()), 0));
}

bool EditTableView::pressed(int key) {
  switch (key) {
    case Qt::Key_Insert:
      add();
      break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (m_view->currentIndex().flags().testFlag(Qt::ItemIsEditable)) m_view->edit(m_view->currentIndex());
      break;
    default:
      deleteSelected();
      break;
  }
  return true;
}

void EditTableView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) fitHeight();
}

void EditTableView::fitHeight() {
  const int rowHeight = m_view->fontMetrics().height() + 2 * style()->pixelMetric(QStyle::PM_DefaultFrameWidth);
  m_view->verticalHeader()->setMinimumSectionSize(rowHeight);
  m_view->verticalHeader()->setDefaultSectionSize(rowHeight);
  const int header = m_table.isSortable() ? m_view->horizontalHeader()->sizeHint().height() : 0;
  const int shown = std::clamp(m_model->rowCount(), fewestRows, mostRows);
  m_view->setFixedHeight(shown * rowHeight + header + 2 * m_view->frameWidth());
}

}  // namespace mirvel::ui
