#include <gmock/gmock.h>

#include <functional>

#include "core/editor/GeneralRules.h"
#include "core/editor/RunField.h"
#include "core/editor/WhenRules.h"
#include "core/session/Shell.h"
#include "support/ProgramFixture.h"
#include "support/RecordingShell.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using jobfile::KeepAlive;
using jobfile::Plist;
using testing::ElementsAre;
using testing::IsEmpty;

class EditorRulesTest : public testdata::ProgramFixture {
 protected:
  static Plist recordWith(const KeepAlive& keepAlive) {
    Plist plist;
    plist.keepAlive = keepAlive;
    return plist;
  }
};

TEST_F(EditorRulesTest, RulesThatCantBeSavedAreUnfinishedAndLeaveTheRecordAlone) {
  Plist plist;
  Unfinished unfinished;
  plist.startInterval = 60;
  Scheduled::RuleEditor rules(program().scheduledController);
  program().scheduledController.load({Scheduled::EveryHour{.minute = 5}}, rules);
  rules.setNumber(0, "99");
  EXPECT_FALSE(WhenRules::rulesChanged(plist, unfinished, rules));
  EXPECT_EQ(plist.startInterval, 60);
  EXPECT_EQ(unfinished.rules, rules.content());
  rules.setNumber(0, "30");
  EXPECT_TRUE(WhenRules::rulesChanged(plist, unfinished, rules));
  EXPECT_EQ(plist.startCalendarInterval->intervals.front().minute, 30);
  rules.removeRow(0);
  EXPECT_TRUE(WhenRules::rulesChanged(plist, unfinished, rules));
  EXPECT_FALSE(plist.startInterval || plist.startCalendarInterval);
}

TEST_F(EditorRulesTest, OnlyAValueThatIsEnteredInARuleIsTyping) {
  Scheduled::RuleEditor rules(program().scheduledController);
  program().scheduledController.load({Scheduled::EveryHour{.minute = 5}, Scheduled::EveryHour{.minute = 6}}, rules);
  const struct {
    const char* name;
    std::function<void()> change;
    bool isTyping;
  } table[] = {{"a number", [&] { rules.setNumber(0, "7"); }, true},
               {"another kind of rule", [&] { rules.chooseChild(0, 0, 2); }, false},
               {"a row more", [&] { rules.addRow(); }, false},
               {"a row less", [&] { rules.removeRow(1); }, false}};
  for (const auto& row : table) {
    const auto before = rules.content();
    row.change();
    EXPECT_EQ(WhenRules::isTyping(before, rules.content()), row.isTyping) << row.name;
  }
}

TEST_F(EditorRulesTest, TheDetailsShowWhatTheRecordHoldsAndNothingElse) {
  using WhenRules::Display;
  const ValueTexts texts(foundation.localize, roots.home);
  EXPECT_EQ(WhenRules::display(Plist(), texts), Display());
  EXPECT_EQ(WhenRules::display(recordWith(KeepAlive{.bool_ = false, .crashed = true}), texts),
            Display{.keepAlive = false});
  EXPECT_EQ(WhenRules::display(recordWith(KeepAlive()), texts), Display{.keepAlive = true});

  Plist plist = recordWith(KeepAlive{.successfulExit = false,
                                     .networkState = true,
                                     .pathState = jobfile::StringMap<bool>{{roots.home / "x", true}, {"/b", false}},
                                     .otherJobEnabled = jobfile::StringMap<bool>{{"org.b", false}, {"", true}},
                                     .crashed = true,
                                     .afterInitialDemand = false});
  plist.runAtLoad = false;
  plist.startOnMount = true;
  plist.startInterval = 60;
  const Display display = WhenRules::display(plist, texts);
  EXPECT_EQ(display.runAtLoad, false);
  EXPECT_EQ(display.startOnMount, true);
  EXPECT_TRUE(display.isScheduled);
  EXPECT_THAT(display.conditions,
              ElementsAre(WhenRules::Condition{"Crashed", true, {}}, WhenRules::Condition{"NetworkState", true, {}},
                          WhenRules::Condition{"SuccessfulExit", false, {}},
                          WhenRules::Condition{"AfterInitialDemand", false, {}},
                          WhenRules::Condition{"PathState", {}, {"/b : Off", "~/x : On"}},
                          WhenRules::Condition{"OtherJobEnabled", {}, {"org.b : Off"}}));
}

TEST_F(EditorRulesTest, AJobMovesToTheKindsThatTheUserMayChange) {
  for (const bool editsSystemJobs : {false, true}) {
    using Item = GeneralRules::ForItem;
    EXPECT_THAT(GeneralRules::forItems(editsSystemJobs),
                ElementsAre(Item{Kind::userAgent, true}, Item{Kind::localAgent, true}, Item{Kind::localDaemon, true},
                            Item{Kind::systemAgent, editsSystemJobs}, Item{Kind::systemDaemon, editsSystemJobs}));
  }

  writeJob(Kind::userAgent, "a");
  scan();
  int asked = 0;
  const auto changeKind = [&](Kind kind) {
    GeneralRules::changeKind(program().editing, program().selection, program().notifications, kind);
  };
  const auto subscription = program().notifications.rootChanged.subscribe([&] { ++asked; });
  changeKind(Kind::systemDaemon);
  EXPECT_EQ(asked, 1) << "also without a job";
  EXPECT_FALSE(program().editing.hasUnsavedChanges());
  program().selection.select(jobNamed("a"));
  changeKind(Kind::userAgent);
  EXPECT_FALSE(program().editing.hasUnsavedChanges()) << "it is of that kind";
  changeKind(Kind::localDaemon);
  EXPECT_EQ(asked, 2);
  changeKind(Kind::localAgent);
  EXPECT_EQ(asked, 2) << "not when it stops running as root";
  EXPECT_EQ(jobNamed("a")->kind, Kind::localAgent);
  EXPECT_EQ(jobNamed("a")->originalKind, Kind::userAgent);
  EXPECT_TRUE(program().editing.hasUnsavedChanges());
}

