#include "core/runs/TestRun.h"

#include <gmock/gmock.h>

#include "core/catalogue/Launchd.h"
#include "core/messages/Fields.h"
#include "core/messages/Replies.h"
#include "core/runs/VisibleText.h"
#include "support/ProgramFixture.h"

namespace mirvel {
namespace {

using messages::TestProgress;
using messages::TestResult;
using propertylist::Dictionary;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Grade = TestRun::Grade;
using State = TestRun::State;

class TestRunTest : public testdata::ProgramFixture {
 protected:
  std::unique_ptr<TestRun> newTest() {
    return std::make_unique<TestRun>(
        TestRun::Setup{program().actions, program().repairs, queue, foundation.localize, foundation.roots});
  }
  std::shared_ptr<Launchd> job(Kind kind = Kind::userAgent, const Dictionary& keys = {{"Program", "/bin/ls"}}) {
    return Launchd::read(testdata::jobText("job", keys), URL::file("/job.plist"), kind, {}, console);
  }
  static Dictionary reply(const TestResult& result) { return messages::write(messages::Reply(result)); }
  static Dictionary exited(std::int64_t code) { return reply({.outcome = RunEnd{.code = code}, .seconds = 2}); }
  /// Kinds of the requests so far; "x" after one that was cancelled, "r" after one to root's helper.
  std::string sent() const {
    std::string result;
    for (const auto& request : helpers.requests) {
      result += std::to_string(request.kind()) + (request.isPrivileged ? "r" : "") + (request.isCancelled ? "x" : "");
    }
    return result;
  }
  void answer(const Dictionary& body, std::size_t request = 0) {
    helpers.requests.at(request).reply(body);
    queue.runDue();
  }
  void print(const TestProgress& progress, std::size_t request = 0) {
    helpers.requests.at(request).event(messages::FieldWriter::write(progress));
  }

