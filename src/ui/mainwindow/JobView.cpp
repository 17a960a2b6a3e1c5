#include "ui/mainwindow/JobView.h"

#include <QAbstractItemView>
#include <QAbstractScrollArea>
#include <QMenu>
#include <QMimeData>
#include <QUrl>

#include "core/mainwindow/JobMenu.h"
#include "ui/support/Controls.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

/// A selection model that asks before another row is selected.
class GuardedSelection final : public QItemSelectionModel {
 public:
  GuardedSelection(QAbstractItemModel* model, std::function<bool()> mayChange, QObject* parent)
      : QItemSelectionModel(model, parent), m_mayChange(std::move(mayChange)) {}

  using QItemSelectionModel::select;

  void setCurrentIndex(const QModelIndex& index, SelectionFlags command) override {
    if (index.row() == currentIndex().row() || m_mayChange()) QItemSelectionModel::setCurrentIndex(index, command);
  }
  void select(const QItemSelection& selection, SelectionFlags command) override {
    // A model reset clears the selection with an empty one.
    const bool isHarmless = selection.isEmpty() || selection == this->selection();
    if (isHarmless || m_mayChange()) QItemSelectionModel::select(selection, command);
  }

 private:
  std::function<bool()> m_mayChange;
};

}  // namespace

void prepareJobView(QAbstractItemView& view) {
  view.setSelectionMode(QAbstractItemView::SingleSelection);
  view.setEditTriggers(QAbstractItemView::NoEditTriggers);
  view.setDragEnabled(true);
  view.setDragDropMode(QAbstractItemView::DragOnly);
  view.setContextMenuPolicy(Qt::CustomContextMenu);
}

void guardSelection(QAbstractItemView& view, std::function<bool()> mayChange, std::function<void(int)> didChange) {
  auto* selection = new GuardedSelection(view.model(), std::move(mayChange), &view);
  view.setSelectionModel(selection);
  QObject::connect(selection, &QItemSelectionModel::selectionChanged, &view,
                   [selection, didChange = std::move(didChange)] {
                     const QModelIndexList rows = selection->selectedRows();
                     if (!rows.isEmpty()) didChange(rows.front().row());
                   });
}

QItemSelectionModel::SelectionFlags keepingSelection(const QModelIndex& index,
                                                     QItemSelectionModel::SelectionFlags command) {
  const bool leavesNothing =
      !index.flags().testFlag(Qt::ItemIsSelectable) || command.testFlag(QItemSelectionModel::Deselect);
  return leavesNothing ? QItemSelectionModel::NoUpdate : command;
}

QRect cornerMark(const QRect& icon, Qt::LayoutDirection direction) {
  const int side = icon.width() * 5 / 8;
  const int overhang = icon.width() / 8;
  QRect mark(0, 0, side, side);
  mark.moveBottom(icon.bottom() + overhang);
  mark.moveRight(icon.right() + overhang);
  if (direction == Qt::RightToLeft) mark.moveLeft(icon.left() - overhang);
  return mark;
}

QStringList fileDragTypes() {
  return {QStringLiteral("text/uri-list")};
}

QMimeData* fileDrag(const std::optional<URL>& url) {
  const auto path = url ? qtPath(url->path()) : std::nullopt;
  if (!path) return nullptr;
  auto* data = new QMimeData;
  data->setUrls({QUrl::fromLocalFile(*path)});
  return data;
}

namespace {

/// Escapes ampersands, which would otherwise mark a shortcut key.
QString itemTitle(const std::string& text) {
  return literalTitle(qt(text));
}

void addTitle(QMenu& menu, const std::string& text) {
  QAction* title = menu.addAction(itemTitle(text));
  title->setEnabled(false);
  QFont font = menu.font();
  font.setBold(true);
  title->setFont(font);
}

void addItems(QMenu& menu, const JobMenu& items) {
  for (const JobMenu::Item& item : items.items()) {
    switch (item.type) {
      case JobMenu::Item::Type::Title:
        addTitle(menu, item.title);
        break;
      case JobMenu::Item::Type::Separator:
        menu.addSeparator();
        break;
      case JobMenu::Item::Type::Action: {
        QAction* const action = menu.addAction(itemTitle(item.title));
        QObject::connect(action, &QAction::triggered, &menu, item.action);
        action->setEnabled(item.whyDisabled.empty());
        action->setToolTip(qt(item.whyDisabled));
        break;
      }
    }
  }
}

}  // namespace

void popUp(const JobMenu& items, QAbstractScrollArea& view, const QPoint& position) {
  if (items.items().empty()) return;
  auto* menu = new QMenu(&view);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->setToolTipsVisible(true);
  addItems(*menu, items);
  menu->popup(view.viewport()->mapToGlobal(position));
}

}  // namespace mirvel::ui
