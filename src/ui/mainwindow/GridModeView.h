#pragma once

#include <QWidget>

#include "core/base/Signal.h"
#include "core/mainwindow/GridMode.h"
#include "ui/mainwindow/GridModel.h"
#include "ui/mainwindow/GridView.h"

namespace mirvel::ui {

class IconLoader;

/// The view of grid mode.
class GridModeView final : public QWidget, private GridCollectionType {
 public:
  /// `context` and `icons` must outlive the view.
  GridModeView(const WindowContext& context, IconLoader& icons, QWidget* parent = nullptr);
  ~GridModeView() override;

  GridMode& mode() { return m_mode; }
  GridView& grid() { return *m_grid; }

 private:
  void reload() override;
  void mark(std::optional<IndexPath> path) override;
  void scrollTo(IndexPath path) override;
  void reloadItem(IndexPath path) override;
  void redraw() override;

  void connectGrid();
  void takeGroups();
  void showItemMenu(const QPoint& position);

  const WindowContext& m_context;
  IconLoader& m_icons;
  GridView* m_grid;
  GridMode m_mode;
  GridModel m_model;
  Subscription m_loadingChanged;
};

}  // namespace mirvel::ui
