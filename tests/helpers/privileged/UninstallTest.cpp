#include "helpers/privileged/Uninstall.h"

#include <gmock/gmock.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <future>

#include "helpers/FakeJobHost.h"
#include "helpers/hostdata/HostMessages.h"
#include "helpers/hostdata/HostPlaces.h"
#include "helpers/wire/FrameSocket.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;

class UninstallTest : public testing::Test {
 protected:
  Installation installation() const {
    return {.user = ::geteuid(), .host = socket, .installed = {folder.path() / "run", folder.path() / "entry"}};
  }
  bool isInstalled() const { return fs::exists(folder.path() / "run") && fs::exists(entry); }
  /// Uninstalls while a host receives the request. `answer` gets the connection and the number of the request.
  Result<void> uninstallWith(const std::function<void(int connection, std::int64_t id)>& answer) {
    const auto listening = listenAt(socket);
    EXPECT_TRUE(listening);
    auto result = std::async(std::launch::async, [&] { return uninstall(installation(), own); });
    pollfd waiting{.fd = listening->number(), .events = POLLIN, .revents = 0};
    EXPECT_EQ(::poll(&waiting, 1, 60'000), 1);
    {
      const FileDescriptor connection(::accept(listening->number(), nullptr, nullptr));
      wire::FrameReader reader;
      const auto request = wire::receiveFrame(connection.number(), reader);
      EXPECT_TRUE(request && *request);
      if (request && *request) answer(connection.number(), (*request)->id);
    }
    return result.get();
  }

  testdata::TemporaryFolder folder;
  const fs::path socket = folder.write("run/other", "").parent_path() / "host";
  const fs::path entry = folder.write("entry", "");
  testdata::FakeJobHost own;
};

TEST_F(UninstallTest, AHostThatRefusesToEndKeepsItsFiles) {
  const auto failed = uninstallWith([](int connection, std::int64_t id) {
    const hostdata::Refusal refusal{.error = {.code = Error::Code::NotPermitted, .message = "not now"}};
    EXPECT_TRUE(wire::sendFrame(connection, {.id = id, .body = refusal.write()}));
  });
  ASSERT_FALSE(failed);
  EXPECT_THAT(failed.error().text(), testing::HasSubstr("not now"));
  EXPECT_TRUE(isInstalled());
}

TEST_F(UninstallTest, AHostThatSendsNonsenseKeepsItsFiles) {
  EXPECT_FALSE(uninstallWith(
      [](int connection, std::int64_t id) { EXPECT_TRUE(wire::sendFrame(connection, {.id = id + 1, .body = {}})); }));
  EXPECT_TRUE(isInstalled());
}

TEST_F(UninstallTest, AHostThatHangsUpHasEnded) {
  const auto done = uninstallWith([](int, std::int64_t) {});
  EXPECT_TRUE(done) << done.error().text();
  EXPECT_FALSE(fs::exists(folder.path() / "run"));
  EXPECT_FALSE(fs::exists(entry));
}

TEST_F(UninstallTest, WithoutAHostEverythingIsRemovedAndWithARefusalOfRootsNothing) {
  own.failing = {"quit"};
  EXPECT_FALSE(uninstall(installation(), own));
  EXPECT_TRUE(isInstalled());
  own.failing = {};
  EXPECT_TRUE(uninstall(installation(), own));
  EXPECT_FALSE(isInstalled());
}

}  // namespace
}  // namespace mirvel