TEST_F(EditorRulesTest, TheFileToOfferIsTheSelectedOneOrTheScript) {
  const struct {
    std::vector<fs::path> files;
    std::string selected;
    std::optional<fs::path> offered;
  } table[] = {
      {{}, "", std::nullopt},
      {{"/usr/bin/python3", "/tmp/a.py"}, "", "/tmp/a.py"},
      {{"/bin/sh", "/tmp/a.sh", "/tmp/b"}, "", "/tmp/a.sh"},
      {{"/usr/bin/python3"}, "", "/usr/bin/python3"},
      {{"/Users/me/a.sh", "/tmp/b"}, "", "/Users/me/a.sh"},
      {{"/Users/me/a.sh", "/tmp/b"}, "/tmp/b", "/tmp/b"},
      {{"/Users/me/a.sh", "/tmp/b"}, "/tmp", "/Users/me/a.sh"},
      {{"/bin/sh", "/tmp/a.sh"}, "/bin/sh", "/bin/sh"},
  };
  for (const auto& row : table) EXPECT_EQ(RunMenu::offeredFile(row.files, row.selected), row.offered);
}

TEST_F(EditorRulesTest, TheMenuOffersWhatTheProgramCanDo) {
  testdata::RecordingShell shell(program());
  const auto menu = [&](const std::string& command) {
    return RunMenu::of(program().shell, program().repairs, command, "");
  };
  EXPECT_EQ(menu("/bin/sh ~/x"), (RunMenu{false, roots.home / "x", false}));
  program().shell.sheets[Sheet::Test] = [] {};
  program().shell.editScript = [](const URL&) {};
  EXPECT_EQ(menu(""), RunMenu());
  EXPECT_EQ(menu("ls"), (RunMenu{true, std::nullopt, false}));
  EXPECT_EQ(menu("/bin/ls"), (RunMenu{true, "/bin/ls", true}));
  shell.isSheetUp = true;
  EXPECT_FALSE(menu("/bin/ls").offersTest);
}

TEST_F(EditorRulesTest, FilesAreQuotedAsOneArgument) {
  EXPECT_EQ(fileWord("/a/b(c)"), "/a/b(c)");
  EXPECT_EQ(fileWord("/a/b'c"), "\"/a/b'c\"");
  EXPECT_EQ(fileWord("/a b"), "\"/a b\"");
  EXPECT_EQ(withCommand("", "/x"), "/x");
  EXPECT_EQ(withCommand("/bin/sh", "/x"), "/bin/sh /x");
  EXPECT_EQ(withCommand("/bin/sh ", "/x"), "/bin/sh /x");
  const auto script = folder.write("my script.txt", "#!/bin/sh\n");
  ASSERT_TRUE(foundation.defaults.set(Defaults::Key::automaticHelp, false));
  EXPECT_EQ(chosenCommand(program().repairs, script), "\"" + script.string() + "\"");
}

TEST_F(EditorRulesTest, MissingFilesAreFoundBesideTheMainThreadAndTheLastQuestionCounts) {
  FileCheck check(foundation.defaults, program().repairs, fileQueue, queue);
  using Answers = std::vector<std::vector<fs::path>>;
  Answers answers;
  const auto ask = [&](const std::string& command) {
    check.check(command, [&](const std::vector<fs::path>& missing) { answers.push_back(missing); });
  };
  const auto script = folder.write("there", "").string();
  ask(script + " /no/such/file ls");
  EXPECT_THAT(answers, IsEmpty());
  fileQueue.runAll();
  queue.runDue();
  EXPECT_EQ(answers, (Answers{{"/no/such/file"}}));

  answers.clear();
  ask("/no/such/a");
  fileQueue.runAll();  // its answer is under way
  ask("/no/such/b");
  ask(script);
  fileQueue.runAll();
  queue.runDue();
  EXPECT_EQ(answers, (Answers{{}}));

  answers.clear();
  ask("/no/such/a");
  ask("ls");
  EXPECT_EQ(answers, (Answers{{}})) << "names no file";
  fileQueue.runAll();
  queue.runDue();
  EXPECT_EQ(answers, (Answers{{}}));

  answers.clear();
  ASSERT_TRUE(foundation.defaults.setShowInvalidData(false));
  ask("/no/such/a");
  EXPECT_EQ(answers, (Answers{{}})) << "the user doesn't want to know";
}

}  // namespace
}  // namespace mirvel
