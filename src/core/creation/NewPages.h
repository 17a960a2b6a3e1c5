#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/creation/Creation.h"
#include "core/creation/New.h"
#include "core/schedule/RuleEditor.h"

namespace mirvel {

/// The page on which the job gets its name, and is told for whom it runs. The sheet outlives it.
class NewNamePage {
 public:
  explicit NewNamePage(NewSheet& sheet) : m_sheet(sheet), m_chosen(sheet.job.kind) {}

  const std::string& name() const { return m_sheet.job.plist.name; }
  /// As typed; only an empty name is refused.
  void setName(std::string text);
  /// The kind whose button is on.
  std::optional<Kind> chosenKind() const { return m_chosen; }
  /// The button with that tag was clicked. One that no button has turns all of them off, and changes no kind.
  void kindChanged(int tag);
  bool mayGoOn() const { return !name().empty(); }
  /// The job of the sheet is another.
  void reset() { m_chosen = m_sheet.job.kind; }

 private:
  NewSheet& m_sheet;
  std::optional<Kind> m_chosen;
};

/// The page that asks in which way the user wants to say what runs. The sheet outlives it.
class NewWhatPage {
 public:
  explicit NewWhatPage(NewSheet& sheet) : m_sheet(sheet) {}

  std::string title() const;
  /// The button that is on.
  std::optional<New::Run> chosen() const { return m_sheet.job.runPage; }
  void choose(New::Run run);
  bool mayGoOn() const { return chosen().has_value(); }

 private:
  NewSheet& m_sheet;
};

/// The page that asks when the job runs. Hears of the changes of the rule editor for as long as it lives. The sheet
/// outlives it.
class NewWhenPage final : public ScheduledDelegate {
 public:
  explicit NewWhenPage(NewSheet& sheet) : m_sheet(sheet) {}

  bool isRunAtLoad() const { return m_sheet.job.plist.runAtLoad == true; }
  void runAtLoad(bool isOn);
  bool isKeptAlive() const { return m_sheet.job.plist.keepAlive.has_value(); }
  /// On, the job starts again after it ended with success.
  void keepAlive(bool isOn);
  /// Whether the rule editor is shown, and its rules count.
  bool isScheduled() const { return m_sheet.job.isScheduled; }
  /// On, the editor gets a row if it has none. Off, the rules stay in it.
  void scheduled(bool isOn);

  /// The folder whose changes start the job, as it is shown; a starting point may bring one. Empty: there is none.
  std::string watchedFolder() const;
  /// Asks for another one.
  void chooseWatchedFolder(bool showsHiddenFiles);

  /// The editor that shows the rules from now on, and gets those that there are. It is taken out before it goes.
  void setRuleEditor(Scheduled::RuleEditor* editor);
  /// The rule that keeps the job from being saved, which gets the keys. None: there is none that counts.
  std::optional<InvalidField> refuse() const;
  /// Sets the schedule of a record to the rules, if they count.
  void applyRules(jobfile::Plist& plist) const;
  /// Keeps the rules of the editor in the job of the sheet.
  void keepRules();
  /// The job of the sheet is another.
  void reset();

 private:
  void rulesDidChange() override;
  void fillEditor();

  NewSheet& m_sheet;
  Scheduled::RuleEditor* m_editor = nullptr;
  std::vector<Scheduled::RuleRow> m_rows;  ///< of the editor that was there before, with numbers that are no rules
};

}  // namespace mirvel
