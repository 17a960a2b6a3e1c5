#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/base/Image.h"
#include "core/base/Signal.h"
#include "core/mainwindow/JobMenu.h"
#include "core/mainwindow/JobSections.h"
#include "core/mainwindow/ModeRules.h"
#include "core/mainwindow/TreeExpansion.h"
#include "core/session/Mode.h"

namespace mirvel {

/// The outline of tree mode, as far as its logic touches it.
class TreeOutlineType {
 public:
  TreeOutlineType() = default;
  virtual ~TreeOutlineType() = default;
  TreeOutlineType(const TreeOutlineType&) = delete;
  TreeOutlineType& operator=(const TreeOutlineType&) = delete;

  /// The groups are others now, and open as `isExpanded` tells. Tells of no change of selection, leaves no row marked,
  /// and stays at its place.
  virtual void reload() = 0;
  /// The same rows may look different.
  virtual void redraw() = 0;
  /// Opens or closes a group.
  virtual void setExpanded(std::size_t section, bool isExpanded) = 0;
  /// Marks just this row, or none, without telling of it.
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

/// The jobs under their groups. For the main thread.
class TreeMode final : public ModeType {
 public:
  /// Puts itself in as a mode of the program for as long as it lives.
  TreeMode(Program& program, TreeOutlineType& outline);
  ~TreeMode() override;

  void select(const URL& url) override;
  void select(const std::shared_ptr<Job>& job) override;
  void update(const Jobs& jobs) override;
  void deselect() override;
  void contextMenu(JobMenu& menu, const std::shared_ptr<Job>& job) override;
  void reloadJob(const std::shared_ptr<Job>& job) override;

  /// While the outline is visible it follows what becomes of the catalogue.
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
  /// The user marked a row; a group, or one that isn't there, does nothing.
  void selectionDidChange(IndexPath path);
  /// A row was pressed by an assistive program: its job becomes the selected one. False: it doesn't.
  bool accessibilityPress(IndexPath path);
  /// The menu for a click on a row; empty for a group.
  JobMenu menuForRow(IndexPath path);
  /// What a drag of these rows takes along: the file of the first. None: the drag is refused.
  std::optional<URL> dragRows(const std::vector<IndexPath>& paths) const;

 private:
  TreeCell groupCell(const Kind::Section& section) const;
  void show(IndexPath path);

  Program& m_program;
  TreeOutlineType& m_outline;
  JobSections m_sections;
  SelectionGuard m_guard;
  TreeExpansion m_expansion;
  Subscription m_jobsUpdated;
};

}  // namespace mirvel
