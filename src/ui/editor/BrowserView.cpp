#include "ui/editor/BrowserView.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>
#include <string>
#include <utility>

#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "ui/editor/BrowserColumn.h"
#include "ui/editor/BrowserPreviewView.h"
#include "ui/support/Controls.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

constexpr int rowsIfEmpty = 3;
constexpr int rowsInSight = 8;

/// The nearest scroll area around a widget; null if there is none.
QScrollArea* areaAround(const QWidget& widget) {
  for (QWidget* parent = widget.parentWidget(); parent; parent = parent->parentWidget()) {
    if (auto* const area = qobject_cast<QScrollArea*>(parent)) return area;
  }
  return nullptr;
}

}  // namespace

BrowserView::BrowserView(Browser& browser, const EditorContext& context, BrowserModel::Access access)
    : m_browser(browser),
      m_context(context),
      m_access(access),
      m_area(new QScrollArea),
      m_row(nullptr),
      m_preview(new BrowserPreviewView(browser, context, access)),
      m_menus(browser, context, access, *this) {
  auto* const content = new QWidget;
  m_row = new QHBoxLayout(content);
  m_row->setContentsMargins(0, 0, 0, 0);
  m_row->addWidget(m_preview, 1);
  m_preview->hide();
  m_preview->changed = [this] { follow(); };
  m_menus.chosen = [this](BrowserAction action, std::size_t column) { perform(action, column); };
  m_menus.offerChosen = [this](std::size_t column, std::size_t offer) { addOffer(column, offer); };
  m_menus.typeChosen = [this](std::size_t column, std::size_t row, BrowserItem::Type type) {
    setType(column, row, type);
  };
  m_preview->left = [this] { list(m_browser.path().size() - 1).setFocus(); };
  m_area->setWidgetResizable(true);
  m_area->setFrameShape(QFrame::NoFrame);
  m_area->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  m_area->setFocusPolicy(Qt::NoFocus);  // only lists and controls get the focus
  m_area->setWidget(content);
  content->setAutoFillBackground(false);
  m_area->viewport()->setAutoFillBackground(false);
  QScrollBar* const bar = m_area->horizontalScrollBar();
  connect(bar, &QScrollBar::rangeChanged, this, [this] {
    fitHeight();
    if (m_isRevealing) revealNow();
  });
  connect(bar, &QScrollBar::actionTriggered, this, [this] { m_isRevealing = false; });
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(m_area);
  const std::string key(browser.schema().text());
  setAccessibleName(qt(key));
  m_area->setAccessibleName(qt(key));
  makeColumn();
  setFocusProxy(&list(0));
  follow();
}

/// Before the rest, since an open editor of a name reports its end, and events still reach the filter.
BrowserView::~BrowserView() {
  m_preview->changed = nullptr;
  while (!m_columns.empty()) {
    delete m_columns.back();
    m_columns.pop_back();
  }
}

BrowserList& BrowserView::list(std::size_t column) const {
  return m_columns[std::min(column, m_columns.size() - 1)]->list();
}

void BrowserView::makeColumn() {
  const std::size_t number = m_columns.size();
  auto* const column = new BrowserColumn(m_browser, number, m_access, m_context.foundation.localize);
  column->addWanted = [this, number] { add(number); };
  column->deleteWanted = [this, number] { perform(BrowserAction::Remove, number); };
  column->picked = [this, number](std::size_t row) { select(number, row); };
  column->model().renamed = [this] { follow(); };
  column->list().named = [this, number](QAbstractItemDelegate::EndEditHint hint) { endNaming(number, hint); };
  column->list().menuWanted = [this, number](const QPoint& position) { showMenu(number, position); };
  column->list().installEventFilter(this);
  connect(&column->list(), &QAbstractItemView::doubleClicked, this, [this](const QModelIndex& index) {
    if (!index.flags().testFlag(Qt::ItemIsEditable)) enterValue();
  });
  m_columns.push_back(column);
  m_row->insertWidget(static_cast<int>(number), column, 1);
}

