#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "core/base/Image.h"
#include "core/base/Signal.h"
#include "core/mainwindow/JobMenu.h"
#include "core/mainwindow/JobSections.h"
#include "core/mainwindow/ModeRules.h"
#include "core/session/Mode.h"
#include "core/settings/Defaults.h"

namespace mirvel {

/// The outline of tree mode, as the logic sees it.
class TreeOutlineType {
 public:
  TreeOutlineType() = default;
  virtual ~TreeOutlineType() = default;
  TreeOutlineType(const TreeOutlineType&) = delete;
  TreeOutlineType& operator=(const TreeOutlineType&) = delete;

  /// Shows the new groups, expanded as `isExpanded` says. Reports no change of selection, leaves no row marked, and
  /// keeps the scroll position.
  virtual void reload() = 0;
  /// Repaints the same rows.
  virtual void redraw() = 0;
  /// Opens or closes a group.
  virtual void setExpanded(std::size_t section, bool isExpanded) = 0;
  /// Marks just this row, or none, without reporting it.
  virtual void mark(std::optional<IndexPath> path) = 0;
  virtual void scrollTo(IndexPath path) = 0;
  virtual void reloadRow(IndexPath path) = 0;
};

/// What a row of the tree shows.
struct TreeCell {
  std::string text = {};
  std::string toolTip = {};
  std::optional<Image> image = {};
  std::string count = {};    ///< on the button of a group; empty for a job
  bool isSecondary = false;  ///< in the quieter text colour
  std::optional<URL> url = {};
};

/// Which groups of the tree are expanded, across scans and program starts. All are until the user closes one.
class TreeExpansion {
 public:
  /// The settings outlive it.
  explicit TreeExpansion(Defaults& defaults) : m_defaults(defaults) {}

  bool isExpanded(Kind kind) const;
  /// Saves which of the present groups are expanded, and forgets the state of groups that are gone.
  void setExpanded(Kind kind, bool isExpanded, const Sections& present);

 private:
  using Kinds = std::set<int>;

  const std::optional<Kinds>& saved() const;

  Defaults& m_defaults;
  mutable bool m_isRead = false;
  mutable std::optional<Kinds> m_saved;  // by their numbers
};

/// The jobs under their groups. For the main thread.
class TreeMode final : public ModeType {
 public:
  /// Registers itself in the shell for as long as it lives.
  TreeMode(const WindowContext& context, TreeOutlineType& outline);
  ~TreeMode() override;

  void select(const URL& url) override;
  void select(const std::shared_ptr<Job>& job) override;
  void update(const Jobs& jobs) override;
  void deselect() override;
  void contextMenu(JobMenu& menu, const std::shared_ptr<Job>& job) override;
  void reloadJob(const std::shared_ptr<Job>& job) override;

  /// While the outline is visible it is repainted after each change of the catalogue.
  void didAppear();
  void didDisappear();

  const Sections& sections() const { return m_sections.all(); }
  /// Empty beyond the rows.
  TreeCell cell(IndexPath path) const;

  bool isExpanded(std::size_t section) const;
  /// A group was opened or closed. It is remembered, also for the next start.
  void setExpanded(std::size_t section, bool isExpanded);
  /// The button of a group was clicked.
  void toggle(std::size_t section) { setExpanded(section, !isExpanded(section)); }

  /// Whether the user may mark this row now: never a group.
  bool maySelect(IndexPath path);
  /// The user marked a row. Ignores groups and paths out of range.
  void selectionDidChange(IndexPath path);
  /// An assistive program pressed a row: selects its job. False if that isn't possible.
  bool accessibilityPress(IndexPath path);
  /// The menu for a click on a row; empty for a group.
  JobMenu menuForRow(IndexPath path);
  /// The file that a drag of these rows carries: that of the first. None if the drag is refused.
  std::optional<URL> dragRows(const std::vector<IndexPath>& paths) const;

 private:
  TreeCell groupCell(const Kind::Section& section) const;
  void show(IndexPath path);

  const WindowContext& m_context;
  TreeOutlineType& m_outline;
  JobSections m_sections;
  SelectionGuard m_guard;
  TreeExpansion m_expansion;
  Subscription m_jobsUpdated;
};

}  // namespace mirvel
