#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "core/process/SystemProcessRunner.h"
#include "helpers/host/Signpost.h"
#include "helpers/hostdata/LoadedJobs.h"
#include "helpers/jobhost/EmbeddedHost.h"
#include "support/JobText.h"
#include "support/TestData.h"

namespace mirvel::host {

/// The real host program on a temporary folder, used through the interface of the helpers. The destructor ends it.
class HostFixture : public testing::Test {
 protected:
  using seconds = std::chrono::seconds;

  ~HostFixture() override { EXPECT_TRUE(embedded.quit()); }

  /// A job that runs a shell script.
  std::filesystem::path job(const std::string& label, const std::string& script, propertylist::Dictionary keys = {}) {
    keys.set("ProgramArguments", propertylist::Array{"/bin/sh", "-c", script});
    return folder.write("jobs/" + label + ".plist", testdata::jobText(label, std::move(keys)));
  }

  /// A job that writes its process ID, that of the host and its display, and keeps running.
  std::filesystem::path lastingJob(const std::string& label, const Signpost& post, propertylist::Dictionary keys = {}) {
    keys.set("RunAtLoad", true);
    return job(label, "exec 9> " + post.quoted() + "; echo $$ $PPID $DISPLAY >&9; exec sleep 1000", std::move(keys));
  }

  /// A job that writes its process ID and that of the host, ignores SIGTERM, and has to be killed after a second.
  std::filesystem::path stubbornJob(const std::string& label, const Signpost& post) {
    return job(label, "trap '' TERM; echo $$ $PPID > " + post.quoted() + "; while :; do sleep 1000; done",
               {{"RunAtLoad", true}, {"ExitTimeOut", 1}});
  }

  void load(const std::filesystem::path& file) {
    const auto loaded = embedded.load(file);
    ASSERT_TRUE(loaded) << loaded.error().text();
  }

  void unload(const std::string& label) {
    const auto unloaded = embedded.unload("", label);
    ASSERT_TRUE(unloaded) << unloaded.error().text();
  }

  bool hasEnded(const std::string& label, seconds limit = seconds(60)) {
    const auto ended = embedded.waitForEnd(label, limit);
    EXPECT_TRUE(ended) << ended.error().text();
    return ended && ended->hasEnded;
  }

  /// The messages in the log of a label.
  std::vector<std::string> messagesOf(const std::string& label) {
    std::vector<std::string> result;
    const auto lines = embedded.log({.period = seconds(3600), .searchString = label}, none);
    EXPECT_TRUE(lines) << lines.error().text();
    if (!lines) return result;
    for (const auto& line : lines->lines) result.push_back(line.message);
    return result;
  }

  std::vector<HostedJobStatus> status() {
    const auto result = client.status();
    EXPECT_TRUE(result) << result.error().text();
    return result ? *result : std::vector<HostedJobStatus>();
  }

  std::vector<std::string> labels() {
    std::vector<std::string> result;
    for (const auto& job : status()) result.push_back(job.label);
    return result;
  }

  void restart() {
    ASSERT_TRUE(embedded.quit());
    startNext();
  }

  /// Starts a host that loads nothing but the saved list.
  void startNext() { ASSERT_TRUE(embedded.unload("/nothing", {})); }

  /// The list that the host saves for the next one.
  std::vector<std::filesystem::path> saved() const {
    const auto files = LoadedJobs(places.loadedJobs()).read();
    EXPECT_TRUE(files) << files.error().text();
    return files ? *files : std::vector<std::filesystem::path>();
  }

  testdata::TemporaryFolder folder;
  const HostPlaces places = HostPlaces::of(Roots::below(folder.path()));
  SystemProcessRunner runner{{{"PATH", "/usr/bin:/bin"}, {"HOME", folder.path()}}};
  Cancellation none;
  EmbeddedHost embedded{EmbeddedHost::below(MIRVEL_HOST, folder.path()), runner};
  HostClient client{places.socket};
};

}  // namespace mirvel::host
