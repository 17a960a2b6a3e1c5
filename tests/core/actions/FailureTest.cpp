#include <gmock/gmock.h>
#include <gtest/gtest.h>

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

class FailureTest : public testdata::ProgramFixture {
 protected:
  const std::string tryAgain = "Please try again.";

  std::shared_ptr<Launchd> savedJob(Kind kind, bool isNew = false) {
    const auto file = writeJob(kind, "job", {{"Program", "/bin/ls"}});
    auto job = Launchd::read(testdata::bytes(file), URL::file(file), kind, {}, console);
    job->isNewFile = isNew;
    program().selection.select(job);
    program().editing.setUnsavedChanges(true);
    program().actions.save(job);
    return job;
  }
  const Error died{.code = Error::Code::Io, .message = "the helper has ended"};
};

TEST_F(FailureTest, AServiceThatCantBeReachedSendsNothingAndKeepsNoRevision) {
  testdata::RecordingShell shell(program());
  helpers.canConnect = false;
  savedJob(Kind::userAgent);
  EXPECT_THAT(interface.errors, ElementsAre(Pair("Could not establish communication with the helper tool", tryAgain)));
  EXPECT_EQ(program().revisions.revisions().size(), 0U);
  EXPECT_TRUE(program().editing.hasUnsavedChanges());
  EXPECT_FALSE(program().saving.isBusy()) << "it can be tried again";
}

TEST_F(FailureTest, AConnectionThatFailsCostsOneRequest) {
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
    EXPECT_THAT(interface.errors, SizeIs(1)) << "the next one has a connection of its own";
    queue.runDue();
  }
}

TEST_F(FailureTest, ANewFilesSelectionGoesWithTheConnection) {
  testdata::RecordingShell shell(program());
  savedJob(Kind::userAgent, true);
  helpers.requests.back().failure(died);
  EXPECT_FALSE(program().selection.job());
}

