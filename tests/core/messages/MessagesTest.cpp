#include <gmock/gmock.h>

#include "core/messages/Replies.h"
#include "core/messages/Requests.h"

namespace mirvel::messages {
namespace {

using propertylist::Array;
using propertylist::Data;
using propertylist::Dictionary;
using std::chrono::seconds;

TEST(RequestTest, EveryRequestReachesTheOtherEndUnderItsNumber) {
  const struct {
    RequestContent content;
    Dictionary written;
  } rows[] = {
      {Write{.path = "/a.plist", .string = "x"}, {{"kind", 0}, {"path", "/a.plist"}, {"string", "x"}}},
      {Write{.path = "/a", .deletePath = "/b", .string = "x", .label = "l", .mode = 0600, .loads = true},
       {{"kind", 1}, {"path", "/a"}, {"deletePath", "/b"}, {"string", "x"}, {"label", "l"}, {"mode", 0600}}},
      {Delete{.deletePath = "/a", .label = "l"}, {{"kind", 2}, {"deletePath", "/a"}, {"label", "l"}}},
      {Quit(), {{"kind", 3}}},
      {Unload{.path = "/a"}, {{"kind", 4}, {"path", "/a"}}},
      {Load{.path = "/a"}, {{"kind", 5}, {"path", "/a"}}},
      {messages::Test{.testPath = "/t", .testOutputPath = "/o", .string = "x"},
       {{"kind", 6}, {"testPath", "/t"}, {"testOutputPath", "/o"}, {"string", "x"}}},
      {Uninstall(), {{"kind", 8}}},
      {Log{{.lastString = "4h", .period = seconds(14400), .searchString = "s"}},
       {{"kind", 9}, {"logQuery", Dictionary{{"lastString", "4h"}, {"lastSeconds", "14400"}, {"searchString", "s"}}}}},
      {Log{{.period = seconds(60), .searchString = "s", .after = 7}},
       {{"kind", 9}, {"logQuery", Dictionary{{"lastSeconds", "60"}, {"searchString", "s"}, {"after", 7}}}}},
      {Control{.path = "/a", .label = "l", .order = Control::Order::Start},
       {{"kind", 34}, {"path", "/a"}, {"label", "l"}}},
      {Control{.path = "/a", .label = "l", .order = Control::Order::Stop},
       {{"kind", 35}, {"path", "/a"}, {"label", "l"}}},
      {Control{.path = "/a", .label = "l", .order = Control::Order::Restart},
       {{"kind", 36}, {"path", "/a"}, {"label", "l"}}},
      {StartHost(), {{"kind", 32}}},
      {Subscribe{.topic = "runs"}, {{"kind", 33}, {"topic", "runs"}}},
  };
  for (auto [content, written] : rows) {
    const Request request{.content = content, .presentError = false, .authorisation = {Data{"secret"}}};
    written.set("presentError", false);
    written.set("privileged", false);
    written.set("authData", Data{"secret"});
    EXPECT_EQ(request.write(), written);
    const auto read = Request::read(written);
    ASSERT_TRUE(read) << read.error().text();
    EXPECT_EQ(*read, request) << static_cast<int>(request.kind());
  }
}

TEST(ReplyTest, EveryReplyReachesTheRequestThatAskedForIt) {
  const struct {
    Kind kind;
    Reply reply;
    Dictionary written;
  } rows[] = {
      {Kind::Load, Done(), {}},
      {Kind::Test,
       TestResult{.text = "printed", .outcome = RunEnd{.how = RunEnd::How::Signalled, .code = 9}, .seconds = 1.5},
       {{"test", "printed"},
        {"droppedLines", 0},
        {"droppedBytes", 0},
        {"outcome",
         Dictionary{
             {"how", 1}, {"code", 9}, {"obstacle", 0}, {"subject", ""}, {"stopped", false}, {"timedOut", false}}},
        {"seconds", 1.5}}},
      {Kind::Log,
       LogLines{.lines = {{.number = 7, .seconds = 1.5, .kind = LogLine::Kind::Event, .message = "first"}},
                .dropped = 3},
       {{"logLines", Array{Dictionary{{"number", 7}, {"seconds", 1.5}, {"kind", 1}, {"message", "first"}}}},
        {"dropped", 3}}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(write(row.reply), row.written);
    const auto read = readReply(row.kind, row.written);
    ASSERT_TRUE(read) << read.error().text();
    EXPECT_EQ(read->index(), row.reply.index());
    EXPECT_EQ(write(*read), row.written);
  }
}

TEST(ReplyTest, AFailureArrivesWithItsCause) {
  const std::pair<Error, const char*> rows[] = {
      {{.code = Error::Code::StillRunning, .message = "m", .file = "/a", .line = 3, .column = 4, .systemCode = 5},
       "/a: line 3, column 4: m"},
      {{.code = Error::Code::WrongType, .message = "m", .offset = 12, .keyPath = "k"}, "offset 12: k: m"},
  };
  for (const auto& [cause, text] : rows) {
    const auto read =
        readReply(Kind::Log, write(HelperError::of(HelperFailure{
                                 .operation = HelperFailure::Operation::Unload, .cause = cause, .isWritten = true})));
    ASSERT_TRUE(read);
    const auto& failure = *std::get<HelperError>(*read).failure;
    EXPECT_EQ(failure.operation, HelperFailure::Operation::Unload);
    EXPECT_EQ(failure.cause.code, cause.code);
    EXPECT_EQ(failure.cause.text(), text);
    EXPECT_EQ(failure.cause.systemCode, cause.systemCode);
    EXPECT_TRUE(failure.isWritten);
  }
}

TEST(ReplyTest, AReplyWithoutTheRequestedContentIsAnError) {
  const struct {
    Kind kind;
    Dictionary body;
  } rows[] = {
      {Kind::Load, {{"error", "words"}}},
      {Kind::Load, {{"error", Array{}}}},
      {Kind::Test, {}},
      {Kind::Test, {{"test", 1}}},
      {Kind::Log, {}},
      {Kind::Log, {{"logLines", "lines"}, {"dropped", 0}}},
      {Kind::Log, {{"logLines", Array{}}}},
      {Kind::Log, {{"logLines", Array{"line"}}, {"dropped", 0}}},
      {Kind::Log,
       {{"logLines", Array{Dictionary{{"number", 1}, {"seconds", 1.5}, {"kind", 2}, {"message", "m"}}}},
        {"dropped", 0}}},
  };
  for (const auto& row : rows) EXPECT_FALSE(readReply(row.kind, row.body)) << &row - rows;
}

TEST(JobReportTest, AReportIsReadAsItWasWritten) {
  const JobReport report{
      .label = "a",
      .path = "/a.plist",
      .isLoaded = true,
      .process = 12,
      .processStart = 34,
      .nextRun = 1.5,
      .runs = {{.number = 1,
                .start = 1,
                .endTime = 2,
                .cause = RunCause::Calendar,
                .process = 0,
                .end = RunEnd{.how = RunEnd::How::CouldNotStart, .code = 2, .obstacle = StartObstacle::User}},
               {.number = 2, .start = 3}},
      .missed = {{.time = 0.5, .why = MissedRun::Why::Asleep}}};
  const auto read = JobReport::read(report.write());
  ASSERT_TRUE(read) << read.error().text();
  EXPECT_EQ(*read, report);
  JobReport endless = report;
  endless.runs.resize(10 * JobReport::mostRuns + 1);
  EXPECT_EQ(JobReport::read(endless.write()).error().code, Error::Code::LimitExceeded);
}

TEST(JobReportTest, OnlyAJobThatEndedBadlyByItselfHasFailed) {
  using How = RunEnd::How;
  const struct {
    std::optional<RunEnd> end;
    RunCause cause;
    bool hasFailed;
  } rows[] = {
      {std::nullopt, RunCause::Load, false},
      {RunEnd{.how = How::Exited}, RunCause::Load, false},
      {RunEnd{.how = How::Exited, .code = 1}, RunCause::Load, true},
      {RunEnd{.how = How::Exited, .code = 1}, RunCause::Test, false},
      {RunEnd{.how = How::Exited, .code = 143, .isStopped = true}, RunCause::Load, false},
      {RunEnd{.how = How::Signalled, .code = 15}, RunCause::Request, true},
      {RunEnd{.how = How::Signalled, .code = 9, .isStopped = true, .isTimedOut = true}, RunCause::Load, false},
      {RunEnd{.how = How::CouldNotStart}, RunCause::KeepAlive, true},
      {RunEnd{.how = How::Lost}, RunCause::Load, false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(hasFailed({.cause = row.cause, .end = row.end}), row.hasFailed) << &row - rows;
  }
}

}  // namespace
}  // namespace mirvel::messages
