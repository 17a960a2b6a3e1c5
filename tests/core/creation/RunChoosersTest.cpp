#include "core/creation/RunChoosers.h"

#include <sys/stat.h>

#include "core/actions/SavePlan.h"
#include "core/creation/CreationFixture.h"
#include "core/creation/InstalledApplications.h"
#include "core/creation/NewController.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using testing::SizeIs;

class RunChoosersTest : public CreationFixture {
 protected:
  RunChoosersTest() { fs::create_directories(roots.home); }

  const jobfile::Plist& record() const { return sheet.job().plist; }
  /// The state of the script chooser: "~/a.sh (on), Create New, next".
  std::string shown() const {
    const NewRunScript& script = sheet.run.script;
    return script.chooseTitle() + (script.isChooseOn() ? " (on), " : ", ") + script.createNewTitle() +
           (script.isCreateNewOn() ? " (on)" : "") + (script.isWriting() ? ", text" : "") +
           (script.mayGoOn() ? ", next" : "");
  }

  NewController sheet{program().creationContext};
};

TEST_F(RunChoosersTest, AnApplicationRunsByItsCommandAndIsInteractive) {
  sheet.run.application.choose(true);
  EXPECT_TRUE(interface.openPanels.at(0).showsHiddenFiles);
  EXPECT_FALSE(sheet.run.application.mayGoOn()) << "it was cancelled";
  EXPECT_EQ(record().processType, std::nullopt);

  const std::string file = (roots.home / "a tool").string();
  interface.openPath = folder.write("home/a tool", "");
  ASSERT_EQ(::chmod(file.c_str(), 0755), 0);
  sheet.run.application.choose(false);
  EXPECT_EQ(sheet.run.application.shown(), "~/a tool");
  EXPECT_EQ(record().run, '"' + file + '"');
  EXPECT_EQ(record().processType, "Interactive");
  EXPECT_TRUE(sheet.run.application.mayGoOn());

  sheet.run.application.choose(InstalledApplication{.id = "x", .name = "Tool", .path = roots.home / "a tool"});
  EXPECT_EQ(sheet.run.application.shown(), "Tool");
  EXPECT_TRUE(sheet.run.application.isChosen({.id = "x", .name = "Tool", .path = roots.home / "a tool"}));
  EXPECT_FALSE(sheet.run.application.isChosen({.id = "y", .name = "Tool", .path = roots.home / "other"}));
  interface.openPath.reset();
  sheet.run.application.choose(false);
  EXPECT_EQ(sheet.run.application.shown(), "Tool") << "cancelling changes nothing";

  sheet.run.command.setText("/bin/ls");
  EXPECT_EQ(record().processType, std::nullopt) << "a command isn't interactive";
}

TEST_F(RunChoosersTest, AScriptIsChosenOrWritten) {
  NewRunScript& script = sheet.run.script;
  const std::string saved = folder.write("home/made.sh", "");
  const auto answer = [this](const fs::path& path) { interface.openPath = interface.savePath = path; };
  const auto cancel = [this] { interface.openPath = interface.savePath = std::nullopt; };
  const std::pair<std::function<void()>, const char*> table[] = {
      {[] {}, "Choose…, Create New"},
      {[&] { script.save(); }, "Choose…, Create New"},
      {[&] { script.choose(false); }, "Choose…, Create New"},
      {[&] { script.createNew(); }, "Choose…, Create New (on), text"},
      {[&] { script.choose(false); }, "Choose…, Create New (on), text"},
      {[&] { script.save(); }, "Choose…, Create New (on), text"},
      {[&] { answer(roots.home / "missing" / "x.sh"), script.save(); }, "Choose…, Create New (on), text"},
      {[&] { answer(saved), script.save(); }, "~/made.sh (on), Create New, next"},
      {[&] { cancel(), script.choose(false); }, "~/made.sh (on), Create New, next"},
      {[&] { script.createNew(); }, "Choose…, Create New (on), text"},
      {[&] { answer("/opt/x.py"), script.choose(false); }, "/opt/x.py (on), Create New, next"},
      {[&] { script.clear(); }, "Choose…, Create New"},
  };
  for (const auto& [step, result] : table) {
    step();
    EXPECT_EQ(shown(), result) << "row " << &step - &table[0].first;
  }
  EXPECT_EQ(testdata::bytes(saved), NewRunScript::defaultText);
  EXPECT_EQ(record().run, foundation.commands.python + " \"/opt/x.py\"");
  EXPECT_THAT(interface.errors, SizeIs(1)) << "the folder doesn't exist";
  EXPECT_EQ(interface.savePanels.at(0).folder, roots.home);
  EXPECT_THAT(interface.savePanels, SizeIs(3)) << "an empty text isn't saved";
}

