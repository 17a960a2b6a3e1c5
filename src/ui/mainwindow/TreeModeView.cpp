#include "ui/mainwindow/TreeModeView.h"

#include <QScrollBar>
#include <QVBoxLayout>

#include "core/mainwindow/WindowContext.h"
#include "core/mainwindow/WindowTexts.h"
#include "core/session/Foundation.h"
#include "core/session/Notifications.h"
#include "ui/mainwindow/JobView.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

TreeModeView::TreeModeView(const WindowContext& context, IconLoader& icons, QWidget* parent)
    : QWidget(parent),
      m_context(context),
      m_outline(new TreeOutline(this)),
      m_mode(context, *this),
      m_model(m_mode, icons) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(m_outline);
  setFocusProxy(m_outline);
  m_outline->setAccessibleName(qt(WindowTexts(context.foundation.localize).jobs()));
  m_outline->setModel(&m_model);
  connectOutline();
  expandGroups();
}

TreeModeView::~TreeModeView() {
  m_outline->setModel(nullptr);  // m_model is destroyed before the view
}

void TreeModeView::connectOutline() {
  m_outline->emptyLabel = [this] { return qt(emptyStateLabel(m_context).value_or("")); };
  m_outline->maySelect = [this](const QModelIndex& index) { return m_mode.maySelect(TreeModel::path(index)); };
  m_outline->accessibilityPress = [this](const QModelIndex& index) {
    return m_mode.accessibilityPress(TreeModel::path(index));
  };
  m_outline->selectionDidChange = [this](const QModelIndex& index) {
    m_mode.selectionDidChange(TreeModel::path(index));
  };
  m_outline->countWasClicked = [this](const QModelIndex& index) { m_mode.toggle(TreeModel::path(index).section); };
  m_loadingChanged = m_context.notifications.loadingChanged.subscribe([this] { m_outline->viewport()->update(); });
  const auto remember = [this](bool isExpanded) {
    return [this, isExpanded](const QModelIndex& index) {
      m_mode.setExpanded(TreeModel::path(index).section, isExpanded);
    };
  };
  connect(m_outline, &QTreeView::expanded, this, remember(true));
  connect(m_outline, &QTreeView::collapsed, this, remember(false));
  connect(m_outline, &QWidget::customContextMenuRequested, this, &TreeModeView::showRowMenu);
}

void TreeModeView::reload() {
  const int position = m_outline->verticalScrollBar()->value();
  m_model.reload();
  expandGroups();
  m_outline->doItemsLayout();
  m_outline->verticalScrollBar()->setValue(position);
}

void TreeModeView::expandGroups() {
  for (std::size_t section = 0; section < m_mode.sections().size(); ++section) {
    setExpanded(section, m_mode.isExpanded(section));
  }
}

void TreeModeView::redraw() {
  m_outline->viewport()->update();
}

void TreeModeView::setExpanded(std::size_t section, bool isExpanded) {
  m_outline->setExpanded(m_model.indexOf({section, IndexPath::group}), isExpanded);
}

void TreeModeView::mark(std::optional<IndexPath> path) {
  m_outline->mark(path ? m_model.indexOf(*path) : QModelIndex());
}

void TreeModeView::scrollTo(IndexPath path) {
  m_outline->scrollTo(m_model.indexOf(path));
}

void TreeModeView::reloadRow(IndexPath path) {
  m_model.reloadRow(m_model.indexOf(path));
}

void TreeModeView::showRowMenu(const QPoint& position) {
  const QModelIndex index = m_outline->indexAt(position);
  if (index.isValid()) popUp(m_mode.menuForRow(TreeModel::path(index)), *m_outline, position);
}

void TreeModeView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  m_mode.didAppear();
}

void TreeModeView::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  m_mode.didDisappear();
}

}  // namespace mirvel::ui
