// What a host costs while nothing happens.

#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>
#include <thread>

#include "helpers/host/HostFixture.h"

namespace mirvel::host {
namespace {

class IdleTest : public HostFixture {
 protected:
  void start(const std::filesystem::path& file) {
    const auto loaded = host.load(file);
    ASSERT_TRUE(loaded) << loaded.error().text();
  }

  /// Below a folder of its own, since a host watches what contains its machine: other programs write to /tmp.
  const std::filesystem::path machine = folder.path() / "machine";
  EmbeddedHost host{EmbeddedHost::below(MIRVEL_HOST, machine), runner};

  /// The context switches of a process since its start.
  static long switchesOf(const std::string& process) {
    std::istringstream lines(testdata::bytes("/proc/" + process + "/status"));
    long result = 0;
    for (std::string line; std::getline(lines, line);) {
      if (line.find("ctxt_switches:") != std::string::npos) result += std::stol(line.substr(line.find(':') + 1));
    }
    return result;
  }
};

TEST_F(IdleTest, AHostWithNothingToDoDoesNothing) {
  if (!std::getenv("MIRVEL_SOAK")) GTEST_SKIP() << "takes half a minute; MIRVEL_SOAK=1 runs it";
  Signpost post(folder.path() / "post");
  std::filesystem::create_directory(machine);
  start(job("rare", "true", {{"StartCalendarInterval", propertylist::Dictionary{{"Month", 2}, {"Day", 29}}}}));
  start(job("watches", "true", {{"WatchPaths", propertylist::Array{(machine / "watched").string()}}}));
  start(job("ran", "true", {{"RunAtLoad", true}}));
  EXPECT_TRUE(host.waitForEnd("ran", seconds(60)));
  start(lastingJob("runs", post));
  const auto process = post.words()[1];
  std::this_thread::sleep_for(seconds(2));  // for the last events to be processed
  const long before = switchesOf(process);
  EXPECT_GT(before, 0);
  std::this_thread::sleep_for(seconds(30));
  EXPECT_LT(switchesOf(process) - before, 3);
  EXPECT_TRUE(host.quit());
}

}  // namespace
}  // namespace mirvel::host
