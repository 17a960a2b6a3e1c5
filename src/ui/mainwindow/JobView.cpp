#include "ui/mainwindow/JobView.h"

#include <QAbstractItemView>
#include <QItemSelectionModel>
#include <QMimeData>
#include <QUrl>

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

QIcon jobIcon(IconLoader& icons, const std::optional<Image>& image) {
  const QIcon icon = image ? icons.icon(*image) : QIcon();
  return icon.isNull() ? icons.icon(Image::named("application-x-executable")) : icon;
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

}  // namespace mirvel::ui
