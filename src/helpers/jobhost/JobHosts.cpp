#include "helpers/jobhost/JobHosts.h"

#include "core/support/Commands.h"
#include "helpers/jobhost/LaunchctlHost.h"

namespace mirvel {

namespace {

class NoHost final : public JobHost {
 public:
  Result<void> load(const std::filesystem::path&) override { return nothing(); }
  Result<void> unload(const std::filesystem::path&, const std::optional<std::string>&) override { return {}; }
  Result<bool> waitForEnd(const std::string&, std::chrono::seconds) override { return nothing(); }
  Result<std::vector<LogLine>> log(std::chrono::seconds, const std::string&) override { return nothing(); }

 private:
  static Error nothing() {
    return {.code = Error::Code::NotFound, .message = "there is nothing on this machine that runs jobs"};
  }
};

}  // namespace

std::unique_ptr<JobHost> makeJobHost(const std::string& launchctl, unsigned user, ProcessRunner& runner,
                                     const JobHostFactory& otherwise) {
  if (!isProgram(launchctl)) return otherwise();
  return std::make_unique<LaunchctlHost>(
      LaunchctlHost::Setup{.runner = runner, .domain = LaunchctlHost::domainOf(user), .launchctl = launchctl});
}

std::unique_ptr<JobHost> makeNoHost() {
  return std::make_unique<NoHost>();
}

}  // namespace mirvel
