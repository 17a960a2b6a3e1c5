#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "core/support/SystemProcessRunner.h"
#include "helpers/jobhost/EmbeddedHost.h"
#include "support/JobText.h"
#include "support/TestData.h"

namespace mirvel::host {

/// The real program on a temporary folder, spoken to as the helpers speak to it. It is stopped at the end.
class HostFixture : public testing::Test {
 protected:
  using seconds = std::chrono::seconds;

  ~HostFixture() override { EXPECT_TRUE(embedded.quit()); }

  /// A job that runs a shell script.
  std::filesystem::path job(const std::string& label, const std::string& script, plist::Dictionary keys = {}) {
    keys.set("ProgramArguments", plist::Array{"/bin/sh", "-c", script});
    return folder.write("jobs/" + label + ".plist", testdata::jobText(label, std::move(keys)));
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
    return ended && *ended;
  }

  /// What the log says of a job, without moments and process numbers.
  std::vector<std::string> said(const std::string& label) {
    std::vector<std::string> result;
    const auto lines = embedded.log(seconds(3600), label);
    EXPECT_TRUE(lines) << lines.error().text();
    if (!lines) return result;
    for (const auto& line : *lines) result.push_back(line.message.substr(line.message.find(": ") + 2));
    return result;
  }

  std::vector<HostedJobStatus> status() {
    const auto result = client.status();
    EXPECT_TRUE(result) << result.error().text();
    return result ? *result : std::vector<HostedJobStatus>();
  }

  testdata::TemporaryFolder folder;
  const Places places = Places::of(Roots::below(folder.path()));
  SystemProcessRunner runner{{{"PATH", "/usr/bin:/bin"}, {"HOME", folder.path()}}};
  EmbeddedHost embedded{EmbeddedHost::below(MIRVEL_HOST, folder.path()), runner};
  HostClient client{places.socket};
};

}  // namespace mirvel::host
