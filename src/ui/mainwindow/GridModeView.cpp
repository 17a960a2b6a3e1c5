#include "ui/mainwindow/GridModeView.h"

#include <QScrollBar>
#include <QVBoxLayout>

#include "core/catalogue/KindTexts.h"
#include "core/mainwindow/ModeRules.h"
#include "core/mainwindow/WindowContext.h"
#include "core/mainwindow/WindowTexts.h"
#include "core/session/Foundation.h"
#include "core/session/Notifications.h"
#include "ui/mainwindow/JobView.h"
#include "ui/support/IconLoader.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

GridModeView::GridModeView(const WindowContext& context, IconLoader& icons, QWidget* parent)
    : QWidget(parent),
      m_context(context),
      m_icons(icons),
      m_grid(new GridView(this)),
      m_mode(context, *this),
      m_model(context.foundation.localize, m_mode, icons) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(m_grid);
  setFocusProxy(m_grid);
  m_grid->setAccessibleName(qt(WindowTexts(context.foundation.localize).jobs()));
  takeGroups();
  m_grid->setModel(&m_model);
  connectGrid();
}

GridModeView::~GridModeView() {
  m_grid->setModel(nullptr);  // m_model is destroyed before the view
}

void GridModeView::connectGrid() {
  m_grid->emptyLabel = [this] { return qt(emptyStateLabel(m_context).value_or("")); };
  m_grid->selectionDidChange = [this](int row) { m_mode.selectionDidChange(m_model.path(row)); };
  m_grid->markedItemWasClicked = [this](int row) { m_mode.markedItemWasClicked(m_model.path(row)); };
  m_loadingChanged = m_context.notifications.loadingChanged.subscribe([this] { m_grid->viewport()->update(); });
  connect(m_grid, &QWidget::customContextMenuRequested, this, &GridModeView::showItemMenu);
}

void GridModeView::takeGroups() {
  std::vector<GridGroup> groups;
  for (std::size_t section = 0; section < m_mode.sections().size(); ++section) {
    const Kind::Section& group = m_mode.sections()[section];
    groups.push_back({.title = qt(m_mode.header(section)),
                      .icon = m_icons.icon(m_context.kinds.icon(group.kind)),
                      .count = static_cast<int>(group.jobs.size())});
  }
  m_grid->setGroups(std::move(groups));
}

void GridModeView::reload() {
  const int position = m_grid->verticalScrollBar()->value();
  takeGroups();
  m_model.reload();
  m_grid->doItemsLayout();
  m_grid->verticalScrollBar()->setValue(position);
}

void GridModeView::mark(std::optional<IndexPath> path) {
  m_grid->mark(path ? m_model.row(*path) : -1);
}

void GridModeView::scrollTo(IndexPath path) {
  m_grid->scrollTo(m_model.index(m_model.row(path)));
}

void GridModeView::reloadItem(IndexPath path) {
  m_model.reloadRow(m_model.row(path));
}

void GridModeView::redraw() {
  m_grid->viewport()->update();
}

void GridModeView::showItemMenu(const QPoint& position) {
  const QModelIndex index = m_grid->indexAt(position);
  if (index.isValid()) popUp(m_mode.menuForItem(m_model.path(index.row())), *m_grid, position);
}

}  // namespace mirvel::ui