TEST_F(RunChoosersTest, WritingAgainKeepsTheTextUntilItIsSaved) {
  NewRunScript& script = sheet.run.script;
  EXPECT_EQ(script.insertionPoint(), std::nullopt);
  script.createNew();
  EXPECT_EQ(script.insertionPoint(), NewRunScript::defaultText.size());
  script.setText("#!/bin/sh\nls\n");
  EXPECT_EQ(script.insertionPoint(), std::nullopt);
  script.createNew();
  EXPECT_EQ(script.text(), "#!/bin/sh\nls\n");
}

TEST_F(RunChoosersTest, AWrittenScriptIsRunByTheInterpreterOfItsLanguage) {
  const Commands& commands = foundation.commands;
  const struct {
    std::string text, file, interpreter, suggested;
    SyntaxType syntax;
  } table[] = {
      {"#!/bin/zsh\n\nls", "a.sh", commands.shell, "script.sh", SyntaxType::shell},
      {"#!/usr/bin/env python3\n", "a", commands.python, "script.py", SyntaxType::python},
      {"import os\n#!/bin/sh", "b", commands.python, "script.py", SyntaxType::python},  // not recognised
      {"#!/usr/bin/perl", "two words", commands.perl, "script.pl", SyntaxType::perl},
      {"#!/usr/bin/ruby -w", "it's", commands.ruby, "script.rb", SyntaxType::ruby},
      {"<?php\n", "a.php", commands.php, "script.php", SyntaxType::php},
      {"#!/usr/bin/swift", "$a", commands.swift, "script.swift", SyntaxType::swift},
      {"#!/usr/bin/awk -f", "a.awk", commands.shell, "script.sh", SyntaxType::awk},
  };
  NewRunScript& script = sheet.run.script;
  for (const auto& row : table) {
    const fs::path file = roots.home / row.file;
    interface.savePath = file;
    if (row.text != "import os\n#!/bin/sh") script.clear();
    script.createNew();
    if (row.file == "b") script.setText("#!/usr/bin/python3");
    script.setText(row.text);
    script.save();
    EXPECT_EQ(script.syntaxType(), row.syntax) << row.text;
    EXPECT_EQ(testdata::bytes(file), row.text);
    EXPECT_EQ(interface.savePanels.back().name, row.suggested);
    jobfile::Plist plist = record().clone();
    EXPECT_TRUE(normalizeForSave(plist, program().repairs));
    EXPECT_EQ(plist.programArguments, (std::vector<std::string>{row.interpreter, file.string()})) << record().run;
  }
}

TEST_F(RunChoosersTest, ACommandIsRepairedAndItsFilesAreChecked) {
  const std::string home = roots.home.string();
  const std::string there = folder.write("home/there", "");
  const struct {
    std::string typed, run;
    std::vector<fs::path> missing;
  } table[] = {
      {"perl -v", "/usr/bin/perl -v", {}},
      {"~/there", there, {}},
      {"~/gone ~/there", home + "/gone " + there, {home + "/gone"}},
      {"", "", {}},
  };
  NewRunCommand& command = sheet.run.command;
  for (const auto& row : table) {
    command.setText(row.typed);
    fileQueue.runAll();
    queue.runDue();
    EXPECT_EQ(command.text(), row.typed);
    EXPECT_EQ(record().run, row.run);
    EXPECT_EQ(command.missingFiles(), row.missing) << row.typed;
  }
}

}  // namespace
}  // namespace mirvel
