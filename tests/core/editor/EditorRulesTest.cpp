#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/editor/GeneralRules.h"
#include "core/editor/WhenRules.h"
#include "support/ProgramFixture.h"

namespace mirvel {
namespace {

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

void tableChanged(Plist& plist, const char* key, const std::vector<GridTable::Item>& rows) {
  std::optional<bool> plain;
  Unfinished unfinished;
  WhenRules::gridTableChanged(plist, unfinished, key, rows, plain);
}

void keepAlive(Plist& plist, bool isOn) {
  Unfinished unfinished;
  WhenRules::keepAlive(plist, unfinished, isOn);
}

constexpr BoxClick on{true, false};
constexpr BoxClick off{false, false};
constexpr BoxClick optionOn{true, true};
constexpr BoxClick optionOff{false, true};

TEST_F(EditorRulesTest, ABoxThatGoesOffWithOptionTakesItsKeyAway) {
  EXPECT_EQ(on.value(), true);
  EXPECT_EQ(off.value(), false);
  EXPECT_EQ(optionOn.value(), true);
  EXPECT_EQ(optionOff.value(), std::nullopt);
}

TEST_F(EditorRulesTest, TheBoxOfADisabledJobIsTheOtherWayRound) {
  const struct {
    BoxClick click;
    std::optional<bool> disabled;
  } table[] = {{optionOff, std::nullopt}, {off, true}, {on, false}, {optionOn, false}};
  for (const auto& row : table) {
    Plist plist;
    plist.disabled = true;
    GeneralRules::enabled(plist, row.click);
    EXPECT_EQ(plist.disabled, row.disabled);
  }
}

TEST_F(EditorRulesTest, KeepingAliveIsAllOrNothingAndAConditionTakesItsPlace) {
  const KeepAlive always(true, {}, {}, {}, {});
  const KeepAlive many(false, true, false, jobfile::StringMap<bool>{{"/a", true}}, {});
  using Change = void (*)(Plist&);
  const struct {
    std::optional<KeepAlive> before;
    Change change;
    std::optional<KeepAlive> after;
  } table[] = {
      {std::nullopt, [](Plist& p) { keepAlive(p, true); }, always},
      {many, [](Plist& p) { keepAlive(p, true); }, always},
      {many, [](Plist& p) { keepAlive(p, false); }, std::nullopt},
      {always, [](Plist& p) { WhenRules::crashed(p, on); }, KeepAlive({}, true, {}, {}, {})},
      {always, [](Plist& p) { WhenRules::crashed(p, off); }, KeepAlive({}, false, {}, {}, {})},
      {KeepAlive({}, true, {}, {}, {}), [](Plist& p) { WhenRules::crashed(p, optionOff); }, KeepAlive()},
      {std::nullopt, [](Plist& p) { WhenRules::crashed(p, on); }, KeepAlive({}, true, {}, {}, {})},
      {always, [](Plist& p) { WhenRules::successfulExit(p, on); }, KeepAlive({}, {}, true, {}, {})},
      {KeepAlive({}, true, true, {}, {}), [](Plist& p) { WhenRules::successfulExit(p, optionOff); },
       KeepAlive({}, true, {}, {}, {})},
      {std::nullopt, [](Plist& p) { WhenRules::successfulExit(p, off); }, KeepAlive({}, {}, false, {}, {})},
      {always,
       [](Plist& p) {
         tableChanged(p, "PathState", {{true, ""}, {false, "a"}});
       },
       KeepAlive({}, {}, {}, jobfile::StringMap<bool>{{"a", false}}, {})},
      {std::nullopt,
       [](Plist& p) {
         tableChanged(p, "OtherJobEnabled", {{true, "b"}});
       },
       KeepAlive({}, {}, {}, {}, jobfile::StringMap<bool>{{"b", true}})},
      {many,
       [](Plist& p) {
         tableChanged(p, "PathState", {{true, ""}});
       },
       KeepAlive({}, true, false, {}, {})},
      {always,
       [](Plist& p) {
         tableChanged(p, "Else", {{true, "b"}});
       },
       always},
  };
  for (const auto& row : table) {
    SCOPED_TRACE(&row - table);
    Plist plist;
    if (row.before) plist.keepAlive = *row.before;
    row.change(plist);
    EXPECT_EQ(plist.keepAlive ? std::optional(*plist.keepAlive) : std::nullopt, row.after);
  }
}

TEST_F(EditorRulesTest, AConditionThatComesAndGoesAgainLeavesWhatStoodThere) {
  const KeepAlive crashing({}, true, {}, {}, {});
  for (const auto& before : {KeepAlive(true, {}, {}, {}, {}), KeepAlive(false, {}, {}, {}, {}), crashing}) {
    Plist plist = recordWith(before);
    std::optional<bool> plain;
    Unfinished unfinished;
    for (const char* typed : {"o", "org.other", ""}) {
      WhenRules::gridTableChanged(plist, unfinished, "OtherJobEnabled", {{true, typed}}, plain);
      EXPECT_EQ(plist.keepAlive->bool_.has_value(), *typed == '\0' && before.bool_.has_value()) << typed;
    }
    EXPECT_EQ(*plist.keepAlive, before);
  }
}

TEST_F(EditorRulesTest, RowsThatCantBeSavedAreUnfinishedAndLeaveTheRecordAlone) {
  const std::vector<GridTable::Item> twice{{true, "/a"}, {false, "/a"}};
  Plist plist = recordWith(KeepAlive({}, {}, {}, jobfile::StringMap<bool>{{"/b", true}}, {}));
  Unfinished unfinished;
  std::optional<bool> plain;
  WhenRules::gridTableChanged(plist, unfinished, "PathState", twice, plain);
  EXPECT_THAT(*plist.keepAlive->pathState, ElementsAre(std::pair<const std::string, bool>("/b", true)));
  EXPECT_EQ(std::get<std::vector<GridTable::Item>>(WhenRules::conditionRows(plist, unfinished, "PathState")), twice);
  EXPECT_TRUE(
      std::get<jobfile::StringMap<bool>>(WhenRules::conditionRows(plist, unfinished, "OtherJobEnabled")).empty());
  WhenRules::gridTableChanged(plist, unfinished, "PathState", {{false, "/a"}}, plain);
  EXPECT_TRUE(unfinished.isEmpty());
  EXPECT_THAT(*plist.keepAlive->pathState, ElementsAre(std::pair<const std::string, bool>("/a", false)));

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

TEST_F(EditorRulesTest, TheDetailsShowWhatTheRecordHoldsAndNothingElse) {
  using WhenRules::Display;
  EXPECT_EQ(WhenRules::display(Plist(), program()), Display());
  EXPECT_EQ(WhenRules::display(recordWith(KeepAlive(false, true, {}, {}, {})), program()), Display{.keepAlive = false});
  EXPECT_EQ(WhenRules::display(recordWith(KeepAlive()), program()), Display{.keepAlive = true});

  Plist plist = recordWith(KeepAlive({}, true, false, jobfile::StringMap<bool>{{roots.home / "x", true}, {"/b", false}},
                                     jobfile::StringMap<bool>{{"org.b", false}, {"", true}}));
  plist.keepAlive->networkState = true;
  plist.keepAlive->afterInitialDemand = false;
  plist.runAtLoad = false;
  plist.startOnMount = true;
  plist.startInterval = 60;
  const Display display = WhenRules::display(plist, program());
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
  const auto subscription = program().notifications.rootChanged.subscribe([&] { ++asked; });
  GeneralRules::changeKind(program(), Kind::systemDaemon);
  EXPECT_EQ(asked, 1) << "also without a job";
  EXPECT_FALSE(program().editing.hasUnsavedChanges());
  program().selection.select(jobNamed("a"));
  GeneralRules::changeKind(program(), Kind::userAgent);
  EXPECT_FALSE(program().editing.hasUnsavedChanges()) << "it is of that kind";
  GeneralRules::changeKind(program(), Kind::localDaemon);
  EXPECT_EQ(asked, 2);
  GeneralRules::changeKind(program(), Kind::localAgent);
  EXPECT_EQ(asked, 2) << "not when it stops running as root";
  EXPECT_EQ(jobNamed("a")->kind, Kind::localAgent);
  EXPECT_EQ(jobNamed("a")->originalKind, Kind::userAgent);
  EXPECT_TRUE(program().editing.hasUnsavedChanges());
}

TEST_F(EditorRulesTest, TextsGoIntoTheRecordAndEmptyOnesOutOfIt) {
  Plist plist;
  GeneralRules::userName(plist, "ada");
  GeneralRules::groupName(plist, "staff");
  EXPECT_EQ(plist.userName, "ada");
  EXPECT_EQ(plist.groupName, "staff");
  GeneralRules::userName(plist, "");
  GeneralRules::groupName(plist, "");
  EXPECT_EQ(plist.userName, std::nullopt);
  EXPECT_EQ(plist.groupName, std::nullopt);

  GeneralRules::run(plist, "perl ~/x.pl", program().repairs);
  EXPECT_EQ(plist.run, "/usr/bin/perl " + roots.home.string() + "/x.pl");
  ASSERT_TRUE(foundation.defaults.set(Defaults::Key::automaticHelp, false));
  GeneralRules::run(plist, "perl ~/x.pl", program().repairs);
  EXPECT_EQ(plist.run, "perl ~/x.pl");
}

}  // namespace
}  // namespace mirvel