void BrowserView::followColumns() {
  bool hadFocus = false;
  while (m_columns.size() > m_browser.columnCount()) {
    hadFocus = hadFocus || m_columns.back()->list().hasFocus();
    m_row->removeWidget(m_columns.back());
    discard(m_columns.back());
    m_columns.pop_back();
  }
  while (m_columns.size() < m_browser.columnCount()) makeColumn();
  if (hadFocus) m_columns.back()->list().setFocus();
  for (BrowserColumn* const column : m_columns) column->follow();
}

/// Removing a row can close the editor of a name, whose end changes the browser again.
void BrowserView::follow() {
  m_hasChanged = true;
  if (m_isFollowing) return;
  m_isFollowing = true;
  while (std::exchange(m_hasChanged, false)) followOnce();
  m_isFollowing = false;
}

void BrowserView::followOnce() {
  const QWidget* const control = m_preview->control();
  const bool hadFocus =
      control && control->isVisible() && (control->hasFocus() || control->isAncestorOf(focusWidget()));
  const std::size_t columnsBefore = m_columns.size();
  followColumns();
  m_preview->setPreview(m_browser.preview());
  if (m_preview->control() != control || m_columns.size() != columnsBefore) orderTabs();
  if (hadFocus && m_preview->control() != control) {
    m_preview->control() ? enterValue() : list(m_browser.path().size()).setFocus();
  }
  fitHeight();
}

/// Sorts the tab order by column: Qt appends new controls at the end of the window.
void BrowserView::orderTabs() {
  QWidget* last = nullptr;
  const auto append = [&last](QWidget* stop) {
    if (last) setTabOrder(last, stop);
    last = stop;
  };
  for (const BrowserColumn* const column : m_columns) {
    for (QWidget* const stop : column->tabStops()) append(stop);
  }
  if (m_preview->control()) append(m_preview->control());
}

void BrowserView::fitHeight() {
  const BrowserColumn& first = *m_columns.front();
  const bool isEmpty = m_browser.items(0).empty();
  const QScrollBar& bar = *m_area->horizontalScrollBar();
  const int barHeight = bar.maximum() > 0 ? bar.sizeHint().height() : 0;
  m_area->setFixedHeight(first.headerHeight() + first.listHeight(isEmpty ? rowsIfEmpty : rowsInSight) + barHeight);
  m_preview->setHeaderHeight(first.headerHeight());
}

void BrowserView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) fitHeight();
}

/// Scrolls to the last column as soon as the layout knows its place, until the user scrolls.
void BrowserView::reveal() {
  m_isRevealing = true;
  QMetaObject::invokeMethod(this, &BrowserView::revealNow, Qt::QueuedConnection);
}

/// Keeps the column with the focus in sight, too.
void BrowserView::revealNow() {
  QEvent changed(QEvent::LayoutRequest);  // a column may just have been added
  QCoreApplication::sendEvent(m_area->widget(), &changed);
  scrollTo(m_preview->control() ? static_cast<QWidget&>(*m_preview) : *m_columns.back());
  for (const BrowserColumn* const column : m_columns) {
    if (column->isAncestorOf(focusWidget())) scrollTo(*column);
  }
}

/// Unlike `QScrollArea::ensureWidgetVisible`, which ignores that the scroll bar counts from the right then, also works
/// from right to left.
void BrowserView::scrollTo(const QWidget& part) {
  const int start = isRightToLeft() ? m_area->widget()->width() - part.geometry().right() - 1 : part.x();
  const int latest = std::min(start, start + part.width() - m_area->viewport()->width());
  QScrollBar& bar = *m_area->horizontalScrollBar();
  bar.setValue(std::clamp(bar.value(), latest, start));
}

void BrowserView::select(std::size_t column, std::size_t row) {
  m_browser.select(column, row);
  follow();
  reveal();
}

