#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>

#include <cerrno>
#include <filesystem>
#include <functional>
#include <thread>

#include "helpers/wire/FrameSocket.h"
#include "helpers/wire/SocketHelperConnection.h"
#include "helpers/wire/StartHelper.h"
#include "support/TestData.h"
#include "support/ThreadQueue.h"

namespace mirvel::wire {
namespace {

using propertylist::Dictionary;

/// Collects the outcomes of requests.
struct Outcome {
  std::vector<Dictionary> replies = {};
  std::vector<Error> failures = {};

  std::size_t count() const { return replies.size() + failures.size(); }
  void ask(HelperConnection& connection, const Dictionary& request = {}) {
    connection.run(
        request, [this](const Dictionary& reply) { replies.push_back(reply); },
        [this](const Error& error) { failures.push_back(error); });
  }
};

Dictionary request(int number) {
  return {{"number", number}};
}

std::size_t openDescriptors() {
  const std::filesystem::path folder = std::filesystem::exists("/proc/self/fd") ? "/proc/self/fd" : "/dev/fd";
  std::size_t count = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder)) ++count;
  return count;
}

bool hasChildren() {
  return ::waitpid(-1, nullptr, WNOHANG) >= 0 || errno != ECHILD;
}

/// The helper's end of a connection.
class Peer {
 public:
  explicit Peer(FileDescriptor socket) : m_socket(std::move(socket)) {}

  Frame next() {
    auto frame = receiveFrame(m_socket.number(), m_reader);
    EXPECT_TRUE(frame && *frame);
    return frame && *frame ? **frame : Frame{};
  }
  void answer(std::int64_t id) { send({.id = id, .body = {{"to", id}}}); }
  void send(const Frame& frame) { EXPECT_TRUE(sendFrame(m_socket.number(), frame)); }
  void say(const std::string& bytes) { sendUninterrupted(m_socket.number(), bytes); }
  void hangUp() { m_socket.reset(); }
  /// Whether the connection accepts more, at once or as soon as it has read something.
  bool hasRoom() const {
    pollfd room{.fd = m_socket.number(), .events = POLLOUT, .revents = 0};
    return ::poll(&room, 1, 100) == 1;
  }

 private:
  FileDescriptor m_socket;
  FrameReader m_reader;
};

class SocketHelperConnectionTest : public testing::Test {
 protected:
  SocketHelperConnectionTest() { reconnect(); }

  testdata::ThreadQueue queue;
  Peer peer{{}};
  std::unique_ptr<SocketHelperConnection> connection;
  Outcome outcome;

  void reconnect() {
    SocketPair pair = SocketPair::make();
    peer = Peer(std::move(pair.theirs));
    connection = std::make_unique<SocketHelperConnection>(std::move(pair.ours), queue);
    outcome = {};
  }
  /// Runs everything that has been posted.
  void settle() {
    bool isRun = false;
    queue.post([&] { isRun = true; });
    ASSERT_TRUE(queue.runUntil([&] { return isRun; }));
  }

  bool wait(std::size_t count) {
    return queue.runUntil([&] { return outcome.count() >= count; });
  }
};

TEST_F(SocketHelperConnectionTest, APeerThatBreaksTheRulesFailsPendingAndLaterRequests) {
  struct Row {
    const char* what;
    std::function<void(Peer&, std::int64_t)> act;
    std::size_t replies, failures;
    Error::Code code;
  };
  const std::vector<Row> rows{
      {"hangs up", [](Peer& p, std::int64_t) { p.hangUp(); }, 0, 1, Error::Code::HungUp},
      {"answers and hangs up", [](Peer& p, std::int64_t id) { p.answer(id), p.hangUp(); }, 1, 0, Error::Code::HungUp},
      {"hangs up in mid-answer", [](Peer& p, std::int64_t) { p.say(std::string("\0\0\0\x09x", 5)), p.hangUp(); }, 0, 1,
       Error::Code::HungUp},
      {"says garbage", [](Peer& p, std::int64_t) { p.say(std::string("\0\0\0\x05hello", 9)); }, 0, 1,
       Error::Code::Malformed},
      {"says too much", [](Peer& p, std::int64_t) { p.say("\xff\xff\xff\xff"); }, 0, 1, Error::Code::LimitExceeded},
      {"sends an event to a request without a subscription",
       [](Peer& p, std::int64_t id) { p.send({.id = id, .kind = Frame::Kind::Event}); }, 0, 1, Error::Code::Malformed},
      {"cancels", [](Peer& p, std::int64_t id) { p.send({.id = id, .kind = Frame::Kind::Cancel}); }, 0, 1,
       Error::Code::Malformed},
      {"answers an unknown id", [](Peer& p, std::int64_t id) { p.answer(id + 100); }, 0, 1, Error::Code::Malformed},
      {"answers twice", [](Peer& p, std::int64_t id) { p.answer(id), p.answer(id), p.hangUp(); }, 1, 0,
       Error::Code::Malformed},
  };
  for (const auto& row : rows) {
    reconnect();
    outcome.ask(*connection);
    row.act(peer, peer.next().id);
    ASSERT_TRUE(wait(1)) << row.what;
    EXPECT_EQ(outcome.replies.size(), row.replies) << row.what;
    EXPECT_EQ(outcome.failures.size(), row.failures) << row.what;
    outcome.ask(*connection);
    ASSERT_TRUE(wait(2)) << row.what;
    ASSERT_EQ(outcome.failures.size(), row.failures + 1) << row.what;
    EXPECT_EQ(outcome.failures.back().code, row.code) << row.what << ": " << outcome.failures.back().text();
  }
}

