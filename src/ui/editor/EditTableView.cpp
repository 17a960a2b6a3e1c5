#include "ui/editor/EditTableView.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QStyle>
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
#include "ui/editor/TableCells.h"
#include "ui/support/Controls.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

namespace {

constexpr int fewestRows = 4;  // visible
constexpr int mostRows = 8;

bool isOurs(const QKeyEvent& press) {
  if (press.matches(QKeySequence::Copy) || press.matches(QKeySequence::Paste)) return true;
  if ((press.modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier) return false;
  const int key = press.key();
#ifdef __APPLE__
  if (key == Qt::Key_Backspace) return true;
#endif
  return key == Qt::Key_Delete || key == Qt::Key_Insert || key == Qt::Key_Return || key == Qt::Key_Enter;
}

}  // namespace

EditTableView::EditTableView(const Foundation& foundation, const Platform& platform,
                             const Scheduled::NumberText& numbers, const TableFormat& format, std::string key)
    : m_localize(foundation.localize),
      m_platform(platform),
      m_key(std::move(key)),
      m_table(format, numbers,
              [this](Editing::Step step, const std::string& cell) {
                if (changed) changed(step, cell);
                updateSecrets();
              }),
      m_model(new EditTableModel(m_table, foundation.collator, m_localize, qt(m_key), this)),
      m_view(new TableCells) {
  prepareView();
  makeButtons();
  auto* const buttons = new QHBoxLayout;
  buttons->setSpacing(0);
  buttons->addWidget(m_addButton);
  buttons->addWidget(m_deleteButton);
  buttons->addStretch();
  buttons->addWidget(m_showButton);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(style()->pixelMetric(QStyle::PM_DefaultFrameWidth));
  layout->addWidget(m_view);
  layout->addLayout(buttons);
  setFocusProxy(m_view);
  fitHeight();
  updateButtons();
  updateSecrets();
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
  // The rest is for what the user types.
  for (std::size_t i = 0; i + 1 < m_table.format().columns.size(); ++i) {
    const bool isFixed = !m_table.format().columns[i].isEditable;
    if (isFixed) m_view->horizontalHeader()->setSectionResizeMode(static_cast<int>(i), QHeaderView::ResizeToContents);
  }
  m_view->horizontalHeader()->setVisible(m_table.isSortable());
  m_view->horizontalHeader()->setHighlightSections(false);
  m_view->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
  m_view->setSortingEnabled(m_table.isSortable());
  m_view->copyRow = [this] { copy(); };
  m_view->pasteRows = [this] { paste(); };
  m_view->installEventFilter(this);
}

void EditTableView::makeButtons() {
  const auto named = [&](const std::string& title) {
    return bidirectionalString({title, m_key}, Const::separator, m_localize.isRightToLeft());
  };
  m_addButton = symbolButton("list-add", named(EditorTexts(m_localize).add()));
  m_deleteButton = symbolButton("list-remove", named(m_localize.delete_()));
  m_showButton = new QToolButton;
  m_showButton->setText(qt(EditorTexts(m_localize).showValues()));
  m_showButton->setCheckable(true);
  m_showButton->setFocusPolicy(Qt::TabFocus);
  m_showButton->setAccessibleName(qt(named(EditorTexts(m_localize).showValues())));
  connect(m_showButton, &QToolButton::toggled, this, [this](bool isOn) { m_model->setShowsSecrets(isOn); });
  connect(m_addButton, &QToolButton::clicked, this, [this] { add(); });
  connect(m_deleteButton, &QToolButton::clicked, this, [this] { deleteSelected(); });
  connect(m_view->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { updateButtons(); });
  connect(m_model, &QAbstractItemModel::rowsRemoved, this, [this] { updateButtons(); });
}

void EditTableView::updateButtons() {
  m_addButton->setEnabled(m_isEditable);
  m_deleteButton->setEnabled(m_view->selectionModel()->hasSelection());
}

void EditTableView::updateSecrets() {
  m_showButton->setVisible(m_model->hasSecrets());
}

void EditTableView::fill(const std::vector<TableRow>& rows) {
  m_model->fill(rows);
  updateSecrets();
  fitHeight();
}

void EditTableView::setEditable(bool isEditable) {
  m_isEditable = isEditable;
  m_model->setEditable(isEditable);
  updateButtons();
}

std::optional<InvalidField> EditTableView::refuse() {
  const auto cell = m_table.refusedCell();
  if (!cell) return std::nullopt;
  m_view->setFocus();
  m_view->setCurrentIndex(m_model->index(static_cast<int>(cell->position), static_cast<int>(cell->column)));
  return m_table.refuse(m_key, m_localize);
}

/// Copies the text itself even if it is concealed, as the user asks for it.
void EditTableView::copy() {
  if (!m_view->selectionModel()->hasSelection()) return;
  QGuiApplication::clipboard()->setText(qt(m_table.copied(static_cast<std::size_t>(m_view->currentIndex().row()))));
}

void EditTableView::paste() {
  if (!m_isEditable) return;
  const auto pasted = m_model->paste(utf8(QGuiApplication::clipboard()->text()));
  fitHeight();
  if (pasted || pasted.error().code != Error::Code::Malformed) return;
  const EditorTexts texts(m_localize);
  m_platform.interface.error(texts.lineIsNoVariable(std::to_string(pasted.error().line)), texts.nothingWasPasted());
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
  const auto& press = *static_cast<const QKeyEvent*>(event);
  if (!isOurs(press)) return QWidget::eventFilter(watched, event);
  if (event->type() == QEvent::ShortcutOverride) {
    event->accept();  // otherwise the menu command with the same key would delete the job
    return true;
  }
  pressed(press);
  return true;
}

/// Selects a row when the table gets the focus by keyboard, as no key would select the only row.
void EditTableView::selectForKeys(const QFocusEvent& event) {
  const bool isByKey = event.reason() == Qt::TabFocusReason || event.reason() == Qt::BacktabFocusReason;
  if (!isByKey || m_view->selectionModel()->hasSelection()) return;
  m_view->setCurrentIndex(m_model->index(std::max(0, m_view->currentIndex().row()), 0));
}

void EditTableView::pressed(const QKeyEvent& press) {
  if (press.matches(QKeySequence::Copy)) return copy();
  if (press.matches(QKeySequence::Paste)) return paste();
  switch (press.key()) {
    case Qt::Key_Insert:
      return add();
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (m_view->currentIndex().flags().testFlag(Qt::ItemIsEditable)) m_view->edit(m_view->currentIndex());
      return;
    default:
      return deleteSelected();
  }
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