void BrowserView::showRefused() {
  const auto path = m_browser.refusedPath();
  if (!path || path->empty()) return;
  m_browser.select(*path);
  follow();
  const auto preview = m_browser.preview();
  preview && preview->problem ? enterValue() : list(path->size() - 1).setFocus();
  reveal();
  if (QScrollArea* const area = areaAround(*this)) area->ensureWidgetVisible(this);
}

// Keys

std::optional<BrowserAction> BrowserView::actionOf(const QKeyEvent& press) const {
  if (press.matches(QKeySequence::Copy)) return BrowserAction::Copy;
  if (press.matches(QKeySequence::Paste)) return BrowserAction::Paste;
  const auto modifiers = press.modifiers() & ~Qt::KeypadModifier;
  if (modifiers == Qt::ControlModifier && press.key() == Qt::Key_D) return BrowserAction::Duplicate;
  // Qt handles the menu key itself, but not everywhere this one.
  if (modifiers == Qt::ShiftModifier && press.key() == Qt::Key_F10) return BrowserAction::ShowMenu;
  if (modifiers != Qt::NoModifier) return std::nullopt;
  switch (press.key()) {
    case Qt::Key_Insert:
      return BrowserAction::Add;
#ifdef __APPLE__
    case Qt::Key_Backspace:
#endif
    case Qt::Key_Delete:
      return BrowserAction::Remove;
    case Qt::Key_F2:
      return BrowserAction::Rename;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return BrowserAction::Open;
    case Qt::Key_Right:
      return isRightToLeft() ? BrowserAction::Back : BrowserAction::Forward;
    case Qt::Key_Left:
      return isRightToLeft() ? BrowserAction::Forward : BrowserAction::Back;
    default:
      return std::nullopt;
  }
}

bool BrowserView::isAllowed(BrowserAction action) const {
  switch (action) {
    case BrowserAction::Copy:
    case BrowserAction::ShowMenu:
    case BrowserAction::Forward:
    case BrowserAction::Back:
      return true;
    default:
      return isEditable();
  }
}

bool BrowserView::eventFilter(QObject* watched, QEvent* event) {
  const auto found = std::find_if(m_columns.begin(), m_columns.end(),
                                  [watched](const BrowserColumn* column) { return &column->list() == watched; });
  if (found == m_columns.end()) return QWidget::eventFilter(watched, event);
  const auto column = static_cast<std::size_t>(found - m_columns.begin());
  if (event->type() == QEvent::FocusIn) {
    const auto reason = static_cast<const QFocusEvent*>(event)->reason();
    if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason) enterColumn(column);
  }
  const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
  if (!isKey || !(*found)->list().hasFocus()) return QWidget::eventFilter(watched, event);
  const auto action = actionOf(*static_cast<const QKeyEvent*>(event));
  if (!action || !isAllowed(*action)) return QWidget::eventFilter(watched, event);
  event->accept();  // otherwise the menu command with the same key would be carried out for the job
  if (event->type() == QEvent::KeyPress) perform(*action, column);
  return true;
}

void BrowserView::perform(BrowserAction action, std::size_t column) {
  switch (action) {
    case BrowserAction::Add:
      return add(column);
    case BrowserAction::Paste:
      return paste(column);
    case BrowserAction::ShowMenu:
      return showMenu(column, list(column).menuPosition());
    case BrowserAction::Forward:
      return goForward(column);
    case BrowserAction::Back:
      return goBack(column);
    default:
      break;
  }
  const auto row = m_browser.selected(column);
  if (!row) return;
  switch (action) {
    case BrowserAction::Remove:
      return remove(column, *row);
    case BrowserAction::Rename:
      return editName(column, *row);
    case BrowserAction::Open:
      return open(column, *row);
    case BrowserAction::EditValue:
      return enterValue();
    case BrowserAction::Copy:
      return copy(column, *row);
    case BrowserAction::Duplicate:
      return duplicate(column, *row);
    default:
      return;
  }
}

// Focus

