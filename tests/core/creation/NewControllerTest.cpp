#include "core/creation/NewController.h"

#include "core/creation/CreationFixture.h"
#include "core/creation/StartingPoints.h"

namespace mirvel {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

class NewControllerTest : public CreationFixture {
 protected:
  /// The bar with the current page in brackets, and the buttons: "< [1 Name] 2 What 3 Run 4 When Next (off)".
  std::string shown() const {
    std::string result = sheet.isPreviousVisible() ? "< " : "";
    for (const auto& cell : sheet.pageBar()) result += cell.isCurrent ? '[' + cell.text + "] " : cell.text + ' ';
    return result + sheet.nextTitle() + (sheet.isNextEnabled() ? "" : " (off)");
  }

  NewController sheet{program().creationContext};
};

TEST_F(NewControllerTest, PagesAreWalkedThroughAsFarAsEachAllows) {
  using Run = New::Run;
  const std::pair<std::function<void()>, const char*> table[] = {
      {[] {}, "[1 Name] 2 What 3 Run 4 When Next (off)"},
      {[&] { EXPECT_FALSE(sheet.next()); }, "[1 Name] 2 What 3 Run 4 When Next (off)"},
      {[&] { sheet.previous(); }, "[1 Name] 2 What 3 Run 4 When Next (off)"},
      {[&] { sheet.name.setName(" "); }, "[1 Name] 2 What 3 Run 4 When Next"},
      {[&] { sheet.name.setName(""); }, "[1 Name] 2 What 3 Run 4 When Next (off)"},
      {[&] { sheet.name.setName("backup"); }, "[1 Name] 2 What 3 Run 4 When Next"},
      {[&] { sheet.next(); }, "< 1 Name [2 What] 3 Run 4 When Next (off)"},
      {[&] { sheet.what.choose(Run::application); }, "< 1 Name [2 What] 3 Application 4 When Next"},
      {[&] { sheet.what.choose(Run::script); }, "< 1 Name [2 What] 3 Script 4 When Next"},
      {[&] { sheet.next(); }, "< 1 Name 2 What [3 Script] 4 When Next (off)"},
      {[&] { sheet.previous(); }, "< 1 Name [2 What] 3 Script 4 When Next"},
      {[&] { sheet.what.choose(Run::command); }, "< 1 Name [2 What] 3 Command 4 When Next"},
      {[&] { sheet.next(); }, "< 1 Name 2 What [3 Command] 4 When Next (off)"},
      {[&] { sheet.run.command.setText("/bin/ls"); }, "< 1 Name 2 What [3 Command] 4 When Next"},
      {[&] { sheet.run.command.setText(""); }, "< 1 Name 2 What [3 Command] 4 When Next (off)"},
      {[&] { sheet.run.command.setText("/bin/ls"); }, "< 1 Name 2 What [3 Command] 4 When Next"},
      {[&] { sheet.next(); }, "< 1 Name 2 What 3 Command [4 When] Save"},
      {[&] { sheet.previous(); }, "< 1 Name 2 What [3 Command] 4 When Next"},
      {[&] { sheet.previous(); }, "< 1 Name [2 What] 3 Command 4 When Next"},
      {[&] { sheet.previous(); }, "[1 Name] 2 What 3 Command 4 When Next"},
      {[&] { sheet.name.setName(""); }, "[1 Name] 2 What 3 Command 4 When Next (off)"},
  };
  for (const auto& [step, result] : table) {
    step();
    EXPECT_EQ(shown(), result) << "row " << &step - &table[0].first;
  }
}

TEST_F(NewControllerTest, OneOfThreeKindsIsOn) {
  EXPECT_THAT(kindChoices(program().kinds),
              ElementsAre(KindChoice{Kind::userAgent, "Ada Lovelace"}, KindChoice{Kind::localAgent, "Everyone"},
                          KindChoice{Kind::localDaemon, "root"}));
  const struct {
    int tag;
    std::optional<Kind> chosen;
    Kind kind;
  } table[] = {
      {2, Kind::localDaemon, Kind::localDaemon}, {1, Kind::localAgent, Kind::localAgent},
      {99, std::nullopt, Kind::localAgent},      {7, std::nullopt, Kind::localAgent},  // of the system
      {0, Kind::userAgent, Kind::userAgent},
  };
  EXPECT_EQ(sheet.name.chosenKind(), Kind::userAgent);
  for (const auto& row : table) {
    sheet.name.kindChanged(row.tag);
    EXPECT_EQ(sheet.name.chosenKind(), row.chosen) << row.tag;
    EXPECT_EQ(sheet.job().kind, row.kind) << row.tag;
  }
}

TEST_F(NewControllerTest, AnotherWayToRunBeginsAnewAndTheSameKeepsWhatWasEntered) {
  sheet.name.setName("a");
  sheet.next();
  sheet.what.choose(New::Run::command);
  sheet.next();
  sheet.run.command.setText("/bin/ls");
  sheet.previous();
  sheet.what.choose(New::Run::script);
  sheet.what.choose(New::Run::command);
  sheet.next();
  EXPECT_EQ(sheet.run.command.text(), "/bin/ls") << "the script's page was never shown";
  sheet.previous();
  sheet.what.choose(New::Run::script);
  sheet.next();
  EXPECT_EQ(sheet.job().plist.run, "/bin/ls") << "until the script is there";
  sheet.previous();
  sheet.what.choose(New::Run::command);
  sheet.next();
  EXPECT_EQ(sheet.run.command.text(), "");
  EXPECT_FALSE(sheet.isNextEnabled());
}

TEST_F(NewControllerTest, EachChangeIsTold) {
  int changes = 0;
  Scheduled::RuleEditor editor(program().scheduledController);
  sheet.when.setRuleEditor(&editor);
  sheet.setChanged([&] { ++changes; });
  const std::function<void()> steps[] = {
      [&] { sheet.name.setName("a"); },
      [&] { sheet.name.kindChanged(1); },
      [&] { sheet.next(); },
      [&] { sheet.what.choose(New::Run::script); },
      [&] { sheet.next(); },
      [&] { sheet.run.script.createNew(); },
      [&] { sheet.run.script.setText("x"); },
      [&] { sheet.previous(); },
      [&] { sheet.when.runAtLoad(false); },
      [&] { sheet.when.keepAlive(true); },
      [&] { sheet.when.scheduled(true); },
      [&] { editor.addRow(); },
  };
  for (const auto& step : steps) {
    const int before = changes;
    step();
    EXPECT_GT(changes, before) << "step " << &step - steps;
  }
}

TEST_F(NewControllerTest, TheRuleEditorStartsWithARowAndKeepsItWhenItIsHidden) {
  Scheduled::RuleEditor editor(program().scheduledController);
  sheet.when.setRuleEditor(&editor);
  EXPECT_FALSE(sheet.when.isScheduled());
  EXPECT_EQ(editor.numberOfRows(), 0U);
  for (const bool isOn : {true, false, true}) {
    sheet.when.scheduled(isOn);
    EXPECT_EQ(sheet.when.isScheduled(), isOn);
    EXPECT_EQ(editor.numberOfRows(), 1U);
  }
  sheet.when.setRuleEditor(nullptr);
  Scheduled::RuleEditor other(program().scheduledController);
  sheet.when.setRuleEditor(&other);
  EXPECT_EQ(other.rules(), editor.rules()) << "another one goes on with them";
}

TEST_F(NewControllerTest, ANumberThatIsNoneYetIsStillThereWhenThePageComesBack) {
  Scheduled::RuleEditor editor(program().scheduledController);
  sheet.when.setRuleEditor(&editor);
  sheet.when.scheduled(true);
  editor.addRow();
  editor.setNumber(0, "soon");
  sheet.when.setRuleEditor(nullptr);
  Scheduled::RuleEditor other(program().scheduledController);
  sheet.when.setRuleEditor(&other);
  EXPECT_EQ(other.rows(), editor.rows());
  EXPECT_FALSE(other.isValid());
  sheet.begin(New());
  EXPECT_EQ(other.numberOfRows(), 0U) << "another job has rules of its own";
}

TEST_F(NewControllerTest, ItHearsOfItsRulesWhateverBecomesOfTheSelectedJob) {
  writeJob(Kind::userAgent, "a", {{"StartInterval", 60}});
  Scheduled::RuleEditor editor(program().scheduledController);
  sheet.when.setRuleEditor(&editor);
  sheet.when.scheduled(true);
  scan();  // publishes the jobs under the sheet
  program().selection.select(jobNamed("a"));
  editor.removeRow(0);
  EXPECT_FALSE(sheet.when.isScheduled()) << "without a rule there is no schedule";

  sheet.when.setRuleEditor(nullptr);
  editor.addRow();
  EXPECT_FALSE(sheet.when.isScheduled()) << "an editor that isn't its own any more";
}

TEST_F(NewControllerTest, ARuleWithAnImpossibleNumberIsToldAndNotSaved) {
  sheet.name.setName("a");
  sheet.next();
  sheet.what.choose(New::Run::command);
  sheet.next();
  sheet.run.command.setText("/bin/ls");
  sheet.next();
  Scheduled::RuleEditor editor(program().scheduledController);
  sheet.when.setRuleEditor(&editor);
  sheet.when.scheduled(true);
  editor.setNumber(0, "");
  EXPECT_FALSE(sheet.next());
  EXPECT_THAT(interface.errors,
              ElementsAre(std::pair("Rule 1, “Repeat Interval”, can’t be saved", "Enter a whole number.")));
  EXPECT_THAT(helpers.requests, testing::IsEmpty());
  sheet.when.scheduled(false);
  EXPECT_TRUE(sheet.next()) << "rules that don't count don't matter";
  EXPECT_THAT(helpers.requests, SizeIs(1));
}

TEST_F(NewControllerTest, StartingPointsAreWalkedThroughAsAnyOtherJob) {
  sheet.name.kindChanged(2);
  const std::string home = roots.home.string();
  const struct {
    std::string title, name;
    New::Run run;
    std::string command;
    bool isScheduled, isKeptAlive;
    std::optional<std::vector<std::string>> watched;
  } table[] = {
      {"Back Up a Folder",
       "Backup",
       New::Run::command,
       "rsync -a " + home + "/Documents " + home + "/Backup",
       true,
       false,
       {}},
      {"Run a Script Every Night", "Nightly Script", New::Run::script, "", true, false, {}},
      {"Keep a Program Running", "Program", New::Run::command, "", false, true, {}},
      {"Watch a Folder", "Folder Watch", New::Run::script, "", false, false, {{home + "/Downloads"}}},
  };
  auto points = startingPoints(foundation.localize, roots);
  ASSERT_THAT(points, SizeIs(std::size(table)));
  Scheduled::RuleEditor editor(program().scheduledController);
  sheet.when.setRuleEditor(&editor);
  for (std::size_t i = 0; i < points.size(); ++i) {
    const auto& row = table[i];
    EXPECT_EQ(points[i].title, row.title);
    sheet.begin(std::move(points[i].job));
    EXPECT_EQ(sheet.currentPage(), New::Page::name);
    EXPECT_EQ(sheet.name.name(), row.name);
    EXPECT_EQ(sheet.name.chosenKind(), Kind::localDaemon) << "the user said so";
    EXPECT_EQ(sheet.what.chosen(), row.run);
    sheet.next();
    sheet.next();
    EXPECT_EQ(sheet.run.command.text(), row.command);
    EXPECT_EQ(sheet.isNextEnabled(), !row.command.empty()) << "what there is to run must be told";
    EXPECT_EQ(sheet.when.isScheduled(), row.isScheduled);
    EXPECT_EQ(editor.numberOfRows(), row.isScheduled ? 1U : 0U);
    EXPECT_EQ(sheet.when.isKeptAlive(), row.isKeptAlive);
    EXPECT_EQ(sheet.job().plist.watchPaths, row.watched);
    EXPECT_EQ(sheet.when.watchedFolder(), row.watched ? "~/Downloads" : "");
  }
  sheet.name.setName("mine");
  sheet.begin(std::move(startingPoints(foundation.localize, roots).front().job));
  EXPECT_EQ(sheet.name.name(), "mine") << "it was typed";
}

TEST_F(NewControllerTest, AnotherFolderCanBeWatched) {
  sheet.begin(std::move(startingPoints(foundation.localize, roots).back().job));
  sheet.when.chooseWatchedFolder(false);
  EXPECT_EQ(sheet.when.watchedFolder(), "~/Downloads") << "the panel was cancelled";
  interface.openPath = roots.home / "a b";
  sheet.when.chooseWatchedFolder(true);
  EXPECT_EQ(sheet.when.watchedFolder(), "~/a b");
  EXPECT_TRUE(interface.openPanels.back().choosesFolders);
  EXPECT_TRUE(interface.openPanels.back().showsHiddenFiles);
}

TEST_F(NewControllerTest, TheScheduleEndsWithItsLastRule) {
  Scheduled::RuleEditor editor(program().scheduledController);
  sheet.when.setRuleEditor(&editor);
  sheet.when.scheduled(true);
  editor.removeRow(0);
  EXPECT_FALSE(sheet.when.isScheduled());
}

}  // namespace
}  // namespace mirvel