  const Error died{.code = Error::Code::HungUp, .message = "the helper has ended"};
};

TEST_F(TestRunTest, EveryAnswerEndsTheWaitWithItsVerdict) {
  const auto failure = HelperError::of(
      HelperFailure{.operation = HelperFailure::Operation::Test,
                    .cause = {.code = Error::Code::NotTrusted, .message = "others could have written the file"}});
  const struct {
    std::function<void()> act;
    State state;
    Grade grade;
    std::string verdict;
    std::string details;
    std::string requestsAfterClosing;
  } rows[] = {
      {[this] { answer(exited(0)); }, State::Ended, Grade::Good, "Exited with code 0 after 2 s", "", "64"},
      {[this] { answer(exited(3)); }, State::Ended, Grade::Bad, "Exited with code 3 after 2 s", "", "64"},
      {[this] {
         answer(reply({.outcome = RunEnd{.how = RunEnd::How::CouldNotStart,
                                         .code = ENOENT,
                                         .obstacle = StartObstacle::Program,
                                         .subject = "/no/such"}}));
       },
       State::Ended, Grade::Bad, "Couldn’t be started: the program “/no/such” doesn’t exist", "", "64"},
      {[this] { answer(reply({.outcome = RunEnd{.how = RunEnd::How::Lost}})); }, State::Ended, Grade::Unclear,
       "It isn’t known how it ended", "", "64"},
      {[this] { answer(reply({.outcome = RunEnd{.isStopped = true}, .seconds = 2})); }, State::Ended, Grade::Unclear,
       "Stopped, with exit code 0 after 2 s", "", "64"},
      {[this] { answer(reply({.seconds = 60})); }, State::StillLoaded, Grade::Unclear, "Still running after 1 min 0 s",
       "It’s stopped when you close this sheet.", "64"},
      {[&] { answer(messages::write(messages::Reply(failure))); }, State::Ended, Grade::Bad, "The test couldn’t be run",
       "Make sure that only you can change the file and its folder, and try again.\n\nothers could have written the "
       "file",
       "6"},
      {[this] {
         answer({{"test", 5}});
       },
       State::Ended, Grade::Bad, "An unknown error occurred", "Please try again.", "6"},
      {[this] { helpers.requests[0].failure(died); }, State::Ended, Grade::Bad,
       "Couldn’t communicate with the helper tool", "Please try again.\n\nthe helper has ended", "6"},
      {[this] { queue.runFor(601); }, State::Ended, Grade::Bad, "Couldn’t communicate with the helper tool",
       "Please try again.\n\nthe helper hasn't answered for 10 minutes", "6"},
  };
  for (const auto& row : rows) {
    helpers.requests.clear();
    auto test = newTest();
    test->start(*job());
    EXPECT_EQ(test->state(), State::Running);
    EXPECT_TRUE(test->isBusy());
    row.act();
    EXPECT_FALSE(test->isBusy()) << row.verdict;
    EXPECT_EQ(test->state(), row.state) << row.verdict;
    EXPECT_EQ(test->grade(), row.grade) << row.verdict;
    EXPECT_EQ(test->verdict(), row.verdict);
    EXPECT_EQ(test->details(), row.details);
    test.reset();
    EXPECT_EQ(sent(), row.requestsAfterClosing) << row.verdict;
  }
  EXPECT_THAT(interface.errors, IsEmpty()) << "the sheet says it";
}

TEST_F(TestRunTest, OutputComesInPiecesAndIsReplacedByTheWholeAtTheEnd) {
  const auto test = newTest();
  test->start(*job());
  EXPECT_EQ(test->placeholder(), "No output yet");
  print({.beginning = "one\r"});
  EXPECT_EQ(test->beginning(), "one");
  print({.beginning = "\ntwo\x1B[m"});
  EXPECT_EQ(test->beginning(), "one\ntwo^[[m");
  print({.droppedLines = 2000, .droppedBytes = 30000, .end = "end"});
  EXPECT_EQ(test->rest(), "\n[… left out: lines 2,000, bytes 30,000 …]\nend");
  helpers.requests[0].event({{"beginning", 5}});
  queue.runFor(3);
  EXPECT_EQ(test->verdict(), "Running for 3 s");
  answer(reply({.text = "one\r\ntwo\x1B[m\nlost before\n", .outcome = RunEnd(), .seconds = 3}));
  EXPECT_EQ(test->beginning(), "one\ntwo^[[m\nlost before\n");
  EXPECT_EQ(test->rest(), "");
  EXPECT_EQ(test->placeholder(), "");
  test->start(*job());
  EXPECT_EQ(test->beginning(), "");
  answer(exited(0), 2);
  EXPECT_EQ(test->placeholder(), "No output") << "which alone is no success";
}

TEST_F(TestRunTest, EachAnswerGoesToTheTestThatAsked) {
  auto a = newTest();
  a->start(*job());
  auto b = newTest();
  b->start(*job());
  a.reset();
  EXPECT_EQ(sent(), "6x6");
  answer(exited(1));  // too late
  print({.beginning = "a"});
  EXPECT_EQ(b->state(), State::Running);
  EXPECT_EQ(b->beginning(), "");
  answer(exited(0), 1);
  EXPECT_EQ(b->verdict(), "Exited with code 0 after 2 s");
  b->start(*job());
  EXPECT_EQ(sent(), "6x646") << "another start removes the first job";
  EXPECT_EQ(helpers.requests[2].text("path"), helpers.requests[1].text("testPath"));
  EXPECT_EQ(helpers.requests[2].text("label"), helpers.requests[1].text("label"));
  EXPECT_NE(helpers.requests[3].text("label"), helpers.requests[1].text("label"));
  b.reset();
  EXPECT_EQ(sent(), "6x646x");
}

TEST_F(TestRunTest, StoppingKeepsTheOutputAndRemovesTheJobOnce) {
  const auto test = newTest();
  test->start(*job());
  print({.beginning = "a"});
  queue.runFor(5);
  test->stop();
  EXPECT_EQ(test->verdict(), "Stopped after 5 s");
  EXPECT_EQ(test->grade(), Grade::Unclear);
  EXPECT_EQ(test->beginning(), "a");
  EXPECT_EQ(sent(), "6x");
  test->stop();
  test->start(*job());
  answer(reply({.seconds = 60}), 1);
  ASSERT_TRUE(test->canStop());
  queue.runFor(100);
  test->stop();
  EXPECT_EQ(test->verdict(), "Stopped") << "the time isn't known";
  EXPECT_EQ(sent(), "6x64");
  EXPECT_FALSE(test->canStop());
  queue.runFor(5);
  EXPECT_EQ(sent(), "6x64");
}

TEST_F(TestRunTest, ADaemonIsTestedByRootAfterThePassword) {
  helpers.isHandshakeHeld = true;
  const auto test = newTest();
  test->start(*job(Kind::localDaemon));
  queue.runFor(5);
  EXPECT_EQ(test->state(), State::AwaitingPassword);
  EXPECT_EQ(test->verdict(), "Waiting for the password");
  helpers.privilegedReply({.isCancelled = true});
  EXPECT_EQ(test->verdict(), "The test wasn’t run, because it needs a password");
  EXPECT_FALSE(test->isBusy());
  EXPECT_EQ(sent(), "");

  test->start(*job(Kind::localDaemon));
  test->stop();
  EXPECT_FALSE(test->isBusy());
  helpers.authorise();
  EXPECT_EQ(sent(), "") << "it was stopped while the password was entered";

  test->start(*job(Kind::systemDaemon));
  EXPECT_EQ(sent(), "6r");
  queue.runFor(2);
  EXPECT_EQ(test->verdict(), "Running for 2 s");
  test->start(*job(Kind::localAgent));
  EXPECT_EQ(sent(), "6rx6") << "agents run as the user, also those of everyone";
}

TEST_F(TestRunTest, TheJobIsRemovedOverTheConnectionOfTheTestOnly) {
  auto test = newTest();
  test->start(*job(Kind::localDaemon));
  answer(exited(0));
  const auto lost = Action::load(URL::file("/other"));
  lost->presentError = false;
  ASSERT_TRUE(program().actions.sendPrivileged(lost));
  helpers.requests[1].failure(died);
  ASSERT_FALSE(program().actions.isAuthorised());
  helpers.isHandshakeHeld = true;
  test.reset();
  EXPECT_EQ(sent(), "6r5r");
  EXPECT_FALSE(program().actions.isAuthorising()) << "no password to remove what is gone";

  helpers.isHandshakeHeld = false;
  test = newTest();
  test->start(*job(Kind::localDaemon));
  answer(exited(0), 2);
  test.reset();
  EXPECT_EQ(sent(), "6r5r6r4r");
  answer(messages::write(HelperError::of(HelperFailure{.cause = died})), 3);
  EXPECT_THAT(interface.errors, IsEmpty());
}

TEST_F(TestRunTest, WhatCantBeSentEndsAtOnce) {
  const auto test = newTest();
  test->start(*job(Kind::userAgent, {}));
  EXPECT_EQ(test->verdict(), "The job has no command");
  test->refuse({.message = "“Nice” can’t be saved", .reason = "Enter a whole number."});
  EXPECT_EQ(test->verdict(), "“Nice” can’t be saved");
  EXPECT_EQ(test->details(), "Enter a whole number.");
  helpers.canConnect = false;
  test->start(*job());
  EXPECT_EQ(test->verdict(), "Couldn’t communicate with the helper tool");
  EXPECT_FALSE(test->isBusy());
  EXPECT_EQ(sent(), "");
}

TEST(VisibleTextTest, WhatCouldDeceiveIsShown) {
  const struct {
    std::string text;
    std::string shown;
  } rows[] = {{"a\tb\n", "a\tb\n"},
              {"a\r\nb\rc", "a\nb^Mc"},
              {std::string("\0\x1B\x7F", 3), "^@^[^?"},
              {"grün 日本 😀 \xEF\xBF\xBD", "grün 日本 😀 \xEF\xBF\xBD"},
              {"\xE2\x80\xAE"
               "gpj.exe",
               "‹U+202E›gpj.exe"},
              {"a\xE2\x81\xA6"
               "b\xE2\x81\xA9"
               "c\xD8\x9C"
               "d\xC2\x85",
               "a‹U+2066›b‹U+2069›c‹U+061C›d‹U+0085›"},
              {"\xE2\x80\xA8", "‹U+2028›"},
              {"\xE2\x80", "\xE2\x80"}};
  for (const auto& row : rows) EXPECT_EQ(visibleText(row.text), row.shown);
}

}  // namespace
}  // namespace mirvel
