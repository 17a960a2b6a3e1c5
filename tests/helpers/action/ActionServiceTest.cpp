#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "core/process/SystemProcessRunner.h"
#include "helpers/EndsHost.h"
#include "helpers/FakeJobHost.h"
#include "helpers/wire/StartHelper.h"
#include "support/ThreadQueue.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using propertylist::Dictionary;

TEST(ActionServiceTest, TheProgramWritesRefusesAndEndsWhenItIsAskedTo) {
  const testdata::TemporaryFolder root;
  const testdata::EndsHost end(root.path());
  const fs::path folder = root.path() / "home/.config/mirvel/LaunchAgents";
  fs::create_directories(folder);
  testdata::ThreadQueue queue;
  auto connection = wire::startHelper({.path = MIRVEL_ACTION, .arguments = {"--root", root.path()}}, queue,
                                      std::make_shared<wire::Reaper>(std::chrono::seconds(20)));
  ASSERT_TRUE(connection) << connection.error().text();
  std::size_t done = 0, refusals = 0, failures = 0;
  const auto ask = [&](const Dictionary& request) {
    const auto count = [&](const auto& reply) { ++(reply.find("error") ? refusals : done); };
    (*connection)->run(request, count, [&](const auto&) { ++failures; });
  };
  const std::string file = folder / "a.plist";
  ask({{"kind", 0}, {"path", file}, {"string", testdata::jobText("a")}, {"label", "a"}});
  ask({{"kind", 0}, {"path", file}});
  ask({{"kind", 3}});
  ASSERT_TRUE(queue.runUntil([&] { return done + refusals + failures == 3; }));
  EXPECT_EQ(done, 2U);
  EXPECT_EQ(refusals, 1U) << "the request without content";
  EXPECT_EQ(testdata::bytes(file), testdata::jobText("a"));
  ask({{"kind", 3}});  // it has ended
  ASSERT_TRUE(queue.runUntil([&] { return failures == 1; }));
}

TEST(ActionServiceTest, StartedByHandItSaysWhatItIsFor) {
  SystemProcessRunner runner(Environment{{"PATH", "/usr/bin:/bin"}});
  const auto result = runner.run("/bin/sh", {"-c", "exec '" MIRVEL_ACTION "' 3</dev/null"});
  ASSERT_TRUE(result);
  EXPECT_EQ(result->exitStatus, 2);
  EXPECT_EQ(result->complaints,
            "mirvel-action: Mirvel starts this program when it needs it; it does nothing by itself.\n");
}

}  // namespace
}  // namespace mirvel
