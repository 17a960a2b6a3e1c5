#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/creation/New.h"
#include "core/editor/RunField.h"

namespace mirvel {

struct InstalledApplication;

/// One way to say what the job runs.
class RunType {
 public:
  RunType() = default;
  virtual ~RunType() = default;
  RunType(const RunType&) = delete;
  RunType& operator=(const RunType&) = delete;

  /// Begins anew; what the job runs stays.
  virtual void clear() = 0;
  /// Whether there is something to run.
  virtual bool mayGoOn() const = 0;
};

/// Runs an application that is chosen. The sheet outlives it.
class NewRunApplication final : public RunType {
 public:
  explicit NewRunApplication(NewSheet& sheet) : m_sheet(sheet) {}

  /// What the field shows: the path or the name of the application.
  const std::string& shown() const { return m_sheet.job.shownApplication; }
  bool isChosen(const InstalledApplication& application) const;
  /// Asks for one.
  void choose(bool showsHiddenFiles);
  void choose(const InstalledApplication& application);

  void clear() override;
  bool mayGoOn() const override { return !shown().empty(); }

 private:
  void take(const std::filesystem::path& file, std::string shown);

  NewSheet& m_sheet;
};

/// Runs a script that is chosen, or written there and then. The sheet outlives it.
class NewRunScript final : public RunType {
 public:
  using State = New::Script::State;
  static constexpr std::string_view defaultText = "#!/bin/zsh\n\n";

  explicit NewRunScript(NewSheet& sheet) : m_sheet(sheet) {}

  State state() const { return script().state; }
  /// The text is shown, and can be saved.
  bool isWriting() const { return state() == State::createNew; }
  const std::string& text() const { return script().text; }
  SyntaxType syntaxType() const { return script().syntaxType; }
  /// Where the insertion point is to go, in bytes: behind a text in which nothing was written yet.
  std::optional<std::size_t> insertionPoint() const;
  /// Titles of the buttons; that of the chosen or saved script is its path.
  std::string chooseTitle() const;
  std::string createNewTitle() const;
  bool isChooseOn() const { return state() == State::ready; }
  bool isCreateNewOn() const { return isWriting(); }

  /// Begins a new script. What is being written already stays.
  void createNew();
  /// The text was changed; follows its first line to the language that it is in.
  void setText(std::string text);
  /// Asks for a script that is there.
  void choose(bool showsHiddenFiles);
  /// Asks where to, and writes the text there. Tells the user if it can't, and then all stays.
  void save();

  void clear() override;
  bool mayGoOn() const override { return state() == State::ready; }

 private:
  New::Script& script() { return m_sheet.job.script; }
  const New::Script& script() const { return m_sheet.job.script; }
  void becomeReady(const std::filesystem::path& file, std::string run);

  NewSheet& m_sheet;
};

/// Runs a command that is typed. The sheet outlives it.
class NewRunCommand final : public RunType {
 public:
  explicit NewRunCommand(NewSheet& sheet);

  const std::string& text() const { return m_sheet.job.command; }
  /// The text was changed; the job gets it put right, as far as the user wants that.
  void setText(std::string text);
  /// The files in the command that aren't there, which marks it as invalid; told later, for disks may be slow.
  const std::vector<std::filesystem::path>& missingFiles() const { return m_missing; }
  bool isValid() const { return m_missing.empty(); }

  void clear() override;
  bool mayGoOn() const override { return !text().empty(); }

 private:
  void check();

  NewSheet& m_sheet;
  FileCheck m_check;
  std::vector<std::filesystem::path> m_missing;
};

/// The page with these three, of which one is there at a time. The sheet outlives it.
class NewRunPage {
 public:
  explicit NewRunPage(NewSheet& sheet)
      : application(sheet), script(sheet), command(sheet), m_sheet(sheet), m_selected(sheet.job.runPage) {}

  /// Shows the way that was chosen last; another one than before begins anew.
  void appear();
  bool mayGoOn() const { return m_selected && of(*m_selected).mayGoOn(); }
  /// The job of the sheet is another.
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