TEST_F(SocketHelperConnectionTest, APeerThatDoesNotReadBlocksNobody) {
  const Dictionary large{{"string", propertylist::Data{std::string(std::size_t{2} << 20U, 'x')}}};
  for (int i = 0; i < 4; ++i) outcome.ask(*connection, large);  // far more than a socket accepts at once
  EXPECT_EQ(outcome.count(), 0U);
  for (int i = 0; i < 4; ++i) {
    const Frame frame = peer.next();
    EXPECT_TRUE(frame.body == large);
    peer.answer(frame.id);
  }
  ASSERT_TRUE(wait(4));
  EXPECT_EQ(outcome.replies.size(), 4U);
  outcome.ask(*connection, large);
  connection.reset();  // while it is sending
  EXPECT_EQ(outcome.count(), 4U);
}

TEST_F(SocketHelperConnectionTest, ARequestThatIsTooLargeFailsAloneAndNotBeforeTheCallReturns) {
  outcome.ask(*connection, {{"data", propertylist::Data{std::string(largestRequest, 'x')}}});
  EXPECT_EQ(outcome.count(), 0U);
  ASSERT_TRUE(wait(1));
  ASSERT_EQ(outcome.failures.size(), 1U);
  EXPECT_EQ(outcome.failures[0].code, Error::Code::LimitExceeded);
  outcome.ask(*connection, request(1));
  peer.answer(peer.next().id);
  ASSERT_TRUE(wait(2));
  EXPECT_EQ(outcome.replies.size(), 1U);
}

TEST_F(SocketHelperConnectionTest, TheAnswerToACancelledRequestIsDroppedAndTheOthersArrive) {
  std::vector<HelperConnection::Id> ids;
  for (int i = 0; i < 3; ++i) {
    outcome.ask(*connection, request(i));
    ids.push_back(peer.next().id);
  }
  peer.answer(ids[0]);  // crosses the cancel frame
  connection->cancel(ids[0]);
  connection->cancel(ids[1]);
  connection->cancel(ids[1]);
  for (const auto id : {ids[0], ids[1]}) EXPECT_EQ(peer.next(), (Frame{.id = id, .kind = Frame::Kind::Cancel}));
  peer.send({.id = ids[1], .body = {{"late", true}}, .kind = Frame::Kind::Event});
  peer.answer(ids[1]);
  peer.answer(ids[2]);
  ASSERT_TRUE(wait(1));
  EXPECT_EQ(outcome.replies, (std::vector<Dictionary>{{{"to", ids[2]}}}));
  EXPECT_FALSE(connection->hasFailed());
  outcome.ask(*connection, request(3));
  EXPECT_EQ(peer.next().body, request(3)) << "rather than another cancellation";
}

TEST_F(SocketHelperConnectionTest, MoreRequestsThanMayBeInFlightAreNotSent) {
  for (std::size_t i = 0; i <= mostRequests; ++i) outcome.ask(*connection);
  ASSERT_TRUE(wait(1));
  ASSERT_EQ(outcome.failures.size(), 1U);
  EXPECT_EQ(outcome.failures[0].code, Error::Code::LimitExceeded);
  for (std::size_t i = 0; i < mostRequests; ++i) peer.answer(peer.next().id);
  ASSERT_TRUE(wait(mostRequests + 1));
  outcome.ask(*connection);
  peer.answer(peer.next().id);
  ASSERT_TRUE(wait(mostRequests + 2));
  EXPECT_EQ(outcome.failures.size(), 1U);
}

TEST_F(SocketHelperConnectionTest, ABusyMainThreadIsNotFloodedAndMissesNoEvent) {
  constexpr int count = 5000;
  int events = 0;
  connection->run(
      {}, [](const auto&) {}, [](const auto&) {},
      [&](const Dictionary& event) {
        EXPECT_EQ(event, request(events));
        ++events;
      });
  const auto id = peer.next().id;
  int sent = 0;
  const auto send = [&] { peer.send({.id = id, .body = request(sent++), .kind = Frame::Kind::Event}); };
  while (sent < count && peer.hasRoom()) send();
  EXPECT_LT(sent, count) << "nothing more was received, as the queue wasn't run";
  std::thread sender([&] {
    while (sent < count) send();
  });
  EXPECT_TRUE(queue.runUntil([&] { return events == count; }));
  sender.join();
}

