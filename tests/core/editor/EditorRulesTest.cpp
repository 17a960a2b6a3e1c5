#include <gmock/gmock.h>

#include <functional>

#include "core/editor/GeneralRules.h"
#include "core/editor/WhenRules.h"
#include "support/ProgramFixture.h"

namespace mirvel {
namespace {

using jobfile::KeepAlive;
using jobfile::Plist;
using testing::ElementsAre;

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

TEST_F(EditorRulesTest, ATypedCommandIsRepairedUnlessItIsTheFilesOwn) {
  const Plist none;
  const std::string typed = "perl ~/x.pl";
  EXPECT_EQ(GeneralRules::command(typed, none, program().repairs), "/usr/bin/perl " + roots.home.string() + "/x.pl");
  const auto own =
      Plist::readTolerantly(testdata::jobText("a", {{"ProgramArguments", propertylist::Array{"perl", "~/x.pl"}}}));
  EXPECT_EQ(GeneralRules::command(typed, *own, program().repairs), typed);
  ASSERT_TRUE(foundation.defaults.set(Defaults::Key::automaticHelp, false));
  EXPECT_EQ(GeneralRules::command(typed, none, program().repairs), typed);
}

}  // namespace
}  // namespace mirvel
