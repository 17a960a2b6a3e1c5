#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "core/base/Image.h"
#include "core/base/Signal.h"
#include "core/mainwindow/ListLayout.h"
#include "core/mainwindow/ListSort.h"
#include "core/mainwindow/ModeRules.h"
#include "core/ports/MainQueue.h"
#include "core/session/Mode.h"

namespace mirvel {

struct WindowContext;

/// The table of list mode, implemented by the shell.
class ListTableType {
 public:
  ListTableType() = default;
  virtual ~ListTableType() = default;
  ListTableType(const ListTableType&) = delete;
  ListTableType& operator=(const ListTableType&) = delete;

  /// Shows the new rows of `ListMode::content`. Doesn't report a change of the selection, and marks no row.
  virtual void reload() = 0;
  /// Marks this row alone, or none, without reporting it.
  virtual void mark(std::optional<std::size_t> row) = 0;
  virtual void scrollTo(std::size_t row) = 0;
  /// Updates the titles of the header.
  virtual void prepareHeaders() = 0;
  /// Updates one row after its contents have changed.
  virtual void reloadRow(std::size_t row) = 0;
  /// Repaints the rows without reloading them.
  virtual void redraw() = 0;
};

/// The contents of a cell.
struct ListCell {
  std::string text = {};  ///< empty for a cell with only an icon or a check box
  std::string toolTip = {};
  std::optional<Image> image = {};     ///< before the text, if there is one
  std::optional<Image> mark = {};      ///< in a corner of the image
  std::optional<bool> isChecked = {};  ///< the state of the check box; none if there is no check box
  bool isSecondary = false;            ///< drawn in the secondary text colour
};

/// The cell of a job in a column. Never fails: a job without a record has empty check boxes.
ListCell listCell(const WindowContext& context, const Job& job, ListColumn column);

/// The flat, sortable table of all jobs. For the main thread.
class ListMode final : public ModeType {
 public:
  /// Registers itself in the shell until destroyed. Both arguments must outlive the mode.
  ListMode(const WindowContext& context, ListTableType& table);
  ~ListMode() override;

  void select(const URL& url) override;
  void select(const std::shared_ptr<Job>& job) override;
  void update(const Jobs& jobs) override;
  void deselect() override;
  void contextMenu(JobMenu& menu, const std::shared_ptr<Job>& job) override;
  void reloadJob(const std::shared_ptr<Job>& job) override;
  void redraw() override { m_table.redraw(); }

  /// The rows: the filtered jobs in sort order.
  const Jobs& content() const;
  /// Empty for a row out of range.
  ListCell cell(ListColumn column, std::size_t row) const;

  /// To be called when the user has clicked a header. Sorts the rows, and keeps the selected job marked. With an
  /// unknown column the order stays as it is.
  void setSortDescriptor(SortDescriptor descriptor);
  /// To be called when the user has marked a row: selects its job. Ignores a row out of range.
  void selectionDidChange(std::size_t row);
  /// Whether the user may mark another row now; see `SelectionGuard`.
  bool selectionMayChange() { return m_guard.mayChange(); }
  /// The context menu of a row. Empty for a row out of range and for a job that hasn't been saved yet.
  JobMenu menuForRow(std::size_t row);
  /// The file to drag for these rows: that of the first one. None if the drag is refused.
  std::optional<URL> dragRows(const std::vector<std::size_t>& rows) const;

 private:
  std::optional<std::size_t> rowAt(const URL& url) const;
  void show(std::size_t row);
  void sort();
  bool isSortedByRuns() const;
  void runsChanged();
  void sortAgain();

  const WindowContext& m_context;
  ListTableType& m_table;
  SelectionGuard m_guard;
  mutable std::optional<Jobs> m_content;  // copied from the catalogue on first use
  std::optional<SortDescriptor> m_sortDescriptor;
  Delay m_delay;
  Limit m_limit;
  Subscription m_runsChanged, m_visibilityChanged;
};

}  // namespace mirvel
