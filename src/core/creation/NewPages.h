#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/creation/Creation.h"
#include "core/creation/New.h"
#include "core/schedule/RuleEditor.h"

/// The pages of the sheet that creates a job, except the one for what it runs (`RunChoosers.h`). They edit the job of
/// the sheet, which must outlive them, and call `NewSheet::notifyChanged` after each change.
namespace mirvel {

/// The page for the job's name and for whom it runs.
class NewNamePage {
 public:
  explicit NewNamePage(NewSheet& sheet) : m_sheet(sheet), m_chosen(sheet.job.kind) {}

  const std::string& name() const { return m_sheet.job.plist.name; }
  /// Accepts any text; the name of the file is derived from it when the job is saved (`newFileURL`).
  void setName(std::string text);
  /// The kind whose button is checked.
  std::optional<Kind> chosenKind() const { return m_chosen; }
  /// Handles a click on the button with this tag. An unknown tag unchecks all buttons, and leaves the job's kind as it
  /// was.
  void kindChanged(int tag);
  /// Whether the page is complete: the name isn't empty.
  bool mayGoOn() const { return !name().empty(); }
  /// To be called after the job of the sheet has been replaced.
  void reset() { m_chosen = m_sheet.job.kind; }

 private:
  NewSheet& m_sheet;
  std::optional<Kind> m_chosen;
};

/// The page that asks what kind of thing the job runs.
class NewWhatPage {
 public:
  explicit NewWhatPage(NewSheet& sheet) : m_sheet(sheet) {}

  std::string title() const;
  /// Initially nullopt.
  std::optional<New::Run> chosen() const { return m_sheet.job.runPage; }
  void choose(New::Run run);
  bool mayGoOn() const { return chosen().has_value(); }

 private:
  NewSheet& m_sheet;
};

/// The page that asks when the job runs. It listens to the rule editor that was set last.
class NewWhenPage final : public ScheduledDelegate {
 public:
  explicit NewWhenPage(NewSheet& sheet) : m_sheet(sheet) {}

  bool isRunAtLoad() const { return m_sheet.job.plist.runAtLoad == true; }
  /// Sets `RunAtLoad` explicitly, also to false.
  void runAtLoad(bool isOn);
  /// Whether the record has `KeepAlive` in any form; a starting point may have set another one than `keepAlive` does.
  bool isKeptAlive() const { return m_sheet.job.plist.keepAlive.has_value(); }
  /// On, sets `KeepAlive` so that the job is started again whenever it exits successfully; off, removes the key.
  void keepAlive(bool isOn);
  /// Whether the rule editor is visible and its rules apply. Becomes false when the user deletes the last rule.
  bool isScheduled() const { return m_sheet.job.isScheduled; }
  /// On, adds a row if the editor has none. Off, the editor keeps its rows.
  void scheduled(bool isOn);

  /// The watched folder for display, such as "~/Downloads", which a starting point may have set. Empty if the job
  /// watches no folder.
  std::string watchedFolder() const;
  /// Asks the user for another folder.
  void chooseWatchedFolder(bool showsHiddenFiles);

  /// Fills the editor with the rules, and uses it from now on. Null must be passed before the editor is destroyed; its
  /// rows, including unfinished ones, are then kept for the next editor.
  void setRuleEditor(Scheduled::RuleEditor* editor);
  /// The first invalid rule, which also gets the focus; nullopt if there is none, or the rules don't apply.
  std::optional<InvalidField> refuse() const;
  /// Writes the rules to a record, if they apply.
  void applyRules(jobfile::Plist& plist) const;
  /// Stores the editor's rules in the job of the sheet.
  void keepRules();
  /// To be called after the job of the sheet has been replaced.
  void reset();

 private:
  void rulesDidChange() override;
  void fillEditor();

  NewSheet& m_sheet;
  Scheduled::RuleEditor* m_editor = nullptr;
  std::vector<Scheduled::RuleRow> m_rows;  ///< the rows of the previous editor, including unfinished ones
};

}  // namespace mirvel