TEST_F(FailureTest, ARefusedAuthorisationIsToldOnceAndLeavesAllAsItWas) {
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
        EXPECT_THAT(interface.errors, SizeIs(errors)) << "who cancels knows";
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

TEST_F(FailureTest, AHelperThatDiesAnswersAllThatWaitAndIsToldOnce) {
  testdata::RecordingShell shell(program());
  std::vector<std::string> ended;
  const auto request = [&](const std::string& name, bool presentError) {
    auto action = Action::unload(name, URL::file("/x/" + name));
    action->presentError = presentError;
    action->ended = [&ended, name](bool isDone) { ended.push_back(name + (isDone ? " done" : " failed")); };
    EXPECT_TRUE(program().actions.send(action));
  };
  request("a", false);
  request("b", true);
  request("c", true);
  EXPECT_TRUE(program().actions.send(Action::log({})));
  helpers.requests[1].reply({});
  request("d", true);
  helpers.requests[2].failure(died);
  EXPECT_THAT(ended, ElementsAre("b done", "a failed", "c failed", "d failed"));
  EXPECT_THAT(interface.errors, SizeIs(1));
  EXPECT_FALSE(program().actions.isConnected());
  helpers.requests[0].failure(died);
  helpers.requests[0].reply({});
  EXPECT_THAT(ended, SizeIs(4)) << "each is answered once";
  request("e", true);
  EXPECT_THAT(ended, SizeIs(4)) << "over a connection of its own";
}

TEST_F(FailureTest, ACancelledRequestEndsAloneAndItsConnectionServesOn) {
  for (const bool isPrivileged : {false, true}) {
    SCOPED_TRACE(isPrivileged);
    helpers.requests.clear();
    std::vector<std::string> ended;
    const auto request = [&](const std::string& name, const Action::Shared& action) {
      action->ended = [&ended, name](bool isDone) { ended.push_back(name + (isDone ? " done" : " failed")); };
      ActionController& actions = program().actions;
      EXPECT_TRUE(isPrivileged ? actions.sendPrivileged(action) : actions.send(action));
      return action;
    };
    const auto first = request("first", Action::log({}));
    (void)request("save", Action::unload("a", URL::file("/x/a")));
    const auto last = request("last", Action::log({}));
    program().actions.cancel(first);
    helpers.requests[1].reply({});
    program().actions.cancel(last);
    program().actions.cancel(last);
    helpers.requests[0].reply({{"logQuery", propertylist::Array{}}});
    helpers.requests[2].failure(died);
    EXPECT_THAT(ended, ElementsAre("first failed", "save done", "last failed"));
    EXPECT_TRUE(helpers.requests[0].isCancelled && !helpers.requests[1].isCancelled && helpers.requests[2].isCancelled);
    EXPECT_THAT(helpers.ended, IsEmpty()) << "no second password";
    EXPECT_THAT(interface.errors, IsEmpty());
    (void)request("next", Action::log({}));
    helpers.requests.back().reply({{"logQuery", propertylist::Array{}}});
    EXPECT_EQ(ended.back(), "next done");
  }
}

TEST_F(FailureTest, WhatIsCancelledWhileThePasswordIsAskedForIsNeverSent) {
  helpers.isHandshakeHeld = true;
  int failures = 0;
  const auto action = Action::log({});
  action->ended = [&](bool isDone) { failures += isDone ? 0 : 1; };
  EXPECT_TRUE(program().actions.sendPrivileged(action));
  program().actions.cancel(action);
  helpers.authorise();
  EXPECT_THAT(helpers.requests, IsEmpty());
  EXPECT_EQ(failures, 1);
  EXPECT_TRUE(program().actions.isAuthorised());
}

TEST_F(FailureTest, ARequestThatCannotBeSentFailsAlone) {
  helpers.failsWithConnection = false;
  std::vector<bool> ended;
  for (int i = 0; i < 2; ++i) {
    const auto action = Action::unload("a", URL::file("/x/a"));
    action->ended = [&](bool isDone) { ended.push_back(isDone); };
    EXPECT_TRUE(program().actions.send(action));
  }
  helpers.requests[0].failure({.code = Error::Code::LimitExceeded, .message = "too large"});
  EXPECT_THAT(ended, ElementsAre(false));
  EXPECT_THAT(interface.errors, SizeIs(1));
  helpers.requests[1].reply({});
  EXPECT_THAT(ended, ElementsAre(false, true));
  EXPECT_TRUE(program().actions.isConnected());
}

TEST_F(FailureTest, AnAnswerThatIsNoneEndsWhatWaits) {
  struct Log final : LogType {
    int lines = 0, clears = 0;
    void logReplyReceived(const std::vector<messages::LogLine>&) override { ++lines; }
    void clear() override { ++clears; }
  } log;
  struct Test final : TestType {
    int outputs = 0;
    void testFinished(const std::string&) override { ++outputs; }
  } test;
  program().shell.log = &log;
  program().shell.test = &test;
  const struct {
    Action::Kind kind;
    Dictionary reply;
    bool isDone;
  } table[] = {
      {Action::Kind::Unload, {}, true},
      {Action::Kind::Unload, {{"error", "no dictionary"}}, false},
      {Action::Kind::Unload, {{"error", propertylist::Array{}}}, false},
      {Action::Kind::Log, {{"logQuery", propertylist::Array{}}}, true},
      {Action::Kind::Log, {}, false},
      {Action::Kind::Log, {{"logQuery", "lines"}}, false},
      {Action::Kind::Log, {{"error", false}, {"logQuery", propertylist::Array{}}}, false},
      {Action::Kind::Test, {{"test", "output"}}, true},
      {Action::Kind::Test, {}, false},
      {Action::Kind::Test, {{"test", 1}}, false},
  };
  int logs = 0, clears = 0, outputs = 0;
  for (const auto& row : table) {
    interface.errors.clear();
    std::vector<bool> ended;
    const auto action = std::make_shared<Action>(row.kind);
    action->ended = [&ended](bool isDone) { ended.push_back(isDone); };
    EXPECT_TRUE(program().actions.send(action));
    helpers.requests.back().reply(row.reply);
    EXPECT_THAT(ended, ElementsAre(row.isDone)) << "row " << &row - table;
    EXPECT_THAT(interface.errors, SizeIs(row.isDone ? 0 : 1)) << "row " << &row - table;
    if (row.kind == Action::Kind::Log) row.isDone ? ++logs : ++clears;
    if (row.kind == Action::Kind::Test && row.isDone) ++outputs;
    EXPECT_EQ(log.lines, logs);
    EXPECT_EQ(log.clears, clears) << "row " << &row - table;
    EXPECT_EQ(test.outputs, outputs);
  }
  program().shell.log = nullptr;
  program().shell.test = nullptr;
}

TEST_F(FailureTest, QuittingEndsTheConnectionAndNoEdit) {
  testdata::RecordingShell shell(program());
  savedJob(Kind::localDaemon);
  helpers.requests.back().reply({});
  savedJob(Kind::userAgent);
  helpers.requests.back().failure(died);
  ASSERT_TRUE(program().editing.hasUnsavedChanges());
  shell.events.clear();
  helpers.ended.clear();
  EXPECT_FALSE(program().termination.applicationShouldTerminate());
  ASSERT_THAT(interface.sheets, SizeIs(1));
  EXPECT_EQ(helpers.requests.back().kind(), 3);
  EXPECT_THAT(helpers.ended, ElementsAre("privileged"));
  helpers.requests.back().reply({});
  EXPECT_TRUE(program().editing.hasUnsavedChanges());
  EXPECT_THAT(shell.events, IsEmpty());
  interface.answerSheet(Interface::defaultButton);
  EXPECT_FALSE(program().termination.applicationShouldTerminate());
  EXPECT_THAT(interface.sheets, SizeIs(1)) << "it asks again";
}

TEST_F(FailureTest, AnAnswerAfterTheProgramsEndIsDropped) {
  helpers.isHandshakeHeld = true;
  savedJob(Kind::localDaemon);
  endProgram();
  helpers.authorise();
  EXPECT_THAT(helpers.requests, IsEmpty());
}

TEST_F(FailureTest, TheAuthorisationGoesAlongOnceThereIsOneAndUntilItsConnectionFails) {
  savedJob(Kind::userAgent);
  EXPECT_FALSE(helpers.requests.back().body.find("authData"));
  savedJob(Kind::localDaemon);
  savedJob(Kind::userAgent);
  EXPECT_EQ(helpers.requests.back().at("authData"), propertylist::Value(propertylist::Data{"secret"}));
  helpers.requests[1].failure(died);
  savedJob(Kind::userAgent);
  EXPECT_FALSE(helpers.requests.back().body.find("authData"));
}

TEST_F(FailureTest, AnErrorOfAHelperIsToldAndTheEditsStay) {
  const std::string domain = "MirvelActionErrorDomain";
  const std::string unknown = "An unknown error occurred";
  const std::string item = "The item couldn’t be added or removed because of an unknown error";
  const struct {
    propertylist::Value error;
    std::string message, informative;
  } table[] = {
      {Dictionary{{"domain", domain}}, unknown, tryAgain},
      {Dictionary{{"code", 1}}, unknown, tryAgain},
      {Dictionary{{"domain", domain}, {"code", 1}}, "Could not establish communication with the helper tool", tryAgain},
      {Dictionary{{"domain", domain}, {"code", 4}}, item, tryAgain},
      {Dictionary{{"domain", domain}, {"code", 5}}, item, "Rename the item and try again"},
      {Dictionary{{"domain", domain}, {"code", 7}}, "An unknown error occurred when fetching the log", tryAgain},
      {Dictionary{{"domain", domain}, {"code", 12}}, unknown + " (12)", tryAgain},
      {Dictionary{{"domain", "x"}, {"code", 3}, {"description", "What"}, {"suggestion", "Do"}}, "What", "Do"},
      {Dictionary{{"domain", "x"}, {"code", 3}, {"description", "What"}}, unknown + " (3)", tryAgain},
  };
  testdata::RecordingShell shell(program());
  for (const auto& row : table) {
    interface.errors.clear();
    savedJob(Kind::userAgent);
    helpers.requests.back().reply({{"error", row.error}});
    EXPECT_THAT(interface.errors, ElementsAre(Pair(row.message, row.informative)));
    EXPECT_TRUE(program().editing.hasUnsavedChanges());
    EXPECT_FALSE(program().saving.isBusy());
  }
  EXPECT_EQ(shell.count("saveCompleted"), 0U);

  interface.errors.clear();
  program().actions.uninstallInternalHelpers();
  helpers.requests.back().reply({{"error", table[0].error}});
  EXPECT_THAT(interface.errors, IsEmpty()) << "it asked not to be told";
}

}  // namespace
}  // namespace mirvel
