#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "core/base/Image.h"
#include "core/mainwindow/ListColumn.h"
#include "core/mainwindow/ListSort.h"
#include "core/mainwindow/ModeRules.h"
#include "core/ports/MainQueue.h"
#include "core/session/Mode.h"

namespace mirvel {

struct WindowContext;

/// The table of list mode, as the logic sees it.
class ListTableType {
 public:
  ListTableType() = default;
  virtual ~ListTableType() = default;
  ListTableType(const ListTableType&) = delete;
  ListTableType& operator=(const ListTableType&) = delete;

  /// Shows the new rows. Reports no change of selection, and leaves no row marked.
  virtual void reload() = 0;
  /// Marks just this row, or none.
  virtual void mark(std::optional<std::size_t> row) = 0;
  virtual void scrollTo(std::size_t row) = 0;
  /// Puts the titles into the header.
  virtual void prepareHeaders() = 0;
};

/// What a cell of the table shows.
struct ListCell {
  std::string text = {};
  std::string toolTip = {};
  std::optional<Image> image = {};
  std::optional<bool> isChecked = {};  ///< of a cell with a check box; absent in others
  bool isSecondary = false;            ///< in the quieter text colour
};

/// What the table shows of a job in a column.
ListCell listCell(const WindowContext& context, const Job& job, Column::List column);

/// The flat, sortable table of all jobs. For the main thread.
class ListMode final : public ModeType {
 public:
  /// Registers itself in the shell for as long as it lives.
  ListMode(const WindowContext& context, ListTableType& table);
  ~ListMode() override;

  void select(const URL& url) override;
  void select(const std::shared_ptr<Job>& job) override;
  void update(const Jobs& jobs) override;
  void deselect() override;
  void contextMenu(JobMenu& menu, const std::shared_ptr<Job>& job) override;

  /// The rows: the jobs as filtered and sorted.
  const Jobs& content() const;
  ListCell cell(Column::List column, std::size_t row) const;

  /// The user clicked a header. Only the first descriptor counts; with none the rows stay as they are.
  void setSortDescriptors(std::vector<SortDescriptor> descriptors);
  /// The user marked a row. Ignores an index out of range.
  void selectionDidChange(std::size_t row);
  bool selectionMayChange() { return m_guard.mayChange(); }
  /// The menu for a click on a row. Empty beyond the rows and for a job without a file.
  JobMenu menuForRow(std::size_t row);
  /// The file that a drag of these rows carries: that of the first. None if the drag is refused.
  std::optional<URL> dragRows(const std::vector<std::size_t>& rows) const;

 private:
  std::optional<std::size_t> rowAt(const URL& url) const;
  void show(std::size_t row);
  void sort();

  const WindowContext& m_context;
  ListTableType& m_table;
  SelectionGuard m_guard;
  mutable std::optional<Jobs> m_content;  // taken from the catalogue when first asked for
  std::vector<SortDescriptor> m_sortDescriptors;
  Delay m_delay;
};

/// The visible columns after a click on one in the menu. None if it is the last visible one, which stays.
std::optional<std::vector<Column::List>> toggled(std::vector<Column::List> visible, Column::List column);

}  // namespace mirvel