/// Selects a row when the list gets the focus by keyboard, as no key would select the only row.
void BrowserView::enterColumn(std::size_t column) {
  if (!m_browser.selected(column) && !m_browser.items(column).empty()) m_browser.select(column, std::size_t{0});
  follow();
  if (!list(column).hasFocus()) list(column).setFocus();
  reveal();
}

void BrowserView::enterValue() {
  QWidget* const control = m_preview->control();
  if (!control) return;
  control->setFocus(Qt::TabFocusReason);  // selects the text
  reveal();
}

void BrowserView::goForward(std::size_t column) {
  if (!m_browser.selected(column)) return enterColumn(column);
  column + 1 < m_columns.size() ? enterColumn(column + 1) : enterValue();
}

void BrowserView::goBack(std::size_t column) {
  if (column > 0) enterColumn(column - 1);
}

// Edits

void BrowserView::open(std::size_t column, std::size_t row) {
  m_browser.isNameEditable(column, row) ? editName(column, row) : goForward(column);
}

void BrowserView::editName(std::size_t column, std::size_t row) {
  if (!m_browser.isNameEditable(column, row)) return;
  list(column).edit(list(column).model()->index(static_cast<int>(row), 0));
}

/// Removes a new item that got no name, unless the focus has gone on to its value. Tab goes there.
void BrowserView::endNaming(std::size_t column, QAbstractItemDelegate::EndEditHint hint) {
  const bool isEnded =
      hint == QAbstractItemDelegate::SubmitModelCache || hint == QAbstractItemDelegate::RevertModelCache;
  if (isEnded) dropUnnamed(column);
  if (hint == QAbstractItemDelegate::EditNextItem) goForward(column);
}

void BrowserView::dropUnnamed(std::size_t column) {
  for (std::size_t row = m_browser.items(column).size(); row-- > 0;) m_browser.cancelNaming(column, row);
  follow();
}

void BrowserView::add(std::size_t column) {
  const auto offers = m_browser.offers(column);
  if (offers.size() == 1) return addOffer(column, 0);
  const bool isAny = std::any_of(offers.begin(), offers.end(), [](const auto& offer) { return offer.isEnabled; });
  isAny ? m_menus.showOffers(column, m_columns[column]->menuPosition()) : m_context.platform.workspace.beep();
}

/// The name of the new item is edited at once or, if it is fixed, its value.
void BrowserView::addOffer(std::size_t column, std::size_t offer) {
  if (column >= m_columns.size()) return;
  list(column).setFocus();  // ends the naming of another item
  dropUnnamed(column);
  const auto row = m_browser.add(column, offer);
  if (!row) return;
  follow();
  if (m_browser.items(column)[*row].isNew) {
    editName(column, *row);
  } else {
    enterValue();
  }
  reveal();
}

void BrowserView::remove(std::size_t column, std::size_t row) {
  list(column).setFocus();
  m_browser.remove(column, row);
  follow();
}

void BrowserView::copy(std::size_t column, std::size_t row) {
  const auto text = m_browser.copy(column, row);
  text ? m_context.platform.workspace.copy(*text, std::nullopt) : m_context.platform.workspace.beep();
}

void BrowserView::paste(std::size_t column) {
  const std::string text = utf8(QGuiApplication::clipboard()->text());
  const auto invalid = m_browser.paste(column, text);
  follow();
  reveal();
  if (invalid) m_context.platform.interface.error(invalid->message, invalid->reason);
}

void BrowserView::duplicate(std::size_t column, std::size_t row) {
  m_browser.duplicate(column, row);
  follow();
  reveal();
}

void BrowserView::setType(std::size_t column, std::size_t row, BrowserItem::Type type) {
  m_browser.setType(column, row, type);
  follow();
  reveal();
}

void BrowserView::showMenu(std::size_t column, const QPoint& position) {
  m_menus.showForSelection(column, position, m_preview->control() != nullptr);
}

}  // namespace mirvel::ui
