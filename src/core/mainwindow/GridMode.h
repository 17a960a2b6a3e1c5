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

/// The view of grid mode, as far as its logic touches it.
class GridCollectionType {
 public:
  GridCollectionType() = default;
  virtual ~GridCollectionType() = default;
  GridCollectionType(const GridCollectionType&) = delete;
  GridCollectionType& operator=(const GridCollectionType&) = delete;

  /// The groups are others now. Tells of no change of selection, leaves nothing marked, and stays at its place.
  virtual void reload() = 0;
  /// Marks just this item, or none, without telling of it.
  virtual void mark(std::optional<IndexPath> path) = 0;
  /// Shows the item at the edge that is nearest.
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
  /// Puts itself in as a mode of the program for as long as it lives.
  GridMode(Program& program, GridCollectionType& collection);
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

  /// The user marked an item, or none. With unsaved changes the user is asked about them each time, and while the
  /// program is busy nothing happens; the mark stays where it was set in both cases.
  void selectionDidChange(std::optional<IndexPath> path);
  /// The user clicked an item that is marked already. It may be marked without its job being shown, after a click that
  /// came to nothing; then this is another try.
  void markedItemWasClicked(IndexPath path);
  /// The menu for a click on an item.
  JobMenu menuForItem(IndexPath path);
  /// What a drag of these items takes along: the file of the first. None: the drag is refused.
  std::optional<URL> dragItems(const std::vector<IndexPath>& paths) const;

 private:
  void show(IndexPath path);

  Program& m_program;
  GridCollectionType& m_collection;
  JobSections m_sections;
};

}  // namespace mirvel
