#include "helpers/action/Service.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <fstream>
#include <future>
#include <map>
#include <set>
#include <thread>

#include "core/messages/Fields.h"
#include "core/propertylist/Reader.h"
#include "helpers/FakeJobHost.h"
#include "helpers/jobfiles/UserJobFiles.h"
#include "helpers/wire/FrameSocket.h"
#include "helpers/wire/SocketHelperConnection.h"
#include "support/ThreadQueue.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using propertylist::Dictionary;
using testing::ElementsAre;
using wire::Frame;

/// Loading, waiting for the end of a job and log queries block until the test opens their gate.
class GatedHost final : public JobHost {
 public:
  Result<void> load(const fs::path& file) override {
    pass("load " + file.stem().string());
    return {};
  }
  Result<void> loadTemporarily(const fs::path& file) override {
    const auto job = propertylist::readDictionary(testdata::bytes(file));
    const std::lock_guard lock(m_mutex);
    m_outputs[*job->get<std::string>("Label")] = *job->get<std::string>("StandardOutPath");
    return {};
  }
  Result<void> unload(const fs::path&, const std::optional<std::string>& label) override {
    if (label) open(*label);
    return {};
  }
  Result<Ended> waitForEnd(const std::string& label, std::chrono::seconds) override {
    return Ended{.hasEnded = pass(label)};
  }
  Result<void> control(const fs::path&, const std::string&, messages::Control::Order) override { return {}; }
  Result<messages::LogLines> log(const messages::LogQuery& query, Cancellation&) override {
    pass(query.searchString);
    return messages::LogLines{.lines = {{.number = 1, .seconds = 1, .message = query.searchString}}};
  }

  void open(const std::string& gate) {
    const std::lock_guard lock(m_mutex);
    m_open.insert(gate);
    m_changed.notify_all();
  }
  /// Prints as the job of a test; blocks until it has been read.
  void print(const std::string& label, const std::string& text) {
    fs::path output;
    {
      const std::lock_guard lock(m_mutex);
      output = m_outputs.at(label);
    }
    std::ofstream(output, std::ios::binary) << text;
  }
  /// Whether a thread has arrived at the gate.
  bool isReached(const std::string& gate) { return contains(m_reached, gate); }
  bool isOpen(const std::string& gate) { return contains(m_open, gate); }

 private:
  bool contains(const std::set<std::string>& gates, const std::string& gate) {
    const std::lock_guard lock(m_mutex);
    return gates.contains(gate);
  }
  bool pass(const std::string& gate) {
    std::unique_lock lock(m_mutex);
    m_reached.insert(gate);
    return m_changed.wait_for(lock, std::chrono::seconds(20), [&] { return m_open.contains(gate); });
  }

  std::mutex m_mutex;
  std::condition_variable m_changed;
  std::set<std::string> m_open, m_reached;
  std::map<std::string, fs::path> m_outputs;
};

/// Publishes numbers on the topic "news", and notices a subscription that is released within one of its events.
class Publisher {
 public:
  std::shared_ptr<void> subscribe(const std::string& topic, RequestHandler::EventReceiver receiver) {
    if (topic != "news") return nullptr;
    auto shared = std::make_shared<RequestHandler::EventReceiver>(std::move(receiver));
    const std::lock_guard lock(m_mutex);
    m_receivers.push_back(shared);
    return {shared.get(), [this, shared](void*) { releasedWithinEvents += isPublishing() ? 1 : 0; }};
  }
  void publish(int number) {
    const std::lock_guard lock(m_mutex);
    isPublishing() = true;
    for (const auto& weak : m_receivers) {
      if (const auto receiver = weak.lock()) (*receiver)({{"number", number}});
    }
    isPublishing() = false;
  }
  std::size_t count() {
    const std::lock_guard lock(m_mutex);
    return static_cast<std::size_t>(
        std::count_if(m_receivers.begin(), m_receivers.end(), [](const auto& weak) { return !weak.expired(); }));
  }
  std::atomic<int> releasedWithinEvents = 0;

