#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "core/process/Arguments.h"
#include "core/process/SystemProcessRunner.h"
#include "helpers/action/Service.h"
#include "helpers/jobfiles/NotedJobFiles.h"
#include "helpers/jobfiles/UserJobFiles.h"
#include "helpers/jobhost/JobHosts.h"
#include "helpers/process/CleanState.h"
#include "helpers/wire/FrameSocket.h"

namespace {

using namespace mirvel;

bool isSocket(int descriptor) {
  struct stat status {};
  return ::fstat(descriptor, &status) == 0 && S_ISSOCK(status.st_mode);
}

Result<void> refuseUninstall() {
  return Error{.code = Error::Code::BadArgument, .message = "only the privileged helper uninstalls"};
}

}  // namespace

/// The action service: carries out the application's requests over descriptor 3, as the user.
int main(int argc, char** argv) {
  // `--root DIR` is a folder with the roots of another machine, for tests and the demo.
  const auto arguments =
      parseArguments(std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc), {{"--root", true}});
  if (!arguments || !arguments->operands.empty() || !isSocket(wire::helperDescriptor)) {
    std::cerr << "mirvel-action: Mirvel starts this program when it needs it; it does nothing by itself.\n";
    return 2;
  }
  forbidTracing();
  const Environment environment = processEnvironment();
  SystemProcessRunner runner(environment);
  const std::optional<std::filesystem::path> root = arguments->value("--root");
  const auto host = jobHostOfThisMachine(root, environment, runner);
  const Roots roots = root ? Roots::below(*root) : Roots::forThisMachine(environment);
  UserJobFiles userFiles(JobFolders::ofUser(roots));
  const ChangeNotes notes(roots.ownChanges(), ChangeNotes::Readers::User);
  NotedJobFiles files(userFiles, ::geteuid(), notes);
  RequestHandler handler({.files = files,
                          .host = *host,
                          .uninstall = refuseUninstall,
                          .testFolder = roots.ownTests(),
                          .startsHost = true});
  const auto served = Service(wire::helperDescriptor, handler).run();
  if (!served) std::cerr << "mirvel-action: " << served.error().text() << '\n';
  return served ? 0 : 1;
}