TEST_F(SocketHelperConnectionTest, EveryPendingRequestFailsOnceWhenTheHelperDiesOrTheConnectionEnds) {
  for (const bool dies : {true, false}) {
    reconnect();
    for (int i = 0; i < 3; ++i) outcome.ask(*connection, request(i));
    dies ? peer.hangUp() : connection->invalidate();
    EXPECT_EQ(connection->hasFailed(), !dies);
    EXPECT_EQ(outcome.count(), 0U) << "later, not from within the call";
    outcome.ask(*connection, request(3));
    ASSERT_TRUE(wait(4)) << dies;
    connection->invalidate();
    settle();
    EXPECT_EQ(outcome.failures.size(), 4U) << dies;
  }
}

TEST_F(SocketHelperConnectionTest, AFailureMayEndTheConnection) {
  const auto end = [&](const auto&) { connection.reset(); };
  for (int i = 0; i < 2; ++i) connection->run({}, end, end);
  peer.hangUp();
  ASSERT_TRUE(queue.runUntil([&] { return !connection; }));
}

TEST_F(SocketHelperConnectionTest, NothingIsDeliveredByAnEventLoopOfACallbackThatHasEndedTheConnection) {
  int late = 0;
  const auto count = [&](const auto&) { ++late; };
  connection->run({}, count, count, count);
  const auto subscription = peer.next().id;
  bool isOver = false;
  connection->run(
      {},
      [&](const auto&) {
        connection.reset();
        settle();  // as an alert does
        isOver = true;
      },
      count);
  peer.answer(peer.next().id);
  peer.send({.id = subscription, .kind = Frame::Kind::Event});
  peer.answer(subscription);
  ASSERT_TRUE(queue.runUntil([&] { return isOver; }));
  settle();
  EXPECT_EQ(late, 0);
}

TEST(StartHelperTest, HelpersLeaveNoOpenDescriptors) {
  struct Row {
    const char* script;
    std::size_t replies;
  };
  const std::vector<Row> rows{
      {"exec cat <&3 >&3", 1},           // answers each request with the request
      {"exit 0", 0},                     // dies at once
      {"head -c 1 <&3; kill -9 $$", 0},  // dies in the middle
      {"echo hello, friend >&3", 0},     // garbage
      {"test -e /dev/fd/9 || cat <&3 >&3", 1},
  };
  testdata::ThreadQueue queue;
  const FileDescriptor secret(::dup2(1, 9));  // must not reach the helper
  ASSERT_EQ(::fcntl(9, F_SETFD, FD_CLOEXEC), 0);
  const std::size_t before = openDescriptors();
  for (const auto& row : rows) {
    const auto reaper = std::make_shared<Reaper>(std::chrono::seconds(20));
    auto connection =
        startHelper({.path = "/bin/sh", .arguments = {"-c", row.script}, .environment = {{"PATH", "/usr/bin:/bin"}}},
                    queue, reaper);
    ASSERT_TRUE(connection) << connection.error().text();
    Outcome outcome;
    outcome.ask(**connection, request(5));
    ASSERT_TRUE(queue.runUntil([&] { return outcome.count() == 1; })) << row.script;
    EXPECT_EQ(outcome.replies.size(), row.replies) << row.script;
    for (const auto& reply : outcome.replies) EXPECT_EQ(reply, request(5));
  }
  EXPECT_EQ(openDescriptors(), before);
  EXPECT_FALSE(hasChildren());
}

TEST(StartHelperTest, ARequestSentRightBeforeTheEndArrives) {
  const testdata::TemporaryFolder folder;
  const std::string file = folder.path() / "heard";
  testdata::ThreadQueue queue;
  {
    auto connection = startHelper({.path = "/bin/sh",
                                   .arguments = {"-c", "head -c 12 <&3 | tail -c 8 >'" + file + "'"},
                                   .environment = {{"PATH", "/usr/bin:/bin"}}},
                                  queue, std::make_shared<Reaper>(std::chrono::seconds(20)));
    ASSERT_TRUE(connection);
    (*connection)
        ->run(
            request(1), [](const Dictionary&) {}, [](const Error&) {});
  }
  EXPECT_EQ(testdata::bytes(file), "bplist00");
}

TEST(StartHelperTest, AMissingProgramIsAnError) {
  testdata::ThreadQueue queue;
  const auto connection = startHelper({.path = "/nowhere/helper"}, queue, std::make_shared<Reaper>());
  ASSERT_FALSE(connection);
  EXPECT_EQ(connection.error().code, Error::Code::NotFound);
  EXPECT_FALSE(hasChildren());
}

}  // namespace
}  // namespace mirvel::wire
