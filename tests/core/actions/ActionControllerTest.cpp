#include <gmock/gmock.h>

#include "core/catalogue/Launchd.h"
#include "support/ProgramFixture.h"
#include "support/RecordingShell.h"

namespace mirvel {
namespace {

using propertylist::Dictionary;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

TEST(ActionTest, ARequestContainsOnlyTheFieldsThatAreSet) {
  const auto request = [](Dictionary keys, bool isPrivileged = false) {
    keys.set("presentError", true);
    keys.set("privileged", isPrivileged);
    return keys;
  };
  const auto test = Action::test(URL::file("/t.plist"), URL::file("/t.out"), "text", "label");
  EXPECT_EQ(test->request({}).write(), request({{"kind", 6},
                                                {"testPath", "/t.plist"},
                                                {"testOutputPath", "/t.out"},
                                                {"string", "text"},
                                                {"label", "label"}}));
  EXPECT_FALSE(test->cleanUp);
  const auto log = Action::log({.lastString = "4h", .period = std::chrono::hours(4), .searchString = "x"});
  const Dictionary query{{"lastString", "4h"}, {"lastSeconds", "14400"}, {"searchString", "x"}};
  EXPECT_EQ(log->request({}).write(), request({{"kind", 9}, {"logQuery", query}}));
  const auto unload = Action::unload("", URL::file("/nowhere/x"));
  unload->privileged = true;
  EXPECT_EQ(unload->request({}).write(), request({{"kind", 4}, {"path", "/nowhere/x"}}, true)) << "no empty label";
}

class ActionControllerTest : public testdata::ProgramFixture {
 protected:
  std::shared_ptr<Launchd> savedJob(Kind kind, bool isNew = false) {
    const auto file = writeJob(kind, "job", {{"Program", "/bin/ls"}});
    auto job = Launchd::read(testdata::bytes(file), URL::file(file), kind, {}, console);
    job->isNewFile = isNew;
    program().selection.select(job);
    program().editing.setUnsavedChanges(true);
    program().actions.save(job);
    return job;
  }
  /// Sends an action whose outcome is recorded as "name log" or "name output", and "name done" or "name failed".
  Action::Shared send(const std::string& name, const Action::Shared& action, bool isPrivileged = false) {
    action->logReplyReceived = [this, name](const auto&) { ended.push_back(name + " log"); };
    action->testFinished = [this, name](const auto&) { ended.push_back(name + " output"); };
    action->ended = [this, name](bool isDone) { ended.push_back(name + (isDone ? " done" : " failed")); };
    ActionController& actions = program().actions;
    EXPECT_TRUE(isPrivileged ? actions.sendPrivileged(action) : actions.send(action));
    return action;
  }

