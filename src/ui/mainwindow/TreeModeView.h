#pragma once

#include <QWidget>

#include "core/base/Signal.h"
#include "core/mainwindow/TreeMode.h"
#include "ui/mainwindow/TreeModel.h"
#include "ui/mainwindow/TreeOutline.h"

namespace mirvel::ui {

class IconLoader;

/// The view of tree mode.
class TreeModeView final : public QWidget, private TreeOutlineType {
 public:
  /// `context` and `icons` must outlive the view.
  TreeModeView(const WindowContext& context, IconLoader& icons, QWidget* parent = nullptr);
  ~TreeModeView() override;

  TreeMode& mode() { return m_mode; }
  TreeOutline& outline() { return *m_outline; }

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void reload() override;
  void redraw() override;
  void setExpanded(std::size_t section, bool isExpanded) override;
  void mark(std::optional<IndexPath> path) override;
  void scrollTo(IndexPath path) override;
  void reloadRow(IndexPath path) override;

  void connectOutline();
  void expandGroups();
  void showRowMenu(const QPoint& position);

  const WindowContext& m_context;
  TreeOutline* m_outline;
  TreeMode m_mode;
  TreeModel m_model;
  Subscription m_loadingChanged;
};

}  // namespace mirvel::ui
