#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/creation/New.h"
#include "core/editor/RunField.h"

/// The page for what a new job runs. Like the other pages, its choosers edit the job of the sheet, which must outlive
/// them, and call `NewSheet::notifyChanged` after each change. Each sets the record's command; they don't write files
/// except a script that the user saves.
namespace mirvel {

struct InstalledApplication;

/// Chooses one kind of thing that the job can run.
class RunType {
 public:
  RunType() = default;
  virtual ~RunType() = default;
  RunType(const RunType&) = delete;
  RunType& operator=(const RunType&) = delete;

  /// Resets the input. The record keeps its command until another one is entered.
  virtual void clear() = 0;
  /// Whether the job has something to run, so that the user can go on to the next page.
  virtual bool mayGoOn() const = 0;
};

/// Chooses an application. The job becomes interactive (`ProcessType`), so that the system doesn't throttle it.
class NewRunApplication final : public RunType {
 public:
  explicit NewRunApplication(NewSheet& sheet) : m_sheet(sheet) {}

  /// The name or path of the chosen application for display; empty if none is chosen.
  const std::string& shown() const { return m_sheet.job.shownApplication; }
  /// Compares by the path of the desktop entry.
  bool isChosen(const InstalledApplication& application) const;
  /// Asks the user for a program file.
  void choose(bool showsHiddenFiles);
  void choose(const InstalledApplication& application);

  void clear() override;
  bool mayGoOn() const override { return !shown().empty(); }

 private:
  void take(const std::filesystem::path& file, std::string shown);

  NewSheet& m_sheet;
};

/// Chooses a script file, or lets the user write one.
class NewRunScript final : public RunType {
 public:
  using State = New::Script::State;
  static constexpr std::string_view defaultText = "#!/bin/zsh\n\n";

  explicit NewRunScript(NewSheet& sheet) : m_sheet(sheet) {}

  State state() const { return script().state; }
  /// Whether the text is visible and can be saved.
  bool isWriting() const { return state() == State::CreateNew; }
  const std::string& text() const { return script().text; }
  SyntaxType syntaxType() const { return script().syntaxType; }
  /// The byte offset at which typing starts: the end of the default text. Nullopt if the text has been changed.
  std::optional<std::size_t> insertionPoint() const;
  /// The titles of the buttons: "Choose…", or the path of the script once there is one.
  std::string chooseTitle() const;
  std::string createNewTitle() const;
  /// Whether the buttons are checked.
  bool isChooseOn() const { return state() == State::Ready; }
  bool isCreateNewOn() const { return isWriting(); }

  /// Starts a new script. Does nothing if one is being written already.
  void createNew();
  /// Sets the text as it is being written. The syntax follows the text; if its language isn't recognised, the syntax
  /// stays the same.
  void setText(std::string text);
  /// Asks the user for an existing script.
  void choose(bool showsHiddenFiles);
  /// Asks the user for a file, and writes the text to it. If this fails, shows an error and changes nothing. Does
  /// nothing if the text is empty.
  void save();

  void clear() override;
  /// Only once the script has a file: what is being written must be saved first.
  bool mayGoOn() const override { return state() == State::Ready; }

 private:
  New::Script& script() { return m_sheet.job.script; }
  const New::Script& script() const { return m_sheet.job.script; }
  void becomeReady(const std::filesystem::path& file, std::string run);

  NewSheet& m_sheet;
};

/// Lets the user type a command.
class NewRunCommand final : public RunType {
 public:
  explicit NewRunCommand(NewSheet& sheet);

  const std::string& text() const { return m_sheet.job.command; }
  /// Sets the text as typed. The record gets it in its repaired form, unless the user has switched repairs off.
  void setText(std::string text);
  /// The files named in the command that don't exist. Determined on another thread, since disks may be slow, so this
  /// can change some time after `setText`. Always empty if the user doesn't want invalid data to be marked.
  const std::vector<std::filesystem::path>& missingFiles() const { return m_missing; }

  void clear() override;
  bool mayGoOn() const override { return !text().empty(); }

 private:
  void check();

  NewSheet& m_sheet;
  FileCheck m_check;
  std::vector<std::filesystem::path> m_missing;
};

/// The page itself, which shows one of the choosers.
class NewRunPage {
 public:
  explicit NewRunPage(NewSheet& sheet)
      : application(sheet), script(sheet), command(sheet), m_sheet(sheet), m_selected(sheet.job.runPage) {}

  /// To be called when the page is shown. Clears the chooser if it isn't the one that was shown last.
  void appear();
  bool mayGoOn() const { return m_selected && of(*m_selected).mayGoOn(); }
  /// To be called after the job of the sheet has been replaced.
  void reset() { m_selected = m_sheet.job.runPage; }

  NewRunApplication application;
  NewRunScript script;
  NewRunCommand command;

 private:
  const RunType& of(New::Run run) const;

  NewSheet& m_sheet;
  std::optional<New::Run> m_selected;
};

}  // namespace mirvel
