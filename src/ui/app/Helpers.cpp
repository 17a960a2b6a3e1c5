#include "ui/app/Helpers.h"

#include <unistd.h>

#include <QCoreApplication>

#include "core/catalogue/Kind.h"
#include "core/support/Commands.h"
#include "helpers/host/Places.h"
#include "helpers/jobhost/HostAutostart.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace fs = std::filesystem;

std::string helperProgram(const std::string& name) {
  const fs::path installed = path(QCoreApplication::applicationDirPath()) / MIRVEL_HELPERS_DIR / name;
  std::error_code failure;
  return fs::exists(installed, failure) ? installed.lexically_normal() : fs::path(MIRVEL_BUILD_HELPERS_DIR) / name;
}

wire::HelperProgram actionService(const Environment& environment, const std::optional<fs::path>& machine) {
  wire::HelperProgram program{.path = helperProgram("mirvel-action"), .environment = environment};
  if (machine) program.arguments = {"--root", *machine};
  return program;
}

Elevation elevation(const Environment& environment, bool isOtherMachine) {
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

std::vector<std::string> privilegedArguments(const Roots& roots, const Environment& environment,
                                             const std::optional<fs::path>& machine) {
  const auto places = machine ? host::Places::below(roots) : host::Places::of(roots, environment);
  std::vector<std::string> result{"--user",      std::to_string(::getuid()),
                                  "--agents",    *Kind(Kind::userAgent).folderURL(roots),
                                  "--host",      places.socket,
                                  "--installed", places.folder};
  if (!roots.ownAutostart.empty()) {
    result.insert(result.end(), {"--installed", roots.ownAutostart / host::HostAutostart::fileName});
  }
  if (machine) result.insert(result.end(), {"--root", *machine});
  return result;
}

}  // namespace mirvel::ui
