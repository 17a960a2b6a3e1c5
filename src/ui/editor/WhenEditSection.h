#pragma once

#include <vector>

#include "core/editor/BoxClick.h"
#include "core/editor/GridTable.h"
#include "core/schedule/ScheduledController.h"
#include "ui/editor/WhenSection.h"

namespace mirvel::ui {

class GridTableViewController;

/// When a job runs, to be edited.
class WhenEditSection final : public WhenSection, private GridTableDelegate, private ScheduledDelegate {
 public:
  explicit WhenEditSection(Program& program);
  ~WhenEditSection() override;

  std::optional<InvalidField> refuse() override;

 private:
  void fill(const Launchd& launchd) override;
  void connectBoxes();
  void addConditions(const jobfile::Plist& plist);
  void addCondition(const char* title, const char* help, std::optional<bool> state,
                    void (*write)(jobfile::Plist&, BoxClick));
  void addTable(const jobfile::Plist& plist, std::string_view key, const char* help);
  void keepAlive(bool isOn);
  void scheduled(bool isOn);
  void updateScheduledHelp();
  void gridTableChanged(const std::string& key, const std::vector<GridTable::Item>& rows) override;
  void rulesDidChange() override;
  void fillRules(const jobfile::Plist& plist);
  void endSchedule();

  std::optional<bool> m_plainKeepAlive;            ///< while conditions stand in its place
  std::vector<GridTableViewController*> m_tables;  ///< those of conditions that are shown
};

}  // namespace mirvel::ui
