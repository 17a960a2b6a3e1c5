#include <gmock/gmock.h>

#include "core/messages/Replies.h"
#include "core/messages/Requests.h"

namespace mirvel::messages {
namespace {

using propertylist::Array;
using propertylist::Data;
using propertylist::Dictionary;
using std::chrono::seconds;

TEST(DateKeyTest, MomentsAreDecimalSeconds) {
  const std::pair<double, const char*> rows[] = {{0, "0"},         {1700000000.25, "1700000000.25"},
                                                 {-1.5, "-1.5"},   {0.000001, "0.000001"},
                                                 {12.05, "12.05"}, {2147483648, "2147483648"}};
  for (const auto& [moment, key] : rows) {
    EXPECT_EQ(dateKey(moment), key);
    EXPECT_EQ(dateOfKey(key), moment) << key;
  }
  for (const char* key :
       {"", "-", ".5", "5.", "1e3", "1,5", " 1", "1 ", "+1", "nan", "99999999999999999999", "1000000000001"}) {
    EXPECT_FALSE(dateOfKey(key)) << key;
  }
}

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
      {Kind::Test, TestOutput{"printed"}, {{"test", "printed"}}},
      {Kind::Log,
       LogLines{{{1.5, "first"}, {2, "second"}}},
       {{"logQuery", Array{Dictionary{{"1.5", "first"}}, Dictionary{{"2", "second"}}}}}},
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
      {Kind::Log, {{"logQuery", "lines"}}},
      {Kind::Log, {{"logQuery", Array{"line"}}}},
      {Kind::Log, {{"logQuery", Array{Dictionary{{"yesterday", "line"}}}}}},
      {Kind::Log, {{"logQuery", Array{Dictionary{{"1.5", 1}}}}}},
  };
  for (const auto& row : rows) EXPECT_FALSE(readReply(row.kind, row.body)) << &row - rows;
}

}  // namespace
}  // namespace mirvel::messages