  std::vector<std::string> ended;
  const Error died{.code = Error::Code::Io, .message = "the helper has ended"};
};

TEST_F(ActionControllerTest, AHelperThatCantBeReachedGetsNothingAndNoRevisionIsSaved) {
  testdata::RecordingShell shell(program());
  helpers.canConnect = false;
  savedJob(Kind::userAgent);
  EXPECT_THAT(interface.errors, ElementsAre(Pair("Couldn’t communicate with the helper tool", "Please try again.")));
  EXPECT_EQ(program().revisions.revisions().size(), 0U);
  EXPECT_TRUE(program().editing.hasUnsavedChanges());
  EXPECT_FALSE(program().saving.isBusy()) << "the user can try again";
}

TEST_F(ActionControllerTest, TheRequestAfterAFailedConnectionGetsANewOne) {
  testdata::RecordingShell shell(program());
  for (const Kind kind : {Kind::userAgent, Kind::localDaemon}) {
    helpers.requests.clear();
    helpers.ended.clear();
    interface.errors.clear();
    savedJob(kind);
    helpers.requests.back().failure(died);
    EXPECT_THAT(interface.errors, SizeIs(1));
    EXPECT_FALSE(program().saving.isBusy());
    EXPECT_TRUE(program().editing.hasUnsavedChanges()) << "edits stay";
    EXPECT_THAT(helpers.ended, ElementsAre(kind == Kind::userAgent ? "action" : "privileged"));
    const ActionController& actions = program().actions;
    EXPECT_FALSE(kind == Kind::userAgent ? actions.isConnected() : actions.isAuthorised());
    queue.runDue();
    savedJob(kind);
    helpers.requests.back().reply({});
    EXPECT_THAT(interface.errors, SizeIs(1)) << "the second save has a new connection";
    queue.runDue();
  }
  savedJob(Kind::userAgent, true);
  EXPECT_TRUE(program().selection.job());
  helpers.requests.back().failure(died);
  EXPECT_FALSE(program().selection.job()) << "a new job has no file";
}

TEST_F(ActionControllerTest, ARefusedAuthorisationIsShownOnceAndChangesNothing) {
  testdata::RecordingShell shell(program());
  helpers.isHandshakeHeld = true;
  const struct {
    std::function<void()> answer;
    std::size_t errors;
  } table[] = {
      {[this] { helpers.privilegedReply({}); }, 1},
      {[this] { helpers.privilegedReply({.connection = {}, .authData = {}, .isCancelled = true}); }, 0},
      {[this] { helpers.privilegedFailure(died); }, 1},
  };
  for (const auto& [answer, errors] : table) {
    for (const Kind kind : {Kind::userAgent, Kind::localAgent, Kind::localDaemon}) {
      for (const Kind before : {Kind::userAgent, Kind::localAgent, Kind::localDaemon}) {
        if (kind == Kind::userAgent && before == Kind::userAgent) continue;
        interface.errors.clear();
        const auto file = writeJob(before, "job", {{"Program", "/bin/ls"}});
        const auto job = Launchd::read(testdata::bytes(file), URL::file(file), before, {}, console);
        program().editing.setUnsavedChanges(false);
        program().selection.select(job);
        Launchd* const edited = program().editing.markJobChanged();
        edited->kind = kind;
        edited->plist().name.clear();  // a save would fill it
        const jobfile::Plist record = job->plist().clone();
        shell.events.clear();
        program().actions.save(job);
        EXPECT_TRUE(program().saving.isBusy());
        answer();
        EXPECT_THAT(helpers.requests, IsEmpty());
        EXPECT_THAT(interface.errors, SizeIs(errors)) << "none after Cancel";
        EXPECT_FALSE(program().saving.isBusy());
        EXPECT_TRUE(program().editing.hasUnsavedChanges());
        EXPECT_EQ(program().selection.job(), job);
        EXPECT_EQ(job->url.path(), file);
        EXPECT_EQ(job->plist(), record);
        EXPECT_TRUE(program().editing.canUndo());
        EXPECT_EQ(shell.count("saveCompleted") + shell.count("showDisplay"), 0U);
        EXPECT_FALSE(std::filesystem::exists(roots.applicationSupport / "Moves.plist"));
        std::filesystem::remove(file);
      }
    }
  }
  savedJob(Kind::localDaemon, true);
  helpers.privilegedReply({});
  EXPECT_FALSE(program().selection.job()) << "a new job has no file";
}

TEST_F(ActionControllerTest, ACrashOfAHelperEndsAllItsRequestsAndIsShownOnce) {
  testdata::RecordingShell shell(program());
  const auto unload = [] { return Action::unload("x", URL::file("/x")); };
  const auto quiet = unload();
  quiet->presentError = false;
  (void)send("a", quiet);
  for (const char* name : {"b", "c"}) (void)send(name, unload());
  (void)send("log", Action::log({}));
  helpers.requests[1].reply({});
  (void)send("d", unload());
  helpers.requests[2].failure(died);
  EXPECT_THAT(ended, ElementsAre("b done", "a failed", "c failed", "log failed", "d failed"));
  EXPECT_THAT(interface.errors, SizeIs(1));
  EXPECT_FALSE(program().actions.isConnected());
  helpers.requests[0].failure(died);
  helpers.requests[0].reply({});
  EXPECT_THAT(ended, SizeIs(5)) << "each ends once";
  (void)send("e", unload());
  EXPECT_THAT(ended, SizeIs(5)) << "it has a new connection";
}

TEST_F(ActionControllerTest, WhatEndsWithACrashMayCancelOtherRequestsOfTheHelper) {
  const auto log = Action::log({});
  const auto unload = send("unload", Action::unload("x", URL::file("/x")));
  unload->ended = [this, log, next = unload->ended](bool isDone) {
    program().actions.cancel(log);
    next(isDone);
  };
  (void)send("log", log);
  helpers.requests[0].failure(died);
  EXPECT_THAT(ended, ElementsAre("log failed", "unload failed"));
}

TEST_F(ActionControllerTest, AHelperThatHangsIsGivenUpButNotOneThatSearchesTheLog) {
  (void)send("log", Action::log({}));
  queue.runFor(HelperLink::secondsToAnswer);
  EXPECT_THAT(ended, IsEmpty());
  (void)send("slow", Action::unload("a", URL::file("/x/a")));
  queue.runFor(HelperLink::secondsToAnswer - 1);
  helpers.requests.back().reply({});
  (void)send("hanging", Action::unload("b", URL::file("/x/b")));
  queue.runFor(HelperLink::secondsToAnswer - 1);
  EXPECT_THAT(ended, ElementsAre("slow done"));
  queue.runFor(1);
  EXPECT_THAT(ended, ElementsAre("slow done", "log failed", "hanging failed"));
  EXPECT_THAT(interface.errors, ElementsAre(Pair("The helper hasn't answered for 10 minutes", "")));
  EXPECT_THAT(helpers.ended, ElementsAre("action"));
  (void)send("next", Action::unload("c", URL::file("/x/c")));
  helpers.requests.back().reply({});
  EXPECT_EQ(ended.back(), "next done");
}

TEST_F(ActionControllerTest, ACancelledRequestEndsAloneAndTheConnectionRemains) {
  for (const bool isPrivileged : {false, true}) {
    SCOPED_TRACE(isPrivileged);
    helpers.requests.clear();
    ended.clear();
    const auto first = send("first", Action::log({}), isPrivileged);
    (void)send("save", Action::unload("a", URL::file("/x/a")), isPrivileged);
    const auto last = send("last", Action::log({}), isPrivileged);
    program().actions.cancel(first);
    helpers.requests[1].reply({});
    program().actions.cancel(last);
    program().actions.cancel(last);
    helpers.requests[0].reply({{"logLines", propertylist::Array{}}, {"dropped", 0}});
    helpers.requests[2].failure(died);
    EXPECT_THAT(ended, ElementsAre("first failed", "save done", "last failed"));
    EXPECT_TRUE(helpers.requests[0].isCancelled && !helpers.requests[1].isCancelled && helpers.requests[2].isCancelled);
    EXPECT_THAT(helpers.ended, IsEmpty()) << "no second password";
    EXPECT_THAT(interface.errors, IsEmpty());
    (void)send("next", Action::log({}), isPrivileged);
    helpers.requests.back().reply({{"logLines", propertylist::Array{}}, {"dropped", 0}});
    EXPECT_THAT(ended, ElementsAre("first failed", "save done", "last failed", "next log", "next done"));
  }
}

TEST_F(ActionControllerTest, ARequestCancelledDuringThePasswordDialogIsNeverSent) {
  helpers.isHandshakeHeld = true;
  program().actions.cancel(send("a", Action::log({}), true));
  helpers.authorise();
  EXPECT_THAT(helpers.requests, IsEmpty());
  EXPECT_THAT(ended, ElementsAre("a failed"));
  EXPECT_TRUE(program().actions.isAuthorised());
}

TEST_F(ActionControllerTest, TheHelperIsStartedForTestsThatWereLeft) {
  std::filesystem::create_directories(roots.applicationSupport / "tests");
  program().actions.removeLeftTests();
  EXPECT_FALSE(program().actions.isConnected());
  (void)folder.write("support/tests/test-1/job.plist", "");
  program().actions.removeLeftTests();
  EXPECT_TRUE(program().actions.isConnected());
  EXPECT_THAT(helpers.requests, IsEmpty());
}

TEST_F(ActionControllerTest, ARequestThatCannotBeSentFailsAlone) {
  helpers.failsWithConnection = false;
  for (const char* name : {"a", "b"}) (void)send(name, Action::unload("x", URL::file("/x")));
  helpers.requests[0].failure({.code = Error::Code::LimitExceeded, .message = "too large"});
  EXPECT_THAT(ended, ElementsAre("a failed"));
  EXPECT_THAT(interface.errors, SizeIs(1));
  helpers.requests[1].reply({});
  EXPECT_THAT(ended, ElementsAre("a failed", "b done"));
  EXPECT_TRUE(program().actions.isConnected());
}

TEST_F(ActionControllerTest, AMalformedReplyEndsTheAction) {
  using Ended = std::vector<std::string>;
  const struct {
    Action::Kind kind;
    Dictionary reply;
    Ended expected;
  } table[] = {
      {Action::Kind::Unload, {}, {"a done"}},
      {Action::Kind::Unload, {{"error", "no dictionary"}}, {"a failed"}},
      {Action::Kind::Unload, {{"error", propertylist::Array{}}}, {"a failed"}},
      {Action::Kind::Log, {{"logLines", propertylist::Array{}}, {"dropped", 0}}, {"a log", "a done"}},
      {Action::Kind::Log, {}, {"a failed"}},
      {Action::Kind::Log, {{"logLines", "lines"}, {"dropped", 0}}, {"a failed"}},
      {Action::Kind::Log, {{"error", false}, {"logLines", propertylist::Array{}}, {"dropped", 0}}, {"a failed"}},
      {Action::Kind::Test,
       {{"test", "output"}, {"droppedLines", 0}, {"droppedBytes", 0}, {"seconds", 0.5}},
       {"a output", "a done"}},
      {Action::Kind::Test, {}, {"a failed"}},
      {Action::Kind::Test, {{"test", 1}, {"seconds", 0.5}}, {"a failed"}},
  };
  for (const auto& row : table) {
    interface.errors.clear();
    SCOPED_TRACE("row " + std::to_string(&row - table));
    ended.clear();
    (void)send("a", std::make_shared<Action>(row.kind));
    helpers.requests.back().reply(row.reply);
    EXPECT_EQ(ended, row.expected);
    EXPECT_THAT(interface.errors, SizeIs(row.expected.back() == "a done" ? 0 : 1));
  }
}

TEST_F(ActionControllerTest, QuittingClosesThePrivilegedConnectionAndKeepsTheEdit) {
  testdata::RecordingShell shell(program());
  savedJob(Kind::localDaemon);
  helpers.requests.back().reply({});
  program().editing.setUnsavedChanges(true);
  shell.events.clear();
  EXPECT_FALSE(program().termination.applicationShouldTerminate());
  EXPECT_EQ(helpers.requests.back().kind(), 3);
  EXPECT_THAT(helpers.ended, ElementsAre("privileged"));
  helpers.requests.back().reply({});
  EXPECT_TRUE(program().editing.hasUnsavedChanges());
  EXPECT_THAT(shell.events, IsEmpty());
}

TEST_F(ActionControllerTest, AnAuthorisationAfterTheEndOfTheProgramIsDropped) {
  helpers.isHandshakeHeld = true;
  savedJob(Kind::localDaemon);
  endProgram();
  helpers.authorise();
  EXPECT_THAT(helpers.requests, IsEmpty());
}

TEST_F(ActionControllerTest, RequestsContainTheAuthorisationUntilItsConnectionFails) {
  savedJob(Kind::userAgent);
  EXPECT_FALSE(helpers.requests.back().body.find("authData"));
  savedJob(Kind::localDaemon);
  savedJob(Kind::userAgent);
  EXPECT_EQ(helpers.requests.back().at("authData"), propertylist::Value(propertylist::Data{"secret"}));
  helpers.requests[1].failure(died);
  savedJob(Kind::userAgent);
  EXPECT_FALSE(helpers.requests.back().body.find("authData"));
}

TEST_F(ActionControllerTest, AnErrorOfAHelperIsShownAndTheEditsStay) {
  const Dictionary refusal{{"error", Dictionary{{"domain", "MirvelActionErrorDomain"}, {"code", 5}}}};
  testdata::RecordingShell shell(program());
  savedJob(Kind::userAgent);
  helpers.requests.back().reply(refusal);
  EXPECT_THAT(interface.errors, ElementsAre(Pair("The item couldn’t be added or removed because of an unknown error",
                                                 "Rename the item and try again")));
  EXPECT_TRUE(program().editing.hasUnsavedChanges());
  EXPECT_FALSE(program().saving.isBusy());
  EXPECT_EQ(shell.count("saveCompleted"), 0U);
}

}  // namespace
}  // namespace mirvel
