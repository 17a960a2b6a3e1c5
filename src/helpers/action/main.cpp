#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <iostream>

#include "core/support/Commands.h"
#include "core/support/SystemProcessRunner.h"
#include "helpers/action/Service.h"
#include "helpers/action/UserJobFiles.h"
#include "helpers/jobhost/JobHosts.h"
#include "helpers/wire/FrameSocket.h"

namespace {

using namespace mirvel;

bool isSocket(int descriptor) {
  struct stat status {};
  return ::fstat(descriptor, &status) == 0 && S_ISSOCK(status.st_mode);
}

Roots rootsFor(int argc, char** argv, const Environment& environment) {
  if (argc == 3 && std::string_view(argv[1]) == "--root") return rootsBelow(argv[2]);
  return Roots::forThisMachine(environment);
}

}  // namespace

/// The action service: does as the user what the application asks for over descriptor 3.
int main(int argc, char** argv) {
  if ((argc != 1 && argc != 3) || !isSocket(wire::helperDescriptor)) {
    std::cerr << "mirvel-action: Mirvel starts this program when it needs it; it does nothing by itself.\n";
    return 2;
  }
  const Environment environment = processEnvironment();
  SystemProcessRunner runner(environment);
  const auto host =
      makeJobHost(Commands::forThisMachine(environment).launchctl, ::geteuid(), runner, [] { return makeNoHost(); });
  UserJobFiles files(JobFolders::ofUser(rootsFor(argc, argv, environment)));
  RequestHandler handler({.files = files, .host = *host, .uninstall = [] { return Result<void>(); }});
  const auto served = serve(
      wire::helperDescriptor, [&](const auto& request) { return handler.handle(request); },
      [&] { return handler.isDone(); });
  if (!served) std::cerr << "mirvel-action: " << served.error().text() << '\n';
  return served ? 0 : 1;
}
