#include "ui/mainwindow/TimelineModeView.h"

#include <QHideEvent>
#include <QShowEvent>
#include <QVBoxLayout>

#include "core/mainwindow/JobMenu.h"
#include "core/mainwindow/WindowContext.h"
#include "core/mainwindow/WindowTexts.h"
#include "core/session/Foundation.h"
#include "core/session/Notifications.h"
#include "ui/mainwindow/JobView.h"
#include "ui/mainwindow/TimelineDelegate.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

TimelineModeView::TimelineModeView(const WindowContext& context, QWidget* parent, TimelineMode::Zone zone)
    : QWidget(parent),
      m_context(context),
      m_table(new TimelineTable(this)),
      m_delegate(new TimelineDelegate([this] { return sampleTimes(); }, m_table)),
      m_mode(context, *this, std::move(zone)),
      m_model(m_mode, context.foundation.localize) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(m_table);
  setFocusProxy(m_table);
  m_table->setFrameShape(QFrame::NoFrame);
  m_table->setAccessibleName(qt(WindowTexts(context.foundation.localize).timeline()));
  m_table->setItemDelegate(m_delegate);
  m_table->setModel(&m_model);
  m_delegate->measure(m_table->font());
  connectTable();
}

TimelineModeView::~TimelineModeView() {
  m_table->appearanceDidChange = {};
  m_table->setModel(nullptr);  // m_model is destroyed before the table
}

void TimelineModeView::connectTable() {
  m_table->emptyLabel = [this] { return qt(emptyStateLabel(m_context).value_or("")); };
  m_table->selectionMayChange = [this] { return m_mode.selectionMayChange(); };
  m_table->selectionDidChange = [this](int row) { m_mode.selectionDidChange(static_cast<std::size_t>(row)); };
  m_table->appearanceDidChange = [this] { m_delegate->measure(m_table->font()); };
  m_table->isFoldingPoint = [this](const QModelIndex& index, const QPoint& point) {
    const bool isFold = index.data(TimelineModel::CellRole).value<TimelineCell>().kind == TimelineKind::Fold;
    return isFold && m_delegate->foldingRect(m_table->visualRect(index), layoutDirection()).contains(point);
  };
  m_table->fold = [this](int row, std::optional<bool> isOpen) {
    const auto index = static_cast<std::size_t>(row);
    return m_mode.setOpen(index, isOpen ? *isOpen : !m_mode.cell(index).isOpen);
  };
  m_loadingChanged = m_context.notifications.loadingChanged.subscribe([this] { m_table->viewport()->update(); });
  connect(m_table, &QWidget::customContextMenuRequested, this, &TimelineModeView::showRowMenu);
}

QStringList TimelineModeView::sampleTimes() const {
  QStringList times;
  for (const std::string& time : m_mode.sampleTimes()) times.push_back(qt(time));
  return times;
}

void TimelineModeView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (!event->spontaneous()) m_table->showNow();  // not when the window was minimised
  m_mode.setVisible(true);
}

void TimelineModeView::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  m_mode.setVisible(false);
}

std::optional<std::size_t> TimelineModeView::anchor() const {
  const auto place = m_table->anchor();
  return place ? std::optional(static_cast<std::size_t>(place->row)) : std::nullopt;
}

void TimelineModeView::setRows() {
  const TimelineArray& rows = m_mode.timelineArray();
  m_table->setRows({.count = rows.count(), .groups = rows.groups(), .now = rows.now()});
}

void TimelineModeView::reload(const std::optional<Anchor>& anchor) {
  const auto place = m_table->anchor();
  m_table->quietly([this] { m_model.reload(); });
  setRows();
  if (anchor && place) m_table->put({static_cast<int>(anchor->after), place->top});
}

void TimelineModeView::rowsDidChange(const TimelineArray::Change& change, std::optional<std::size_t> kept) {
  auto place = kept ? m_table->placeOf(static_cast<int>(*kept)) : m_table->anchor();
  m_table->quietly([&] { m_model.rowsDidChange(change); });
  setRows();
  if (!place) return;
  const auto first = static_cast<int>(change.first), removed = static_cast<int>(change.removed);
  if (place->row >= first + removed) {
    place->row += static_cast<int>(change.inserted) - removed;
  } else if (place->row >= first) {
    place->row = first;
  }
  m_table->put(*place);
}

void TimelineModeView::redraw() {
  m_table->viewport()->update();
}

void TimelineModeView::mark(std::optional<std::size_t> row) {
  m_table->mark(row ? static_cast<int>(*row) : -1);
}

void TimelineModeView::scrollTo(std::size_t row) {
  m_table->scrollTo(m_model.index(static_cast<int>(row)));
}

void TimelineModeView::showRowMenu(const QPoint& position) {
  const QModelIndex index = m_table->indexAt(position);
  if (index.isValid()) popUp(m_mode.menuForRow(static_cast<std::size_t>(index.row())), *m_table, position);
}

}  // namespace mirvel::ui