 private:
  static bool& isPublishing() {
    thread_local bool value = false;
    return value;
  }

  std::mutex m_mutex;
  std::vector<std::weak_ptr<RequestHandler::EventReceiver>> m_receivers;
};

/// The real service and the real connection, with a host that a test controls.
class ServiceTest : public testing::Test {
 protected:
  testdata::TemporaryFolder root;
  GatedHost host;
  Publisher publisher;
  UserJobFiles files{JobFolders({root.path()})};
  RequestHandler handler{
      {.files = files,
       .host = host,
       .uninstall = [] { return Result<void>(); },
       .testFolder = root.path() / "tests",
       .publisher = [this](const auto& topic,
                           auto receiver) { return publisher.subscribe(topic, std::move(receiver)); }}};
  wire::SocketPair sockets = wire::SocketPair::make();
  Service service{sockets.theirs.number(), handler};
  std::future<Result<void>> served = std::async(std::launch::async, [this] {
    auto result = service.run();
    sockets.theirs.reset();
    return result;
  });
  testdata::ThreadQueue queue;
  std::unique_ptr<HelperConnection> connection;
  std::vector<std::string> outcomes;  ///< the names and outcomes of requests, in the order of their answers

  void connect() { connection = std::make_unique<wire::SocketHelperConnection>(std::move(sockets.ours), queue); }
  void TearDown() override {
    connection.reset();
    sockets.ours.reset();
  }

  HelperConnection::Id ask(const std::string& name, messages::RequestContent content,
                           HelperConnection::Event event = {}) {
    const messages::Request request{.content = std::move(content)};
    return connection->run(
        request.write(),
        [this, name, kind = request.kind()](const Dictionary& body) {
          outcomes.push_back(name + outcomeOf(messages::readReply(kind, body)));
        },
        [this, name](const Error&) { outcomes.push_back(name + ": failed"); }, std::move(event));
  }
  messages::Test testOf(const std::string& label) const {
    return {.testPath = path(label), .testOutputPath = path(label + ".out"), .string = testdata::jobText(label)};
  }
  HelperConnection::Id askTest(
      const std::string& label, HelperConnection::Event event = [](const auto&) {}) {
    return ask(label, testOf(label), std::move(event));
  }
  /// The number of tests that haven't been removed.
  std::ptrdiff_t testFolders() const {
    return std::distance(fs::directory_iterator(root.path() / "tests"), fs::directory_iterator());
  }
  HelperConnection::Id askLog(const std::string& text) {
    return ask(text, messages::Log{{.period = std::chrono::seconds(60), .searchString = text}});
  }
  HelperConnection::Id askWrite(const std::string& name, const std::string& label, bool loads = false) {
    return ask("write " + label,
               messages::Write{.path = path(name), .string = testdata::jobText(label), .loads = loads});
  }
  bool wait(const std::function<bool()>& isDone) { return queue.runUntil(isDone); }
  bool waitForOutcomes(std::size_t count) {
    return wait([&] { return outcomes.size() >= count; });
  }
  std::string path(const std::string& name) const { return root.path() / (name + ".plist"); }

 private:
  static std::string outcomeOf(const Result<messages::Reply>& reply) {
    if (!reply) return ": malformed";
    if (const auto* const log = std::get_if<messages::LogLines>(&*reply)) return ": " + log->lines.at(0).message;
    if (const auto* const error = std::get_if<HelperError>(&*reply)) return ": " + error->failure->cause.text();
    return ": done";
  }
};

