#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <syslog.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <iostream>

#include "core/support/Digest.h"
#include "core/support/SystemProcessRunner.h"
#include "helpers/action/Service.h"
#include "helpers/jobhost/EmbeddedHost.h"
#include "helpers/jobhost/JobHosts.h"
#include "helpers/privileged/ActingAs.h"
#include "helpers/privileged/Authorisation.h"
#include "helpers/privileged/GuardedJobFiles.h"
#include "helpers/privileged/Installed.h"
#include "helpers/privileged/Listener.h"
#include "helpers/privileged/Options.h"

namespace {

using namespace mirvel;

constexpr std::chrono::seconds untilConnected{60};

/// The system's log of who did what as root.
class SystemLog final : public Console {
 public:
  SystemLog() { ::openlog("mirvel-privileged", LOG_PID, LOG_AUTHPRIV); }
  void print(const std::string& line) override { log(line); }
  void log(const std::string& line) override { ::syslog(LOG_NOTICE, "%s", line.c_str()); }
};

int fail(const std::string& why) {
  std::cerr << "mirvel-privileged: " << why << '\n';
  return 2;
}

/// What whoever started this program left behind is none of its business.
void dropInheritance() {
  const long highest = ::sysconf(_SC_OPEN_MAX);
  for (int descriptor = 3; descriptor < std::min(highest, 65536L); ++descriptor) ::close(descriptor);
  ::umask(022);
  const rlimit none{.rlim_cur = 0, .rlim_max = 0};
  ::setrlimit(RLIMIT_CORE, &none);  // a core would hold the secret
  if (::chdir("/") != 0) ::_exit(2);
}

/// Goes on as a process of its own, so that what started this one needn't wait, and says where it can be reached.
void goOn(const Listener& listener, const Authorisation& authorisation) {
  std::cout << listener.address().string() << '\n' << Data::hexString(authorisation.bytes()) << std::endl;
  const pid_t child = ::fork();
  if (child != 0) ::_exit(child < 0 ? 1 : 0);
  ::setsid();
  const int nowhere = ::open("/dev/null", O_RDWR);
  for (int descriptor = 0; descriptor < 3; ++descriptor) ::dup2(nowhere, descriptor);
  ::close(nowhere);
}

std::filesystem::path folderForSockets(const PrivilegedOptions& options) {
  if (options.root) return *options.root;
  struct stat status {};
  return ::stat("/run", &status) == 0 ? "/run" : "/var/run";
}

/// Job files stay.
Result<void> uninstall(const PrivilegedOptions& options, JobHost& ownHost) {
  if (auto* embedded = dynamic_cast<EmbeddedHost*>(&ownHost)) {
    if (auto ended = embedded->quit(); !ended) return ended;
  }
  const ActingAs acting(options.user);
  if (!acting) return Error{.code = Error::Code::NotPermitted, .message = "the rights of the user can't be taken"};
  if (options.host) (void)host::HostClient(*options.host).ask(host::request::quit);  // it may well not run
  return removeInstalled(options.installed);
}

/// On a machine that has had no job yet they aren't there. One that can't be made is told of when it is needed.
void makeJobFolders(const Roots& roots) {
  for (const Kind kind : {Kind::localAgent, Kind::localDaemon}) {
    std::error_code failure;
    std::filesystem::create_directories(*Kind(kind).folderURL(roots), failure);
  }
}

Result<void> work(Listener& listener, const Authorisation& authorisation, const PrivilegedOptions& options) {
  SystemLog console;
  const Environment environment{{"PATH", "/usr/bin:/bin:/usr/sbin:/sbin"}};
  auto peer = listener.accept(untilConnected, console);
  if (!peer) return peer.error();
  SystemProcessRunner runner(environment);
  // Root has a host of its own on another machine, too.
  const auto root = options.root ? std::optional(*options.root / "root") : std::nullopt;
  const auto host = jobHostOfThisMachine(root, environment, runner);
  const Roots roots = options.root ? Roots::below(*options.root) : Roots::forThisMachine({});
  makeJobFolders(roots);
  std::optional<GuardedJobFiles::User> user;
  if (options.agents) user = {options.user, JobFolders({*options.agents})};
  GuardedJobFiles files(JobFolders::ofMachine(roots), console, std::move(user));
  RequestHandler handler({.files = files,
                          .host = *host,
                          .uninstall = [&] { return uninstall(options, *host); },
                          .trustsLabels = false,
                          .testFolder = listener.privateFolder()});
  const auto handle = guarded(authorisation, console, [&](const auto& request) { return handler.handle(request); });
  auto served = serve(peer->number(), handle, [&] { return handler.isDone(); });
  if (!served) console.log("cut off: " + served.error().text());
  return served;
}

}  // namespace

/// The privileged helper: does as root what one user's application asks for, within narrow limits.
int main(int argc, char** argv) {
  const auto options =
      PrivilegedOptions::read({argv + (argc > 0 ? 1 : 0), argv + argc}, processEnvironment(), ::getuid());
  if (!options) return fail(options.error().text());
  // On a root of their own users may try it all with the rights that they have.
  if (::geteuid() != 0 && !options->root) return fail("Mirvel starts this program as root when it needs it");
  dropInheritance();
  auto listener = Listener::make(folderForSockets(*options), options->user);
  if (!listener) return fail(listener.error().text());
  const auto authorisation = Authorisation::make();
  if (!authorisation) return fail(authorisation.error().text());
  goOn(*listener, *authorisation);
  return work(*listener, *authorisation, *options) ? 0 : 1;
}
