#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <string>
#include <vector>

#include "core/process/SystemProcessRunner.h"
#include "helpers/host/FileSystemWatch.h"
#include "helpers/jobhost/EmbeddedHost.h"
#include "support/TestData.h"

namespace mirvel::demo {
namespace {

namespace fs = std::filesystem;

constexpr int longestWait = 60'000;  // milliseconds

/// Watches a path until the condition holds. Returns false after `longestWait` without a change.
bool changesUntil(const fs::path& path, const std::function<bool()>& isSo) {
  const auto watch = host::makePathWatch();
  watch->add(path.string());
  while (!isSo()) {
    pollfd waiting{.fd = watch->descriptor(), .events = POLLIN, .revents = 0};
    const bool isPolling = watch->descriptor() < 0;
    if (::poll(&waiting, 1, isPolling ? 100 : longestWait) == 0 && !isPolling) return false;
    (void)watch->take();
  }
  return true;
}

/// The first subfolder, waiting until there is one; empty if there is none.
fs::path firstFolderIn(const fs::path& folder) {
  fs::path found;
  const auto find = [&] {
    for (const auto& entry : fs::directory_iterator(folder)) {
      if (entry.is_directory()) found = entry.path();
    }
    return !found.empty();
  };
  return changesUntil(folder, find) ? found : fs::path();
}

class DemoEndTest : public testing::TestWithParam<int> {};

TEST_P(DemoEndTest, SignalEndsTheDemoAndItsHostsAndRemovesItsFolder) {
  const testdata::TemporaryFolder folder;
  const fs::path home = folder.path() / "home", temporary = folder.path() / "temporary";
  fs::create_directory(home);
  fs::permissions(home, fs::perms::owner_all);
  fs::create_directory(temporary);
  std::vector<std::string> variables{"PATH=/usr/bin:/bin", "HOME=" + home.string(), "TMPDIR=" + temporary.string(),
                                     "XDG_RUNTIME_DIR=" + home.string(), "QT_QPA_PLATFORM=offscreen"};
  std::vector<char*> environment;
  for (auto& variable : variables) environment.push_back(variable.data());
  environment.push_back(nullptr);
  std::string program = MIRVEL_DEMO;
  char* arguments[] = {program.data(), nullptr};
  pid_t demo = 0;
  ASSERT_EQ(::posix_spawn(&demo, program.c_str(), nullptr, nullptr, arguments, environment.data()), 0);

  // The settings are written after the signal handlers are installed and the samples exist.
  const fs::path machine = firstFolderIn(temporary) / "machine";
  const fs::path settings = Roots::below(machine).defaultsFile;
  ASSERT_TRUE(changesUntil(settings, [&] { return fs::exists(settings); }));
  SystemProcessRunner runner({{"PATH", "/usr/bin:/bin"}, {"HOME", home.string()}});
  std::vector<fs::path> sockets;
  for (const fs::path& root : {machine, machine / "root"}) {
    EmbeddedHost host(EmbeddedHost::below(MIRVEL_HOST, root), runner);
    const auto loaded = host.load(folder.write("none.plist", ""));
    EXPECT_FALSE(loaded);  // refused by the host, which shows that it is running
    sockets.push_back(HostPlaces::of(Roots::below(root)).socket);
    EXPECT_TRUE(HostClient(sockets.back()).status());
  }

  ASSERT_EQ(::kill(demo, GetParam()), 0);
  int status = 0;
  ASSERT_EQ(::waitpid(demo, &status, 0), demo);
  const bool isKilled = GetParam() == SIGKILL;  // SIGKILL leaves no process that could remove the folder
  EXPECT_TRUE(isKilled || (WIFEXITED(status) && WEXITSTATUS(status) == 0)) << status;
  for (const fs::path& socket : sockets) {
    EXPECT_TRUE(!isKilled || changesUntil(socket, [&] { return !fs::exists(socket); })) << socket;
    EXPECT_FALSE(HostClient(socket).status());
  }
  EXPECT_EQ(fs::is_empty(temporary), !isKilled);
}

INSTANTIATE_TEST_SUITE_P(Signals, DemoEndTest, testing::Values(SIGTERM, SIGINT, SIGHUP, SIGKILL));

}  // namespace
}  // namespace mirvel::demo