TEST_F(ServiceTest, TestsAndLogsAreAnsweredInEveryOrderAndHoldUpNoSave) {
  connect();
  std::vector<std::string> order{"log", "test1", "test2"};
  int round = 0;
  do {
    const std::string prefix = std::to_string(++round);
    outcomes.clear();
    (void)askTest(prefix + "test1");
    (void)askLog(prefix + "log");
    (void)askTest(prefix + "test2");
    (void)askWrite("job", prefix);
    ASSERT_TRUE(waitForOutcomes(1));
    EXPECT_THAT(outcomes, ElementsAre("write " + prefix + ": done"));
    std::vector<std::string> expected = outcomes;
    for (const std::string& name : order) {
      host.open(prefix + name);
      expected.push_back(prefix + name + (name == "log" ? ": " + prefix + name : ": done"));
      ASSERT_TRUE(waitForOutcomes(expected.size()));
    }
    EXPECT_EQ(outcomes, expected);
  } while (std::next_permutation(order.begin(), order.end()));
}

TEST_F(ServiceTest, ChangesOfFilesAreMadeOneAfterTheOtherInTheOrderInWhichTheyWereSent) {
  connect();
  (void)askWrite("first", "first", true);
  (void)askWrite("job", "old");
  (void)ask("delete", messages::Delete{.deletePath = path("job")});
  (void)askWrite("job", "new");
  ASSERT_TRUE(wait([&] { return host.isReached("load first"); }));
  EXPECT_FALSE(fs::exists(path("job")));
  host.open("load first");
  ASSERT_TRUE(waitForOutcomes(4));
  EXPECT_THAT(outcomes, ElementsAre("write first: done", "write old: done", "delete: done", "write new: done"));
  EXPECT_EQ(testdata::bytes(path("job")), testdata::jobText("new"));
}

TEST_F(ServiceTest, EachRequestCanBeCancelledAlone) {
  connect();
  const auto test = askTest("test"), log = askLog("log"), other = askTest("other");
  const auto begun = askWrite("begun", "begun", true), queued = askWrite("queued", "queued");
  ASSERT_TRUE(wait([&] {
    return host.isReached("test") && host.isReached("log") && host.isReached("other") && host.isReached("load begun");
  }));
  for (const auto id : {test, log, begun, queued, queued}) connection->cancel(id);
  (void)ask("last", messages::Subscribe{.topic = "nothing"});
  ASSERT_TRUE(waitForOutcomes(1));  // the frames before it have been read
  ASSERT_TRUE(wait([&] { return host.isOpen("test"); })) << "it is stopped";
  host.open("load begun");
  host.open("log");
  (void)askWrite("next", "next");
  ASSERT_TRUE(waitForOutcomes(2));
  EXPECT_EQ(outcomes.back(), "write next: done");
  EXPECT_TRUE(fs::exists(path("begun"))) << "nothing is left half done";
  EXPECT_FALSE(fs::exists(path("queued")));
  EXPECT_TRUE(wait([&] { return testFolders() == 1; }));
  host.open("other");
  ASSERT_TRUE(waitForOutcomes(3));
  EXPECT_EQ(outcomes.back(), "other: done");
  connection->cancel(other);
  connection->cancel(999);
  (void)askWrite("last", "last");
  ASSERT_TRUE(waitForOutcomes(4));
  EXPECT_FALSE(connection->hasFailed()) << "cancelling an answered request isn't an error";
}

TEST_F(ServiceTest, APeerThatEndsLeavesNoTestOrSaveRunning) {
  connect();
  (void)askTest("test");
  (void)askWrite("begun", "begun", true);
  (void)askWrite("queued", "queued");
  (void)ask("news", messages::Subscribe{.topic = "news"});
  ASSERT_TRUE(wait([&] { return host.isReached("test") && host.isReached("load begun") && publisher.count() == 1; }));
  connection.reset();
  host.open("load begun");
  EXPECT_TRUE(wait([&] { return host.isOpen("test") && publisher.count() == 0; }));
  (void)served.get();
  EXPECT_TRUE(fs::exists(path("queued")));
  EXPECT_EQ(testFolders(), 0);
}

