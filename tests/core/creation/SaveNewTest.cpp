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
  /// Walks through all pages; the sheet stands on the last one.
  static void fill(NewController& sheet, const std::string& name, const std::string& command = "/bin/ls -l") {
    sheet.name.setName(name);
    sheet.next();
    sheet.what.choose(New::Run::command);
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

TEST_F(SaveNewTest, TheFileHoldsWhatThePagesSay) {
  const std::pair<std::function<void(NewController&)>, Dictionary> table[] = {
      {[](NewController&) {}, {{"Label", "a b"}, {"ProgramArguments", arguments}, {"RunAtLoad", true}}},
      {[](NewController& sheet) {
         sheet.when.runAtLoad(false);
         sheet.when.keepAlive(true);
       },
       {{"KeepAlive", Dictionary{{"SuccessfulExit", true}}},
        {"Label", "a b"},
        {"ProgramArguments", arguments},
        {"RunAtLoad", false}}},
      {[](NewController& sheet) {
         sheet.when.keepAlive(true);
         sheet.when.keepAlive(false);
         sheet.when.scheduled(true);
         sheet.when.scheduled(false);
       },
       {{"Label", "a b"}, {"ProgramArguments", arguments}, {"RunAtLoad", true}}},
      {[](NewController& sheet) { sheet.when.scheduled(true); },
       {{"Label", "a b"}, {"ProgramArguments", arguments}, {"RunAtLoad", true}, {"StartInterval", 10}}},
      {[this](NewController&) { ASSERT_TRUE(foundation.defaults.setAutomaticPATH(true)); },
       {{"EnvironmentVariables", Dictionary{{"PATH", std::string(Const::defaultPATH)}}},
        {"Label", "a b"},
        {"ProgramArguments", arguments},
        {"RunAtLoad", true}}},
  };
  for (const auto& [change, content] : table) {
    NewController sheet(program().creationContext);
    Scheduled::RuleEditor editor(program().scheduledController);
    sheet.when.setRuleEditor(&editor);
    fill(sheet, "a b");
    change(sheet);
    if (editor.numberOfRows() > 0) editor.setNumber(0, "10");
    EXPECT_TRUE(sheet.next());
    EXPECT_EQ(written(), content) << "row " << &change - &table[0].first;
    sheet.when.setRuleEditor(nullptr);
  }
}

TEST_F(SaveNewTest, WhatIsHalfTypedInTheRulesIsTakenOver) {
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
    EXPECT_FALSE(selected->isNewFile) << "another save goes to the same file";
    helpers.requests.clear();
  }
}

TEST_F(SaveNewTest, AnUnusableNameLeavesTheSheetAsItIs) {
  NewController sheet(program().creationContext);
  fill(sheet, "app.mirvel.mine");  // only Mirvel itself has such jobs, and they aren't shown
  EXPECT_FALSE(sheet.next());
  EXPECT_THAT(interface.errors, ElementsAre(Pair("An error occurred while saving", "Please try again.")));
  EXPECT_THAT(helpers.requests, IsEmpty());
  EXPECT_EQ(sheet.currentPage(), New::Page::when);
  sheet.name.setName("mine");
  EXPECT_TRUE(sheet.next());
  EXPECT_EQ(writtenPath(), "user/LaunchAgents/mine.plist");
}

TEST_F(SaveNewTest, ACommandTooComplexIsAskedAboutOnce) {
  interface.answer.button = Interface::alternateButton;
  NewController sheet(program().creationContext);
  fill(sheet, "a", "/bin/ls | wc");
  EXPECT_TRUE(sheet.next());
  EXPECT_THAT(interface.alerts, SizeIs(1));
  EXPECT_EQ(*written().find("ProgramArguments"), propertylist::Value(Array{"/bin/ls", "|", "wc"}));
}

