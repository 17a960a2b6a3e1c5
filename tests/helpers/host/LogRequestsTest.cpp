#include "helpers/host/LogRequests.h"

#include <gmock/gmock.h>
#include <sys/socket.h>

#include <array>

#include "helpers/wire/FrameSocket.h"
#include "support/TestData.h"

namespace mirvel::host {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto limit = messages::longestLogWait;

class LogRequestsTest : public testing::Test {
 protected:
  struct Client {
    std::shared_ptr<Connection> connection;
    FileDescriptor peer;
    wire::FrameReader reader = wire::FrameReader();

    /// The request and the lines of each answer that has been sent, such as "3: a b".
    std::vector<std::string> answers() {
      std::array<char, 65536> buffer;
      const ssize_t count = ::recv(peer.number(), buffer.data(), buffer.size(), MSG_DONTWAIT);
      if (count > 0) reader.append({buffer.data(), static_cast<std::size_t>(count)});
      std::vector<std::string> result;
      for (auto frame = reader.next(); frame && *frame; frame = reader.next()) {
        const auto answer = messages::FieldReader::read<hostdata::Log::Answer>((*frame)->body);
        result.push_back(std::to_string((*frame)->id) + ':');
        if (!answer) continue;
        const LogRange range{.after = answer->after};
        for (const auto& line : linesOfBlocks(answer->blocks.bytes, range).lines) result.back() += ' ' + line.message;
      }
      return result;
    }
  };

  static Client connect() {
    auto pair = wire::SocketPair::make();
    return {.connection = std::make_shared<Connection>(std::move(pair.ours)), .peer = std::move(pair.theirs)};
  }
  bool add(Client& client, std::int64_t id, std::optional<std::int64_t> after) {
    return requests.add(client.connection, id, {.label = "a", .after = after}, now);
  }
  std::vector<std::string> settled(Client& client) {
    requests.settle(now);
    return client.answers();
  }

  testdata::TemporaryFolder folder;
  JobLog log{folder.path() / "log"};
  LogRequests requests{log};
  std::chrono::milliseconds now = 1h;
  Client client = connect();
};

TEST_F(LogRequestsTest, AQueryWaitsForALineOnlyIfItSaysAfterWhich) {
  ASSERT_TRUE(log.addOutput("a", {"one"}));
  ASSERT_TRUE(add(client, 1, std::nullopt));
  ASSERT_TRUE(add(client, 2, 0));
  ASSERT_TRUE(add(client, 3, 1));
  EXPECT_THAT(settled(client), ElementsAre("1: one", "2: one"));
  EXPECT_THAT(requests.labels(), ElementsAre("a"));
  EXPECT_EQ(requests.wakeAt(), now + limit) << "it costs nothing meanwhile";
  ASSERT_TRUE(log.addOutput("b", {"of another label"}));
  now += LogRequests::pause;
  EXPECT_THAT(settled(client), IsEmpty());
  ASSERT_TRUE(log.addEvent("a", "two"));
  EXPECT_THAT(settled(client), ElementsAre("3: two"));
  requests.settle(now);
  EXPECT_THAT(requests.labels(), IsEmpty());
  EXPECT_EQ(requests.wakeAt(), std::nullopt);
}

TEST_F(LogRequestsTest, LinesDuringThePauseAreAnsweredTogether) {
  ASSERT_TRUE(log.addOutput("a", {"one"}));
  ASSERT_TRUE(add(client, 1, 0));
  EXPECT_THAT(settled(client), ElementsAre("1: one")) << "the first at once";
  ASSERT_TRUE(add(client, 2, 1));
  const auto end = now + LogRequests::pause;
  ASSERT_TRUE(log.addOutput("a", {"two"}));
  EXPECT_THAT(settled(client), IsEmpty());
  EXPECT_EQ(requests.wakeAt(), end);
  now = end - 1ms;
  ASSERT_TRUE(log.addOutput("a", {"three"}));
  EXPECT_THAT(settled(client), IsEmpty());
  now = end;
  EXPECT_THAT(settled(client), ElementsAre("2: two three"));
}

TEST_F(LogRequestsTest, TheWaitEndsWithoutLines) {
  ASSERT_TRUE(log.addOutput("a", {"one"}));
  ASSERT_TRUE(add(client, 1, 1));
  now += limit - 1ms;
  EXPECT_THAT(settled(client), IsEmpty());
  now += 1ms;
  EXPECT_THAT(settled(client), ElementsAre("1:"));
}

TEST_F(LogRequestsTest, LinesThatAreGoneAreNoReasonToAnswer) {
  ASSERT_TRUE(log.addOutput("a", {"one"}));
  ASSERT_TRUE(add(client, 1, 1));
  ASSERT_TRUE(log.addOutput("a", {"two"}));
  std::filesystem::remove_all(folder.path() / "log");
  EXPECT_THAT(settled(client), IsEmpty());
  EXPECT_EQ(requests.wakeAt(), now + limit);
  ASSERT_TRUE(log.addOutput("a", {"three"}));
  EXPECT_THAT(settled(client), ElementsAre("1: three"));
}

TEST_F(LogRequestsTest, AnEarlierLogIsNoReasonToWait) {
  ASSERT_TRUE(log.addOutput("a", {"one"}));
  ASSERT_TRUE(add(client, 1, 500));
  EXPECT_THAT(settled(client), ElementsAre("1: one"));
}

TEST_F(LogRequestsTest, QueriesEndWithTheirClientOrOneByOne) {
  Client other = connect();
  for (const std::int64_t id : {1, 2}) ASSERT_TRUE(add(client, id, 0));
  ASSERT_TRUE(add(other, 1, 0));
  EXPECT_FALSE(requests.cancel(other.connection, 2)) << "that is of the other client";
  EXPECT_TRUE(requests.cancel(client.connection, 1));
  EXPECT_FALSE(requests.cancel(client.connection, 1));
  other.connection.reset();
  ASSERT_TRUE(log.addOutput("a", {"one"}));
  EXPECT_THAT(settled(client), ElementsAre("2: one"));
  EXPECT_THAT(other.answers(), IsEmpty());
}

TEST_F(LogRequestsTest, TheAnswersOfATurnAndTheQueriesOfAClientAreBounded) {
  for (std::size_t id = 0; id < wire::mostRequests; ++id) {
    ASSERT_TRUE(add(client, static_cast<std::int64_t>(id), std::nullopt));
  }
  EXPECT_FALSE(add(client, 100, std::nullopt));
  EXPECT_EQ(settled(client).size(), static_cast<std::size_t>(LogRequests::answersPerTurn));
  EXPECT_LE(requests.wakeAt(), now) << "the next turn is due";
}

}  // namespace
}  // namespace mirvel::host
