#include "helpers/agent/DBusNotifier.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <cstring>

#include "support/RecordingConsole.h"
#include "support/TestData.h"
#include "support/VirtualQueue.h"

namespace mirvel::agent {
namespace {

using testing::ElementsAre;

/// A message bus that accepts connections and closes them at once.
class BusThatHangsUp {
 public:
  explicit BusThatHangsUp(const std::filesystem::path& file) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, file.c_str(), sizeof address.sun_path - 1);
    EXPECT_EQ(::bind(m_socket.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(::listen(m_socket.number(), 100), 0);
    ::fcntl(m_socket.number(), F_SETFL, O_NONBLOCK);
  }

  /// The number of connections until now.
  int connections() {
    while (FileDescriptor(::accept(m_socket.number(), nullptr, nullptr))) ++m_connections;
    return m_connections;
  }

 private:
  FileDescriptor m_socket{::socket(AF_UNIX, SOCK_STREAM, 0)};
  int m_connections = 0;
};

TEST(DBusNotifierTest, ABusThatHangsUpIsLeftAloneAfterSomeAttempts) {
  const testdata::TemporaryFolder folder;
  const auto file = folder.path() / "bus";
  BusThatHangsUp bus(file);
  host::PollLoop loop;
  testdata::VirtualQueue queue;
  testdata::RecordingConsole console;
  DBusNotifier notifier({.loop = loop,
                         .queue = queue,
                         .console = console,
                         .environment = {{"DBUS_SESSION_BUS_ADDRESS", "unix:path=" + file.string()}}});
  const auto connectionsAfter = [&](double seconds) {
    for (const double end = queue.now() + seconds; queue.now() < end; queue.runFor(0.05)) {
      (void)bus.connections();
      notifier.settle();
      loop.turn(0);
    }
    return bus.connections();
  };
  notifier.begin({.ready = [] {}, .chosen = {}});
  EXPECT_EQ(connectionsAfter(30), 5);
  std::vector<Notifier::Answer> answers;
  notifier.send({.title = "title", .body = "body"}, [&](Notifier::Answer answer) { answers.push_back(answer); });
  EXPECT_EQ(connectionsAfter(30), 6) << "one attempt for each notification";
  EXPECT_THAT(answers, ElementsAre(Notifier::Answer::Refused));
}

}  // namespace
}  // namespace mirvel::agent
