#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/Image.h"
#include "core/mainwindow/JobMenu.h"
#include "core/mainwindow/JobSections.h"
#include "core/session/Mode.h"

namespace mirvel {

/// The view of grid mode, implemented by the shell.
class GridCollectionType {
 public:
  GridCollectionType() = default;
  virtual ~GridCollectionType() = default;
  GridCollectionType(const GridCollectionType&) = delete;
  GridCollectionType& operator=(const GridCollectionType&) = delete;

  /// Shows the new groups of `GridMode::sections`. Doesn't report a change of the selection, marks no item, and keeps
  /// the scroll position.
  virtual void reload() = 0;
  /// Marks this item alone, or none, without reporting it.
  virtual void mark(std::optional<IndexPath> path) = 0;
  /// Scrolls as little as necessary to make the item visible.
  virtual void scrollTo(IndexPath path) = 0;
  /// Updates one item after its name, icon or state has changed.
  virtual void reloadItem(IndexPath path) = 0;
  /// Repaints the items without reloading them.
  virtual void redraw() = 0;
};

/// The contents of an item of the grid; empty for an item out of range.
struct GridItem {
  std::string name = {};
  std::optional<Image> icon = {};          ///< none: the view shows a generic one
  std::optional<Image> noWriteBadge = {};  ///< for a job that can't be edited
  std::optional<Image> failedBadge = {};   ///< for a job whose last run has failed
  std::string toolTip = {};                ///< of the failure; empty if there is none
  bool isSecondary = false;                ///< the name is drawn in the secondary text colour
};

/// All jobs as icons in groups. For the main thread.
class GridMode final : public ModeType {
 public:
  /// Registers itself in the shell until destroyed. Both arguments must outlive the mode.
  GridMode(const WindowContext& context, GridCollectionType& collection);
  ~GridMode() override;

  void select(const URL& url) override;
  void select(const std::shared_ptr<Job>& job) override;
  void update(const Jobs& jobs) override;
  void deselect() override;
  void contextMenu(JobMenu& menu, const std::shared_ptr<Job>& job) override;
  void reloadJob(const std::shared_ptr<Job>& job) override;
  void redraw() override { m_collection.redraw(); }

  const Sections& sections() const { return m_sections.all(); }
  /// Name and item at a position; empty if it is out of range. The name is valid until the next `update`.
  std::string_view name(IndexPath path) const;
  GridItem item(IndexPath path) const;
  /// The title of a group; empty if it is out of range.
  std::string header(std::size_t section) const;

  /// To be called when the user has marked an item, or none: selects its job. If there are unsaved changes, asks about
  /// them each time instead; during a save, does nothing. In both cases the mark stays on the item.
  void selectionDidChange(std::optional<IndexPath> path);
  /// To be called when the user clicks the marked item. If its job isn't selected, because the first click was refused,
  /// tries to select it again.
  void markedItemWasClicked(IndexPath path);
  /// The context menu of an item. Empty if the path is out of range or the job hasn't been saved yet.
  JobMenu menuForItem(IndexPath path);
  /// The file to drag for these items: that of the first one. None if the drag is refused.
  std::optional<URL> dragItems(const std::vector<IndexPath>& paths) const;

 private:
  void show(IndexPath path);

  const WindowContext& m_context;
  GridCollectionType& m_collection;
  JobSections m_sections;
};

}  // namespace mirvel
