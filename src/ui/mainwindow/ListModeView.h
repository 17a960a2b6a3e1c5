#pragma once

#include <QWidget>

#include "core/base/Signal.h"
#include "core/mainwindow/ListMode.h"
#include "core/ports/MainQueue.h"
#include "ui/mainwindow/ListTable.h"
#include "ui/mainwindow/ListTableModel.h"

class QMenu;

namespace mirvel::ui {

class IconLoader;

/// The view of list mode.
class ListModeView final : public QWidget, private ListTableType {
 public:
  ListModeView(const WindowContext& context, IconLoader& icons, QWidget* parent = nullptr);
  ~ListModeView() override;

  ListMode& mode() { return m_mode; }
  ListTable& table() { return *m_table; }
  /// Adds a checkable item for each column to a menu.
  void addColumnItems(QMenu& menu);

 private:
  void reload() override;
  void mark(std::optional<std::size_t> row) override;
  void scrollTo(std::size_t row) override;
  void prepareHeaders() override;
  void reloadRow(std::size_t row) override;
  void redraw() override;

  void connectTable();
  void setInitialWidths();
  int widthOfStates() const;
  void restoreLayout();
  void keepLayout();
  void keepSort(const SortDescriptor& descriptor);
  void sortBy(int column, Qt::SortOrder order);
  void toggleTableColumn(ListColumn column);
  void showRowMenu(const QPoint& position);
  void showHeaderMenu(const QPoint& position);

  const WindowContext& m_context;
  ListTable* m_table;
  ListMode m_mode;
  ListTableModel m_model;
  Subscription m_loadingChanged, m_hostChanged;
  std::string m_keptLayout;  ///< as stored in the settings, or the default before any change
  Delay m_delay;
};

}  // namespace mirvel::ui
