#include <benchmark/benchmark.h>

#include <filesystem>

#include "core/catalogue/Kind.h"
#include "core/process/SystemProcessRunner.h"
#include "helpers/jobhost/EmbeddedHost.h"
#include "helpers/wire/StartHelper.h"
#include "support/JobText.h"
#include "support/TestData.h"
#include "support/ThreadQueue.h"

namespace mirvel::bench {

namespace {

/// The time that a user waits when saving a loaded job: from the request to the reply of the service that the file is
/// written and the job loaded, with the embedded host.
void saveAndLoad(benchmark::State& state) {
  const testdata::TemporaryFolder machine;
  const auto folder = *Kind(Kind::userAgent).folderURL(Roots::below(machine.path()));
  std::filesystem::create_directories(folder);
  testdata::ThreadQueue queue;
  const Environment environment{{"PATH", "/usr/bin:/bin"}};
  auto connection =
      wire::startHelper({.path = MIRVEL_ACTION, .arguments = {"--root", machine.path()}, .environment = environment},
                        queue, std::make_shared<wire::Reaper>());
  if (!connection) return state.SkipWithError("the service can't be started");
  int interval = 10'000;
  for (auto _ : state) {
    bool isDone = false;
    bool isWell = false;
    const propertylist::Dictionary request{
        {"kind", 1},
        {"path", (folder / "job.plist").string()},
        {"label", "job"},
        {"string", testdata::jobText("job", {{"Program", "/bin/true"}, {"StartInterval", ++interval}})}};
    (*connection)
        ->run(
            request,
            [&](const propertylist::Dictionary& reply) {
              isDone = true;
              isWell = reply.empty();
            },
            [&](const Error&) { isDone = true; });
    if (!queue.runUntil([&] { return isDone; }) || !isWell) state.SkipWithError("the job isn't saved");
  }
  SystemProcessRunner runner(environment);
  (void)EmbeddedHost(EmbeddedHost::below(MIRVEL_HOST, machine.path()), runner).quit();
}

BENCHMARK(saveAndLoad)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

}  // namespace mirvel::bench
