#include "helpers/privileged/HelperPrograms.h"

#include <unistd.h>

#include "core/catalogue/Kind.h"
#include "core/process/Commands.h"
#include "helpers/hostdata/HostPlaces.h"
#include "helpers/jobhost/HostAutostart.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

Elevation elevationOf(const Environment& environment, bool isOtherMachine) {
  Elevation result{.user = ::getuid()};
  if (::geteuid() == 0 || isOtherMachine) return result;
#ifdef __APPLE__
  result.way = Elevation::Way::Osascript;
  result.tool = Commands::forThisMachine(environment).osascript;
#else
  (void)environment;
  result.way = Elevation::Way::Pkexec;
  result.tool = "/usr/bin/pkexec";
#endif
  return result;
}

/// What root's helper can't know of the user for whom it works.
std::vector<std::string> argumentsFor(const Roots& roots, const HostPlaces& places) {
  std::vector<std::string> result{"--user",      std::to_string(::getuid()),
                                  "--agents",    *Kind(Kind::userAgent).folderURL(roots),
                                  "--host",      places.socket,
                                  "--installed", places.folder};
  if (!roots.ownAutostart.empty()) {
    result.insert(result.end(), {"--installed", roots.ownAutostart / HostAutostart::fileName});
  }
  return result;
}

}  // namespace

HelperPrograms HelperPrograms::in(const fs::path& folder, const Roots& roots, const Environment& environment,
                                  const std::optional<fs::path>& machine) {
  const auto places = HostPlaces::of(roots);
  HelperPrograms result{.action = {.path = folder / "mirvel-action", .environment = environment},
                        .privileged = folder / "mirvel-privileged",
                        .privilegedArguments = argumentsFor(roots, places),
                        .elevation = elevationOf(environment, machine.has_value())};
  if (machine) {
    result.action.arguments = {"--root", *machine};
    result.privilegedArguments.insert(result.privilegedArguments.end(), {"--root", *machine});
  }
  return result;
}

}  // namespace mirvel
