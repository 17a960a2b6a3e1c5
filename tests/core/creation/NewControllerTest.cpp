#include "core/creation/NewController.h"

#include "core/creation/CreationFixture.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

class NewControllerTest : public CreationFixture {
 protected:
  /// The page bar with the current page in brackets, and the buttons: "< 1 Name [2 What] 3 Run 4 When Next (off)".
  std::string shown() const {
    std::string result = sheet.isPreviousVisible() ? "< " : "";
    for (const auto& cell : sheet.pageBar()) result += cell.isCurrent ? '[' + cell.text + "] " : cell.text + ' ';
    return result + sheet.nextTitle() + (sheet.isNextEnabled() ? "" : " (off)");
  }
  void goToCommand() {
    sheet.name.setName("a");
    sheet.next();
    sheet.what.choose(New::Run::Command);
    sheet.next();
    sheet.run.command.setText("/bin/ls");
  }

  NewController sheet{program().creationContext};
  Scheduled::RuleEditor editor{program().scheduledController};
};

TEST_F(NewControllerTest, EachPageMustBeCompleteToGoOn) {
  using Run = New::Run;
  const std::pair<std::function<void()>, const char*> table[] = {
      {[] {}, "[1 Name] 2 What 3 Run 4 When Next (off)"},
      {[&] { EXPECT_FALSE(sheet.next()); }, "[1 Name] 2 What 3 Run 4 When Next (off)"},
      {[&] { sheet.previous(); }, "[1 Name] 2 What 3 Run 4 When Next (off)"},
      {[&] { sheet.name.setName(" "); }, "[1 Name] 2 What 3 Run 4 When Next"},
      {[&] { sheet.name.setName(""); }, "[1 Name] 2 What 3 Run 4 When Next (off)"},
      {[&] { sheet.name.setName("backup"); }, "[1 Name] 2 What 3 Run 4 When Next"},
      {[&] { sheet.next(); }, "< 1 Name [2 What] 3 Run 4 When Next (off)"},
      {[&] { sheet.what.choose(Run::Application); }, "< 1 Name [2 What] 3 Application 4 When Next"},
      {[&] { sheet.what.choose(Run::Script); }, "< 1 Name [2 What] 3 Script 4 When Next"},
      {[&] { sheet.next(); }, "< 1 Name 2 What [3 Script] 4 When Next (off)"},
      {[&] { sheet.previous(); }, "< 1 Name [2 What] 3 Script 4 When Next"},
      {[&] { sheet.what.choose(Run::Command); }, "< 1 Name [2 What] 3 Command 4 When Next"},
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

TEST_F(NewControllerTest, AnotherKindOfThingToRunClearsTheInputAndTheSameKeepsIt) {
  goToCommand();
  sheet.previous();
  sheet.what.choose(New::Run::Script);
  sheet.what.choose(New::Run::Command);
  sheet.next();
  EXPECT_EQ(sheet.run.command.text(), "/bin/ls") << "the script's page was never shown";
  sheet.previous();
  sheet.what.choose(New::Run::Script);
  sheet.next();
  EXPECT_EQ(sheet.job().plist.run, "/bin/ls") << "until the script is there";
  sheet.previous();
  sheet.what.choose(New::Run::Command);
  sheet.next();
  EXPECT_EQ(sheet.run.command.text(), "");
  EXPECT_FALSE(sheet.isNextEnabled());
}

TEST_F(NewControllerTest, EachChangeIsNotified) {
  int changes = 0;
  sheet.when.setRuleEditor(&editor);
  sheet.setChanged([&] { ++changes; });
  const std::function<void()> steps[] = {
      [&] { sheet.name.setName("a"); },
      [&] { sheet.name.kindChanged(1); },
      [&] { sheet.next(); },
      [&] { sheet.what.choose(New::Run::Script); },
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

TEST_F(NewControllerTest, TheRuleEditorStartsWithARowAndTheNextEditorGetsAllRows) {
  sheet.when.setRuleEditor(&editor);
  EXPECT_FALSE(sheet.when.isScheduled());
  EXPECT_EQ(editor.numberOfRows(), 0U);
  for (const bool isOn : {true, false, true}) {
    sheet.when.scheduled(isOn);
    EXPECT_EQ(sheet.when.isScheduled(), isOn);
    EXPECT_EQ(editor.numberOfRows(), 1U);
  }
  editor.addRow();
  editor.setNumber(0, "soon");
  sheet.when.setRuleEditor(nullptr);
  Scheduled::RuleEditor next(program().scheduledController);
  sheet.when.setRuleEditor(&next);
  EXPECT_EQ(next.rows(), editor.rows());
  EXPECT_FALSE(next.isValid());
  sheet.begin(New());
  EXPECT_EQ(next.numberOfRows(), 0U) << "the other job has no rules";
}

TEST_F(NewControllerTest, ItsRulesAreIndependentOfTheSelectedJob) {
  writeJob(Kind::userAgent, "a", {{"StartInterval", 60}});
  sheet.when.setRuleEditor(&editor);
  sheet.when.scheduled(true);
  scan();
  program().selection.select(jobNamed("a"));
  editor.removeRow(0);
  EXPECT_FALSE(sheet.when.isScheduled()) << "without a rule there is no schedule";

  sheet.when.setRuleEditor(nullptr);
  editor.addRow();
  EXPECT_FALSE(sheet.when.isScheduled()) << "the page doesn't listen to this editor any more";
}

TEST_F(NewControllerTest, AnInvalidRuleIsShownAndNotSaved) {
  goToCommand();
  sheet.next();
  sheet.when.setRuleEditor(&editor);
  sheet.when.scheduled(true);
  editor.setNumber(0, "");
  EXPECT_FALSE(sheet.next());
  EXPECT_THAT(interface.errors,
              ElementsAre(std::pair("Rule 1, “Repeat Interval”, can’t be saved", "Enter a whole number.")));
  EXPECT_THAT(helpers.requests, testing::IsEmpty());
  sheet.when.scheduled(false);
  EXPECT_TRUE(sheet.next()) << "the rules don't apply";
  EXPECT_THAT(helpers.requests, SizeIs(1));
}

TEST_F(NewControllerTest, StartingPointsFillThePages) {
  sheet.name.kindChanged(2);
  const std::string home = roots.home.string();
  const std::string rsync = "rsync -a " + home + "/Documents " + home + "/Backup";
  const std::optional<std::vector<std::string>> none, downloads{{home + "/Downloads"}};
  const struct {
    std::string title, name;
    New::Run run;
    std::string command;
    bool isScheduled, isKeptAlive;
    std::optional<std::vector<std::string>> watched;
  } table[] = {
      {"Back Up a Folder", "Backup", New::Run::Command, rsync, true, false, none},
      {"Run a Script Every Night", "Nightly Script", New::Run::Script, "", true, false, none},
      {"Keep a Program Running", "Program", New::Run::Command, "", false, true, none},
      {"Watch a Folder", "Folder Watch", New::Run::Script, "", false, false, downloads},
  };
  auto points = startingPoints(foundation.localize, roots);
  ASSERT_THAT(points, SizeIs(std::size(table)));
  sheet.when.setRuleEditor(&editor);
  for (std::size_t i = 0; i < points.size(); ++i) {
    const auto& row = table[i];
    EXPECT_EQ(points[i].title, row.title);
    sheet.begin(std::move(points[i].job));
    EXPECT_EQ(sheet.currentPage(), New::Page::Name);
    EXPECT_EQ(sheet.name.name(), row.name);
    EXPECT_EQ(sheet.name.chosenKind(), Kind::localDaemon) << "the user's choice is kept";
    EXPECT_EQ(sheet.what.chosen(), row.run);
    sheet.next();
    sheet.next();
    EXPECT_EQ(sheet.run.command.text(), row.command);
    EXPECT_EQ(sheet.isNextEnabled(), !row.command.empty()) << "the user must say what to run";
    EXPECT_EQ(sheet.when.isScheduled(), row.isScheduled);
    EXPECT_EQ(editor.numberOfRows(), row.isScheduled ? 1U : 0U);
    EXPECT_EQ(sheet.when.isKeptAlive(), row.isKeptAlive);
    EXPECT_EQ(sheet.job().plist.watchPaths, row.watched);
    EXPECT_EQ(sheet.when.watchedFolder(), row.watched ? "~/Downloads" : "");
  }
  sheet.name.setName("mine");
  sheet.begin(std::move(startingPoints(foundation.localize, roots).front().job));
  EXPECT_EQ(sheet.name.name(), "mine") << "the user has entered it";
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

TEST_F(NewControllerTest, RulesApplyOnlyWhileTheJobIsScheduled) {
  sheet.when.setRuleEditor(&editor);
  sheet.name.setName("a");
  sheet.when.runAtLoad(false);
  sheet.when.scheduled(true);
  editor.setNumber(0, "3600");
  EXPECT_EQ(sheet.outlook().sentence, "“a” runs as you every hour.");
  EXPECT_EQ(sheet.outlook().nextRuns.size(), 3U);
  sheet.when.scheduled(false);
  EXPECT_EQ(sheet.outlook().sentence, "“a” runs as you only when it is started manually.");
  EXPECT_THAT(sheet.outlook().nextRuns, testing::IsEmpty());
}

TEST(NewJobSentenceTest, OneSentenceSaysWhatWillHappen) {
  using Change = std::function<void(jobfile::Plist&)>;
  const Change nothing = [](jobfile::Plist& plist) { plist.runAtLoad = false; };
  const Change atLoad = [](jobfile::Plist&) {};
  const Change nightly = [](jobfile::Plist& plist) {
    plist.startCalendarInterval = {.intervals = {{.minute = 0, .hour = 21}}};
    plist.runAtLoad = false;
  };
  const Change all = [](jobfile::Plist& plist) {
    plist.keepAlive = jobfile::KeepAlive{.successfulExit = true};
    plist.startInterval = 7200;
    plist.watchPaths = {"/home/x/A b"};
  };
  const struct {
    const char* locale;
    Kind kind;
    Change change;
    const char* sentence;
  } table[] = {
      {"en", Kind::userAgent, nothing, "“backup” runs as you only when it is started manually."},
      {"en", Kind::userAgent, atLoad, "“backup” runs as you at every login and once when it is saved."},
      {"en", Kind::userAgent, nightly, "“backup” runs as you every day at 9:00 PM."},
      {"en", Kind::localAgent, nightly, "“backup” runs for every logged-in user every day at 9:00 PM."},
      {"en", Kind::localDaemon, atLoad, "“backup” runs as root at every system start and once when it is saved."},
      {"en", Kind::localDaemon, all,
       "“backup” runs as root again when it exits successfully, every 2 hours, when ~/A b changes, at every system "
       "start, and once when it is saved."},
      {"de", Kind::userAgent, nothing, "„backup“ läuft unter Ihrem Namen: nur bei manuellem Start."},
      {"de", Kind::userAgent, nightly, "„backup“ läuft unter Ihrem Namen: jeden Tag um 21:00 Uhr."},
      {"de", Kind::localDaemon, atLoad, "„backup“ läuft als root: bei jedem Systemstart und einmal beim Speichern."},
      {"ar", Kind::userAgent, atLoad, "تعمل «\u2068backup\u2069» باسمك عند كل تسجيل دخول ومرة واحدة عند الحفظ."},
  };
  for (const auto& row : table) {
    const std::string locale = row.locale;
    if (locale != "en" && !std::filesystem::exists(testdata::catalogues()))
      continue;  // they are built only if msgfmt is installed
    jobfile::Plist plist = jobfile::Plist::blankPlist();
    plist.name = "backup";
    row.change(plist);
    EXPECT_EQ(newJobSentence(row.kind, plist, Localize(locale, testdata::catalogues()), "/home/x"), row.sentence);
  }
}

}  // namespace
}  // namespace mirvel