TEST_F(ServiceTest, TheRequestToEndIsTheLast) {
  connect();
  (void)askTest("test");
  (void)askWrite("first", "first");
  (void)ask("quit", messages::Quit());
  (void)askWrite("late", "late");
  ASSERT_TRUE(waitForOutcomes(4));
  EXPECT_TRUE(served.get());
  EXPECT_FALSE(fs::exists(path("late")));
  EXPECT_TRUE(fs::exists(path("first")));
  EXPECT_THAT(outcomes, testing::IsSupersetOf({"write first: done", "quit: done", "write late: failed"}));
}

TEST_F(ServiceTest, EventsComeUntilTheSubscriptionIsCancelled) {
  connect();
  std::vector<Dictionary> events;
  const auto receive = [&](const Dictionary& event) { events.push_back(event); };
  const auto id = ask("news", messages::Subscribe{.topic = "news"}, receive);
  (void)ask("nothing", messages::Subscribe{.topic = "nothing"}, receive);
  ASSERT_TRUE(waitForOutcomes(1));
  EXPECT_THAT(outcomes, ElementsAre("nothing: there is no such topic"));
  publisher.publish(1);
  publisher.publish(2);
  ASSERT_TRUE(wait([&] { return events.size() == 2; }));
  EXPECT_EQ(events.back(), (Dictionary{{"number", 2}}));
  publisher.publish(3);
  connection->cancel(id);
  ASSERT_TRUE(wait([&] { return publisher.count() == 0; }));
  publisher.publish(4);
  (void)askWrite("job", "job");
  ASSERT_TRUE(waitForOutcomes(2));
  EXPECT_EQ(events.size(), 2U) << "none after the end, not even one that was on its way";
}

TEST_F(ServiceTest, TheOutputOfATestComesWhileItRuns) {
  connect();
  std::string printed;
  const auto receive = [&](const Dictionary& event) {
    printed += messages::FieldReader::read<messages::TestProgress>(event)->beginning;
  };
  const auto cancelled = askTest("cancelled", receive);
  ASSERT_TRUE(wait([&] { return host.isReached("cancelled"); }));
  host.print("cancelled", "first");
  ASSERT_TRUE(wait([&] { return printed == "first"; }));
  connection->cancel(cancelled);
  EXPECT_TRUE(wait([&] { return testFolders() == 0; }));
  (void)askTest("test", receive);
  ASSERT_TRUE(wait([&] { return host.isReached("test"); }));
  host.print("test", "second");
  ASSERT_TRUE(wait([&] { return printed == "firstsecond"; }));
  host.open("test");
  ASSERT_TRUE(waitForOutcomes(1));
  EXPECT_THAT(outcomes, ElementsAre("test: done"));
  EXPECT_FALSE(connection->hasFailed());
}

TEST_F(ServiceTest, APeerThatDoesNotReadLosesOutputOfATestButNotItsAnswer) {
  const auto& socket = sockets.ours;
  const messages::Request test{.content = testOf("test")};
  ASSERT_TRUE(wire::sendFrame(socket.number(), {.id = 1, .body = test.write()}));
  ASSERT_TRUE(wait([&] { return host.isReached("test"); }));
  const std::string text(3 << 20, 'x');
  host.print("test", text);  // returns, whether somebody reads the events or not
  host.open("test");
  wire::FrameReader reader;
  for (;;) {
    const auto frame = wire::receiveFrame(socket.number(), reader);
    ASSERT_TRUE(frame && *frame);
    if ((*frame)->kind == Frame::Kind::Event) continue;
    const auto result = std::get<messages::TestResult>(*messages::readReply(messages::Kind::Test, (*frame)->body));
    EXPECT_EQ(result.text.size() + result.end.value_or("").size() + static_cast<std::size_t>(result.droppedBytes),
              text.size());
    break;
  }
}