TEST_F(SaveNewTest, WhoeverGoesBackFromThatQuestionIsInTheSheetAgain) {
  interface.answer.button = Interface::otherButton;
  NewController sheet(program().creationContext);
  fill(sheet, "a", "/bin/ls | wc");
  EXPECT_FALSE(sheet.next());
  EXPECT_EQ(sheet.currentPage(), New::Page::when);
  EXPECT_EQ(sheet.job().plist.run, "/bin/ls | wc");
  EXPECT_THAT(helpers.requests, IsEmpty());
  EXPECT_THAT(interface.errors, IsEmpty());
}

TEST_F(SaveNewTest, ATypedCommandArrivesAsTyped) {
  const std::pair<std::string, Array> table[] = {
      {"/bin/grep -E 'a\\.b' f", {"/bin/grep", "-E", "a\\.b", "f"}},
      {"/usr/bin/printf \"\" x", {"/usr/bin/printf", "", "x"}},
      {"/bin/sh -c \"date >> 'a b'\"", {"/bin/sh", "-c", "date >> 'a b'"}},
      {"/bin/echo '\"a b\"' \\\\", {"/bin/echo", "\"a b\"", "\\"}},
  };
  for (const auto& [typed, words] : table) {
    NewController sheet(program().creationContext);
    fill(sheet, "a", typed);
    EXPECT_TRUE(sheet.next());
    EXPECT_EQ(*written().find("ProgramArguments"), propertylist::Value(words)) << typed;
  }
  EXPECT_THAT(interface.alerts, IsEmpty());
}

TEST_F(SaveNewTest, AJobThatCouldntBeSavedIsThereInTheNextSheet) {
  const Error died{.code = Error::Code::Io, .message = "the helper has ended"};
  const Dictionary refused{{"error", Dictionary{{"domain", "MirvelActionErrorDomain"}, {"code", 4}}}};
  helpers.isHandshakeHeld = true;
  const std::tuple<Kind, std::function<void()>, bool> table[] = {
      {Kind::userAgent, [&] { helpers.requests.back().reply({}); }, false},
      {Kind::userAgent, [&] { helpers.requests.back().reply(refused); }, true},
      {Kind::userAgent, [&] { helpers.requests.back().failure(died); }, true},
      {Kind::localDaemon, [&] { helpers.privilegedReply({}); }, true},
      {Kind::localAgent, [&] { helpers.privilegedReply({.connection = {}, .authData = {}, .isCancelled = true}); },
       true},
      {Kind::localDaemon, [&] { helpers.privilegedFailure(died); }, true},
      {Kind::localDaemon,
       [&] {
         helpers.authorise();
         helpers.requests.back().reply(refused);
       },
       true},
      {Kind::localAgent,
       [&] {
         helpers.authorise();
         helpers.requests.back().reply({});
       },
       false},
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
    EXPECT_FALSE(program().creation.unsaved) << "not before it is known, row " << row;
    answer();
    queue.runDue();
    NewController next(program().creationContext);
    EXPECT_EQ(next.name.name(), isKept ? "job" : "") << "row " << row;
    EXPECT_EQ(next.run.command.text(), isKept ? "/bin/ls -l" : "");
    EXPECT_EQ(next.name.chosenKind(), isKept ? kind : Kind(Kind::userAgent));
    if (isKept) {
      for (int page = 0; page < 3; ++page) next.next();
      helpers.requests.clear();
      EXPECT_TRUE(next.next()) << "it needs nothing more";
      if (helpers.requests.empty()) helpers.authorise();
      ASSERT_THAT(helpers.requests, SizeIs(1));
      EXPECT_EQ(written().find("StartInterval")->as<propertylist::Integer>()->toInt64(), 77);
    }
    helpers.requests.back().failure(died);  // so that the next row has a connection of its own
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
  EXPECT_EQ(NewController(program().creationContext).name.name(), "") << "and forgotten with the sheet that took it";
}

}  // namespace
}  // namespace mirvel
