#include "core/base/Const.h"
#include "core/creation/CreationFixture.h"
#include "core/creation/NewController.h"

namespace mirvel {
namespace {

using propertylist::Array;
using propertylist::Dictionary;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

class SaveNewTest : public CreationFixture {
 protected:
  /// Fills all pages, and goes to the last one.
  static void fill(NewController& sheet, const std::string& name, const std::string& command = "/bin/ls -l") {
    sheet.name.setName(name);
    sheet.next();
    sheet.what.choose(New::Run::Command);
    sheet.next();
    sheet.run.command.setText(command);
    sheet.next();
  }
  bool save(const std::string& name, Kind kind = Kind::userAgent) {
    NewController sheet(program().creationContext);
    fill(sheet, name);
    sheet.name.kindChanged(kind.rawValue());
    return sheet.next();
  }

  const Array arguments{"/bin/ls", "-l"};
};

TEST_F(SaveNewTest, TheFileContainsTheInputOfThePages) {
  const auto content = [this](Dictionary keys = {}, bool runAtLoad = true) {
    keys.set("Label", "a b");
    keys.set("ProgramArguments", arguments);
    keys.set("RunAtLoad", runAtLoad);
    return keys;
  };
  const std::pair<std::function<void(NewWhenPage&)>, Dictionary> table[] = {
      {[](NewWhenPage&) {}, content()},
      {[](NewWhenPage& when) { when.runAtLoad(false); }, content({}, false)},
      {[](NewWhenPage& when) { when.keepAlive(true); }, content({{"KeepAlive", Dictionary{{"SuccessfulExit", true}}}})},
      {[](NewWhenPage& when) { when.keepAlive(true), when.keepAlive(false); }, content()},
      {[](NewWhenPage& when) { when.scheduled(true), when.scheduled(false); }, content()},
      {[](NewWhenPage& when) { when.scheduled(true); }, content({{"StartInterval", 10}})},
      {[this](NewWhenPage&) { ASSERT_TRUE(foundation.defaults.setAutomaticPATH(true)); },
       content({{"EnvironmentVariables", Dictionary{{"PATH", std::string(Const::defaultPATH)}}}})},
  };
  for (const auto& [change, expected] : table) {
    NewController sheet(program().creationContext);
    Scheduled::RuleEditor editor(program().scheduledController);
    sheet.when.setRuleEditor(&editor);
    fill(sheet, "a b");
    change(sheet.when);
    if (editor.numberOfRows() > 0) editor.setNumber(0, "10");
    EXPECT_TRUE(sheet.next());
    EXPECT_EQ(written(), expected) << "row " << &change - &table[0].first;
    sheet.when.setRuleEditor(nullptr);
  }
}

TEST_F(SaveNewTest, TextBeingTypedInTheRulesIsSaved) {
  NewController sheet(program().creationContext);
  Scheduled::RuleEditor editor(program().scheduledController);
  sheet.when.setRuleEditor(&editor);
  fill(sheet, "a");
  sheet.when.scheduled(true);
  sheet.endEditing = [&] { editor.setNumber(0, "45"); };
  EXPECT_TRUE(sheet.next());
  EXPECT_EQ(written().find("StartInterval")->as<propertylist::Integer>()->toInt64(), 45);
}

TEST_F(SaveNewTest, TheJobGoesToTheFolderOfItsKindAndIsSelected) {
  const struct {
    Kind kind;
    std::string path;
    bool isPrivileged;
  } table[] = {
      {Kind::userAgent, "user/LaunchAgents/job.plist", false},
      {Kind::localAgent, "local/LaunchAgents/job.plist", true},
      {Kind::localDaemon, "local/LaunchDaemons/job.plist", true},
  };
  for (const auto& row : table) {
    shell.events.clear();
    EXPECT_TRUE(save("job", row.kind));
    EXPECT_EQ(writtenPath(), row.path);
    EXPECT_EQ(helpers.requests.back().isPrivileged, row.isPrivileged);
    EXPECT_EQ(program().revisions.revisions().find((folder.path() / row.path).string()) != nullptr, true);
    const auto selected = program().selection.job();
    ASSERT_TRUE(selected);
    EXPECT_TRUE(selected->isNewFile);
    EXPECT_THAT(shell.events, ElementsAre("busy", "deselect", "title Mirvel – job", "updateDetail", "select job job"));
    for (std::size_t answered = 0; answered < helpers.requests.size(); ++answered) helpers.requests[answered].reply({});
    EXPECT_FALSE(selected->isNewFile) << "the next save writes the same file";
    helpers.requests.clear();
  }
}

TEST_F(SaveNewTest, AnUnusableNameLeavesTheSheetAsItIs) {
  NewController sheet(program().creationContext);
  fill(sheet, "app.mirvel.mine");  // reserved for Mirvel's own jobs
  EXPECT_FALSE(sheet.next());
  EXPECT_THAT(interface.errors, ElementsAre(Pair("An error occurred while saving", "Please try again.")));
  EXPECT_THAT(helpers.requests, IsEmpty());
  EXPECT_EQ(sheet.currentPage(), New::Page::When);
  sheet.name.setName("mine");
  EXPECT_TRUE(sheet.next());
  EXPECT_EQ(writtenPath(), "user/LaunchAgents/mine.plist");
}

TEST_F(SaveNewTest, TheQuestionAboutAComplexCommandIsAskedOnceAndCanBeCancelled) {
  NewController sheet(program().creationContext);
  fill(sheet, "a", "/bin/ls | wc");
  interface.answer.button = Interface::otherButton;
  EXPECT_FALSE(sheet.next());
  EXPECT_EQ(sheet.currentPage(), New::Page::When);
  EXPECT_EQ(sheet.job().plist.run, "/bin/ls | wc");
  EXPECT_THAT(helpers.requests, IsEmpty());
  EXPECT_THAT(interface.errors, IsEmpty());
  interface.answer.button = Interface::alternateButton;
  EXPECT_TRUE(sheet.next());
  EXPECT_THAT(interface.alerts, SizeIs(2)) << "one for each attempt";
  EXPECT_EQ(*written().find("ProgramArguments"), propertylist::Value(Array{"/bin/ls", "|", "wc"}));
}

TEST_F(SaveNewTest, AJobThatCouldntBeSavedIsInTheNextSheet) {
  const Error died{.code = Error::Code::Io, .message = "the helper has ended"};
  const Dictionary refused{{"error", Dictionary{{"domain", "MirvelActionErrorDomain"}, {"code", 4}}}};
  helpers.isHandshakeHeld = true;
  const auto reply = [this](const Dictionary& body) { helpers.requests.back().reply(body); };
  const auto refuse = [this](bool isCancelled) {
    helpers.privilegedReply({.connection = {}, .authData = {}, .isCancelled = isCancelled});
  };
  const std::tuple<Kind, std::function<void()>, bool> table[] = {
      {Kind::userAgent, [&] { reply({}); }, false},
      {Kind::userAgent, [&] { reply(refused); }, true},
      {Kind::userAgent, [&] { helpers.requests.back().failure(died); }, true},
      {Kind::localDaemon, [&] { refuse(false); }, true},
      {Kind::localAgent, [&] { refuse(true); }, true},
      {Kind::localDaemon, [&] { helpers.privilegedFailure(died); }, true},
      {Kind::localDaemon, [&] { helpers.authorise(), reply(refused); }, true},
      {Kind::localAgent, [&] { helpers.authorise(), reply({}); }, false},
  };
  for (const auto& [kind, answer, isKept] : table) {
    const auto row = &kind - &std::get<0>(table[0]);
    {
      NewController sheet(program().creationContext);
      Scheduled::RuleEditor editor(program().scheduledController);
      sheet.when.setRuleEditor(&editor);
      fill(sheet, "job");
      sheet.name.kindChanged(kind.rawValue());
      sheet.when.scheduled(true);
      editor.setNumber(0, "77");
      EXPECT_TRUE(sheet.next());
    }
    EXPECT_FALSE(program().creation.unsaved) << "not before the reply, row " << row;
    answer();
    queue.runDue();
    NewController next(program().creationContext);
    EXPECT_EQ(next.name.name(), isKept ? "job" : "") << "row " << row;
    EXPECT_EQ(next.run.command.text(), isKept ? "/bin/ls -l" : "");
    EXPECT_EQ(next.name.chosenKind(), isKept ? kind : Kind(Kind::userAgent));
    if (isKept) {
      for (int page = 0; page < 3; ++page) next.next();
      helpers.requests.clear();
      EXPECT_TRUE(next.next()) << "it is complete";
      if (helpers.requests.empty()) helpers.authorise();
      ASSERT_THAT(helpers.requests, SizeIs(1));
      EXPECT_EQ(written().find("StartInterval")->as<propertylist::Integer>()->toInt64(), 77);
    }
    helpers.requests.back().failure(died);  // so that the next row has a new connection
    queue.runDue();
    helpers.requests.clear();
    program().creation.unsaved.reset();
  }
}

TEST_F(SaveNewTest, WithoutAnyHelperTheJobIsKept) {
  helpers.canConnect = false;
  EXPECT_TRUE(save("job"));
  EXPECT_THAT(interface.errors, SizeIs(1));
  EXPECT_EQ(NewController(program().creationContext).name.name(), "job");
  EXPECT_EQ(NewController(program().creationContext).name.name(), "") << "only the next sheet gets it";
}

}  // namespace
}  // namespace mirvel
