#pragma once

#include <cstdint>
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

/// The outline of tree mode, implemented by the shell.
class TreeOutlineType {
 public:
  TreeOutlineType() = default;
  virtual ~TreeOutlineType() = default;
  TreeOutlineType(const TreeOutlineType&) = delete;
  TreeOutlineType& operator=(const TreeOutlineType&) = delete;

  /// Shows the new groups, expanded according to `TreeMode::isExpanded`. Doesn't report a change of the selection,
  /// marks no row, and keeps the scroll position.
  virtual void reload() = 0;
  /// Repaints the rows without reloading them.
  virtual void redraw() = 0;
  /// Expands or collapses a group.
  virtual void setExpanded(std::size_t section, bool isExpanded) = 0;
  /// Marks this row alone, or none, without reporting it.
  virtual void mark(std::optional<IndexPath> path) = 0;
  virtual void scrollTo(IndexPath path) = 0;
  /// Updates one row after its contents have changed.
  virtual void reloadRow(IndexPath path) = 0;
};

/// The contents of a row of the tree.
struct TreeCell {
  std::string text = {};
  std::string toolTip = {};
  std::optional<Image> image = {};
  std::optional<Image> mark = {};  ///< in a corner of the image
  std::string count = {};          ///< shown on the button of a group; empty for a job
  bool isSecondary = false;        ///< drawn in the secondary text colour
};

/// Which groups of the tree are expanded; kept across scans and program starts. All are expanded until the user
/// collapses one.
class TreeExpansion {
 public:
  /// The settings must outlive this object, and are read on first use.
  explicit TreeExpansion(Defaults& defaults) : m_defaults(defaults) {}

  bool isExpanded(Kind kind) const;
  /// Stores which of the `present` groups are expanded. Groups that aren't present count as collapsed from then on.
  void setExpanded(Kind kind, bool isExpanded, const Sections& present);

 private:
  using Kinds = std::set<std::int64_t>;  // raw values of `Kind`

  const std::optional<Kinds>& saved() const;

  Defaults& m_defaults;
  mutable bool m_isRead = false;
  mutable std::optional<Kinds> m_saved;
};

/// The jobs as children of their groups. For the main thread.
class TreeMode final : public ModeType {
 public:
  /// Registers itself in the shell until destroyed. Both arguments must outlive the mode.
  TreeMode(const WindowContext& context, TreeOutlineType& outline);
  ~TreeMode() override;

  void select(const URL& url) override;
  void select(const std::shared_ptr<Job>& job) override;
  void update(const Jobs& jobs) override;
  void deselect() override;
  void contextMenu(JobMenu& menu, const std::shared_ptr<Job>& job) override;
  void reloadJob(const std::shared_ptr<Job>& job) override;
  void redraw() override { m_outline.redraw(); }

  /// To be called when the outline is shown or hidden. While it is visible, it is repainted after each change of the
  /// catalogue.
  void didAppear();
  void didDisappear();

  const Sections& sections() const { return m_sections.all(); }
  /// Empty if the path is out of range.
  TreeCell cell(IndexPath path) const;

  bool isExpanded(std::size_t section) const;
  /// Expands or collapses a group, and stores its state in the settings. Ignores a group out of range.
  void setExpanded(std::size_t section, bool isExpanded);
  /// To be called when the button of a group is clicked.
  void toggle(std::size_t section) { setExpanded(section, !isExpanded(section)); }

  /// Whether the user may mark this row now; see `SelectionGuard`. Groups can't be marked.
  bool maySelect(IndexPath path);
  /// To be called when the user has marked a row: selects its job. Ignores groups and paths out of range.
  void selectionDidChange(IndexPath path);
  /// To be called when an assistive program presses a row: selects and marks its job. Returns false, without effect,
  /// for a group and if there are unsaved changes.
  bool accessibilityPress(IndexPath path);
  /// The context menu of a row; empty for a group and for a job that hasn't been saved yet.
  JobMenu menuForRow(IndexPath path);
  /// The file to drag for these rows: that of the first one. None if the drag is refused.
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
