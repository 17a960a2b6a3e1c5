#pragma once

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/app/Program.h"

namespace mirvel::testdata {

/// Records every call from a program to its shell, in order. Registers itself as mode 0, the window, the detail pane
/// and the editor for as long as it exists.
class RecordingShell final : public ModeType, public DetailType, public EditType, public MainWindowType {
 public:
  explicit RecordingShell(Program& program) : m_program(program) {
    m_program.shell.modes.front() = this;
    m_program.shell.detail = this;
    m_program.shell.edit = this;
    m_program.shell.mainWindow = this;
    m_program.shell.terminate = [this] { note("terminate"); };
  }
  ~RecordingShell() override { m_program.shell = {}; }

  std::vector<std::string> events = {};
  Jobs shown = {};
  DetailTab tab = DetailTab::LaunchdDisplay;
  bool isSheetUp = false;
  std::optional<bool> isTitleVisible = {};
  std::function<void(bool isSaved)> saveEnded = {};  ///< of the last save

  void note(const std::string& event) { events.push_back(event); }
  std::size_t count(const std::string& event) const {
    return static_cast<std::size_t>(std::count(events.begin(), events.end(), event));
  }

  void select(const URL& url) override {
    note("select " + url.lastPathComponent());
    const bool isShown =
        std::any_of(shown.begin(), shown.end(), [&](const auto& job) { return job->url.equalTo(url); });
    const auto job = m_program.catalogue.jobAt(url);
    if (!isShown || !job || m_program.editing.hasUnsavedChanges()) return;
    m_program.selection.select(job);
  }
  void select(const std::shared_ptr<Job>& job) override { note("select job " + job->name); }
  void update(const Jobs& jobs) override {
    note("update, catalogue of " + std::to_string(m_program.catalogue.jobs().size()));
    shown = jobs;
  }
  void deselect() override { note("deselect"); }
  void contextMenu(JobMenu&, const std::shared_ptr<Job>& job) override { note("contextMenu " + job->name); }
  void reloadJob(const std::shared_ptr<Job>& job) override { note("reloadJob " + job->name); }

  void redraw() override { note("redraw"); }

  void updateDetail() override { note("updateDetail"); }
  void clearDetail() override { note("clearDetail"); }
  void updateIcon() override { note("updateIcon"); }
  DetailTab detailTab() const override { return tab; }
  void showDisplay() override { note("showDisplay"); }
  void showEdit() override { note("showEdit"); }

  void updateButtons() override { note(m_program.saving.isBusy() || m_program.scanning.isBusy() ? "busy" : "idle"); }
  void refreshEditedState() override { note("refreshEditedState"); }
  void save(std::function<void(bool)> ended) override {
    note("save");
    saveEnded = std::move(ended);
  }
  void discardEdits() override { note("discardEdits"); }
  void saveCompleted() override {
    note("saveCompleted");
    m_program.editing.setUnsavedChanges(false);
  }

  void setTitle(const std::string& title) override { note("title " + title); }
  void setTitleVisible(bool isVisible) override { isTitleVisible = isVisible; }
  void setEdited(bool) override {}
  void validateVisibleItems() override { note("validateVisibleItems"); }
  void showMode(Mode mode) override { note("showMode " + std::to_string(static_cast<int>(mode))); }
  void clearFilter() override { note("clearFilter"); }
  void focusOnFilter() override { note("focusOnFilter"); }
  bool hasFilterField() const override { return true; }
  bool hasSheet() const override { return isSheetUp; }
  bool isFullScreen() const override { return false; }
  void toggleFullScreen() override { note("toggleFullScreen"); }
  void showAbout() override { note("showAbout"); }

 private:
  Program& m_program;
};

}  // namespace mirvel::testdata