/// A publisher may wait in the release until its events have ended.
TEST_F(ServiceTest, ASubscriptionIsNeverReleasedWithinItsOwnEvent) {
  connect();
  std::atomic<bool> isDone = false;
  std::thread publishing([&] {
    for (int i = 0; !isDone; ++i) publisher.publish(i);
  });
  for (int round = 0; round < 60; ++round) {
    bool hasEvent = false;
    const auto id = ask("news", messages::Subscribe{.topic = "news"}, [&](const Dictionary&) { hasEvent = true; });
    EXPECT_TRUE(wait([&] { return hasEvent; }));
    connection->cancel(id);
    EXPECT_TRUE(wait([&] { return publisher.count() == 0; }));
  }
  isDone = true;
  publishing.join();
  EXPECT_EQ(publisher.releasedWithinEvents, 0);
}

TEST_F(ServiceTest, ASubscriberThatDoesNotKeepUpLosesItsSubscriptionAndNothingElse) {
  const auto& socket = sockets.ours;
  const messages::Request subscription{.content = messages::Subscribe{.topic = "news"}};
  ASSERT_TRUE(wire::sendFrame(socket.number(), {.id = 1, .body = subscription.write()}));
  ASSERT_TRUE(wait([&] { return publisher.count() == 1; }));
  constexpr int tooMany = 100000;  // more than the socket accepts and `mostEvents`
  for (int i = 0; i < tooMany; ++i) publisher.publish(i);
  wire::FrameReader reader;
  int events = 0;
  for (;; ++events) {
    const auto frame = wire::receiveFrame(socket.number(), reader);
    ASSERT_TRUE(frame && *frame);
    if ((*frame)->kind != Frame::Kind::Event) {
      const auto reply = messages::readReply(messages::Kind::Subscribe, (*frame)->body);
      EXPECT_EQ(std::get<HelperError>(*reply).failure->cause.code, Error::Code::LimitExceeded);
      break;
    }
    EXPECT_EQ((*frame)->body, (Dictionary{{"number", events}}));
  }
  EXPECT_LT(events, tooMany);
  const messages::Request load{.content = messages::Load{.path = path("gone")}};
  ASSERT_TRUE(wire::sendFrame(socket.number(), {.id = 2, .body = load.write()}));
  EXPECT_EQ((*wire::receiveFrame(socket.number(), reader))->id, 2);
}

TEST_F(ServiceTest, APeerThatBreaksTheRulesIsCutOff) {
  const Dictionary test = messages::Request{.content = testOf("t")}.write();
  const Dictionary subscription = messages::Request{.content = messages::Subscribe{.topic = "news"}}.write();
  const struct {
    const char* what;
    std::function<void(int)> act;
  } rows[] = {
      {"an id twice",
       [&](int socket) {
         for (int i = 0; i < 2; ++i) (void)wire::sendFrame(socket, {.id = 1, .body = test});
       }},
      {"an event", [](int socket) { (void)wire::sendFrame(socket, {.id = 1, .kind = Frame::Kind::Event}); }},
      {"too many requests",
       [&](int socket) {
         for (std::size_t i = 0; i <= wire::mostRequests; ++i) {
           (void)wire::sendFrame(socket, {.id = static_cast<std::int64_t>(i), .body = subscription});
         }
       }},
      {"garbage, and reads nothing",
       [&](int socket) {
         (void)wire::sendFrame(socket, {.id = 1, .body = subscription});
         ASSERT_TRUE(wait([&] { return publisher.count() == 1; }));
         for (int i = 0; i < 100000; ++i) publisher.publish(i);
         wire::sendUninterrupted(socket, std::string("\0\0\0\x05hello", 9));
       }},
  };
  for (const auto& row : rows) {
    wire::SocketPair pair = wire::SocketPair::make();
    Service strict(pair.theirs.number(), handler);
    auto result = std::async(std::launch::async, [&] { return strict.run(); });
    row.act(pair.ours.number());
    const auto ended = result.get();
    ASSERT_FALSE(ended) << row.what;
    EXPECT_EQ(ended.error().code, Error::Code::Malformed) << row.what;
  }
}

}  // namespace
}  // namespace mirvel
