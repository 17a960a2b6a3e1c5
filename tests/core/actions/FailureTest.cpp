#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/catalogue/Launchd.h"
#include "support/ProgramFixture.h"
#include "support/RecordingShell.h"

namespace mirvel {
namespace {

using plist::Dictionary;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

class FailureTest : public testdata::ProgramFixture {
 protected:
  const std::string tryAgain = "Please try again.";

  std::shared_ptr<Launchd> savedJob(Kind kind, bool isNew = false) {
    const auto file = writeJob(kind, "job", {{"Program", "/bin/ls"}});
    auto job = Launchd::read(testdata::bytes(file), URL::file(file), kind, Launchd::Source::File, {}, console);
    job->isNewFile = isNew;
    program().state.selectedJob = job;
    program().state.hasUnsavedChanges = true;
    program().actions.save(*job);
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
  EXPECT_TRUE(program().state.hasUnsavedChanges);
  EXPECT_FALSE(program().state.isBusy) << "it can be tried again";
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
    EXPECT_FALSE(program().state.isBusy);
    EXPECT_TRUE(program().state.hasUnsavedChanges) << "edits stay";
    EXPECT_THAT(helpers.ended, ElementsAre(kind == Kind::userAgent ? "action" : "privileged"));
    const ActionController& actions = program().actions;
    EXPECT_FALSE(kind == Kind::userAgent ? actions.connection() : actions.privilegedConnection());
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
  EXPECT_FALSE(program().state.selectedJob);
}

TEST_F(FailureTest, ARefusedAuthorisationIsToldAndACancelledOneReadsTheJobAnew) {
  testdata::RecordingShell shell(program());
  helpers.isHandshakeHeld = true;
  const auto job = savedJob(Kind::localDaemon);
  EXPECT_THAT(helpers.requests, IsEmpty());
  helpers.privilegedReply({});
  EXPECT_THAT(interface.errors, ElementsAre(Pair("Cannot authenticate", tryAgain)));
  EXPECT_TRUE(program().state.hasUnsavedChanges);
  EXPECT_FALSE(job->checksum.empty());

  savedJob(Kind::localDaemon);
  program().state.hasUnsavedChanges = false;
  helpers.privilegedReply({.connection = {}, .authData = {}, .isCancelled = true});
  EXPECT_THAT(interface.errors, SizeIs(1)) << "who cancels knows";
  EXPECT_TRUE(program().state.selectedJob->checksum.empty());
  EXPECT_EQ(fetchQueue.count(), 1U);

  savedJob(Kind::localDaemon, true);
  helpers.privilegedFailure(died);
  EXPECT_THAT(interface.errors, SizeIs(3)) << "by the routine, and by the exchange";
  EXPECT_FALSE(program().state.selectedJob);
}

TEST_F(FailureTest, AJobThatWasToMoveAndDidntIsWhereItWas) {
  for (const bool isCancelled : {true, false}) {
    helpers.isHandshakeHeld = true;
    const auto job = savedJob(Kind::userAgent);
    const std::string before = job->url.text();
    job->kind = Kind::localDaemon;
    program().actions.save(*job);
    EXPECT_NE(job->url.text(), before);
    if (isCancelled) {
      helpers.privilegedReply({.connection = {}, .authData = {}, .isCancelled = true});
    } else {
      helpers.privilegedFailure(died);
    }
    EXPECT_EQ(job->url.text(), before);
  }
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
  EXPECT_EQ(helpers.requests.back().at("authData"), plist::Value(plist::Data{"secret"}));
  helpers.requests[1].failure(died);
  savedJob(Kind::userAgent);
  EXPECT_FALSE(helpers.requests.back().body.find("authData"));
}

TEST_F(FailureTest, AnErrorOfAHelperIsToldAndTheEditsStay) {
  const std::string domain = "MirvelActionErrorDomain";
  const std::string unknown = "An unknown error occurred";
  const std::string item = "The item couldn’t be added or removed because of an unknown error";
  const struct {
    plist::Value error;
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
    EXPECT_TRUE(program().state.hasUnsavedChanges);
    EXPECT_FALSE(program().state.isBusy);
  }
  EXPECT_EQ(shell.count("saveCompleted"), 0U);
  helpers.requests.back().reply({{"error", "no dictionary"}});
  EXPECT_EQ(shell.count("saveCompleted"), 1U) << "counts as no error";

  interface.errors.clear();
  program().actions.uninstallInternalHelpers();
  helpers.requests.back().reply({{"error", table[0].error}});
  EXPECT_THAT(interface.errors, IsEmpty()) << "it asked not to be told";
}

}  // namespace
}  // namespace mirvel
