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

/// The view of grid mode, as the logic sees it.
class GridCollectionType {
 public:
  GridCollectionType() = default;
  virtual ~GridCollectionType() = default;
  GridCollectionType(const GridCollectionType&) = delete;
  GridCollectionType& operator=(const GridCollectionType&) = delete;

  /// Shows the new groups. Reports no change of selection, leaves nothing marked, and keeps the scroll position.
  virtual void reload() = 0;
  /// Marks just this item, or none, without reporting it.
  virtual void mark(std::optional<IndexPath> path) = 0;
  /// Scrolls until the item is visible, at the nearest edge.
  virtual void scrollTo(IndexPath path) = 0;
  virtual void reloadItem(IndexPath path) = 0;
};

/// What an item of the grid shows.
struct GridItem {
  std::weak_ptr<Job> job = {};
  std::string name = {};
  std::optional<Image> icon = {};
  std::optional<Image> noWriteBadge = {};  ///< of a job that can't be changed
  bool isSecondary = false;                ///< its name is in the quieter text colour
};

/// All jobs as icons in groups. For the main thread.
class GridMode final : public ModeType {
 public:
  /// Registers itself in the shell for as long as it lives.
  GridMode(const WindowContext& context, GridCollectionType& collection);
  ~GridMode() override;

  void select(const URL& url) override;
  void select(const std::shared_ptr<Job>& job) override;
  void update(const Jobs& jobs) override;
  void deselect() override;
  void contextMenu(JobMenu& menu, const std::shared_ptr<Job>& job) override;
  void reloadJob(const std::shared_ptr<Job>& job) override;

  const Sections& sections() const { return m_sections.all(); }
  /// Both are empty beyond the groups.
  std::string_view name(IndexPath path) const;
  GridItem item(IndexPath path) const;
  /// The title over a group; empty beyond them.
  std::string header(std::size_t section) const;

  /// The user marked an item, or none. Asks about unsaved changes each time, and does nothing during a save; the mark
  /// stays where the user set it in both cases.
  void selectionDidChange(std::optional<IndexPath> path);
  /// The user clicked a marked item. If its job isn't shown, since the first click had no effect, this is another try.
  void markedItemWasClicked(IndexPath path);
  /// The menu for a click on an item.
  JobMenu menuForItem(IndexPath path);
  /// The file that a drag of these items carries: that of the first. None if the drag is refused.
  std::optional<URL> dragItems(const std::vector<IndexPath>& paths) const;

 private:
  void show(IndexPath path);

  const WindowContext& m_context;
  GridCollectionType& m_collection;
  JobSections m_sections;
};

}  // namespace mirvel
