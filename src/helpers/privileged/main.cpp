#include <fcntl.h>
#include <sys/stat.h>
#include <syslog.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <iostream>

#include "core/files/FileTrust.h"
#include "core/process/SystemProcessRunner.h"
#include "core/text/Bytes.h"
#include "helpers/action/Service.h"
#include "helpers/jobfiles/NotedJobFiles.h"
#include "helpers/jobhost/JobHosts.h"
#include "helpers/privileged/Authorisation.h"
#include "helpers/privileged/GuardedJobFiles.h"
#include "helpers/privileged/Listener.h"
#include "helpers/privileged/PrivilegedOptions.h"
#include "helpers/privileged/Uninstall.h"
#include "helpers/process/CleanState.h"
#include "helpers/process/Detachment.h"
#include "helpers/wire/FrameSocket.h"

namespace {

using namespace mirvel;

constexpr std::chrono::seconds untilConnected{60};

/// The system's security log.
class SystemLog final : public Console {
 public:
  SystemLog() { ::openlog("mirvel-privileged", LOG_PID, LOG_AUTHPRIV); }
  void print(const std::string& line) override { log(line); }
  /// Replaces control characters: otherwise a path with line breaks could forge other entries of the log.
  void log(const std::string& line) override {
    std::string safe = line;
    std::replace_if(
        safe.begin(), safe.end(), [](unsigned char c) { return c < 0x20 || c == 0x7F; }, '?');
    ::syslog(LOG_NOTICE, "%s", safe.c_str());
  }
};

int fail(const std::string& why) {
  std::cerr << "mirvel-privileged: " << why << '\n';
  return 2;
}

Error notByHand() {
  return {.code = Error::Code::BadArgument, .message = "Mirvel starts this program as root when it needs it"};
}

constexpr std::initializer_list<int> standardFiles{STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO};

/// Continues in a child process, because the elevation tool waits for this one to end.
void detach() {
  Detachment detachment;
  if (!detachment.fork()) ::_exit(detachment.waitUntilReady());
  detachment.complete();
}

std::filesystem::path runtimeFolder(const PrivilegedOptions& options) {
  if (options.root) return *options.root;
  struct stat status {};
  return ::stat("/run", &status) == 0 ? "/run" : "/var/run";
}

/// Uses the socket that the application has passed as standard input. It must be a socket, so that a user who runs
/// pkexec in a terminal can't type requests, and have been created by a process of the user for whom the helper works.
Result<FileDescriptor> standardSocket(const PrivilegedOptions& options, const Authorisation& authorisation) {
  struct stat status {};
  if (::fstat(STDIN_FILENO, &status) != 0 || !S_ISSOCK(status.st_mode)) return notByHand();
  FileDescriptor socket(::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
  if (!socket) return systemError(errno, "talk to Mirvel", {});
#ifdef __linux__
  if (!AllowedPeer{.user = options.user}.isPeerOf(socket.number())) return notByHand();
#else
  (void)options;  // macOS reports no user for a socket pair
#endif
  pointToNothing(standardFiles);
  wire::ignoreHangUps(socket.number());
  if (auto sent = wire::sendFrame(socket.number(), {.body = authorisation.greeting()}); !sent) return sent.error();
  return socket;
}

Result<FileDescriptor> namedSocket(const PrivilegedOptions& options, const Authorisation& authorisation,
                                   Console& console) {
  auto listener = Listener::make(runtimeFolder(options), {.user = options.user, .process = options.process});
  if (!listener) return listener.error();
  std::cout << listener->address().string() << '\n' << toHex(authorisation.bytes()) << std::endl;
  detach();
  return listener->accept(untilConnected, console);
}

/// They don't exist on a machine without jobs. A failure is ignored here, and reported when a file is written.
void makeJobFolders(const Roots& roots) {
  for (const Kind kind : {Kind::localAgent, Kind::localDaemon}) {
    std::error_code failure;
    std::filesystem::create_directories(*Kind(kind).folderURL(roots), failure);
  }
}

Result<void> work(int socket, const Authorisation& authorisation, const PrivilegedOptions& options, Console& console) {
  const Environment environment = processEnvironment();
  SystemProcessRunner runner(environment);
  // Below the root of another machine, root's job host needs a folder of its own.
  const auto root = options.root ? std::optional(*options.root / "root") : std::nullopt;
  const auto host = jobHostOfThisMachine(root, environment, runner);
  const Roots roots = options.root ? Roots::below(*options.root) : Roots::forThisMachine({});
  makeJobFolders(roots);
  std::optional<GuardedJobFiles::User> user;
  if (options.agents) user = {options.user, JobFolders({*options.agents}), privateGroupOf(options.user)};
  GuardedJobFiles guarded(JobFolders::ofMachine(roots), console, std::move(user), RemovableItems::ofMachine(roots));
  const ChangeNotes notes(roots.publicChanges(), ChangeNotes::Readers::Everybody);
  NotedJobFiles files(guarded, options.user, notes);
  RequestHandler handler({.files = files,
                          .host = *host,
                          .uninstall =
                              [&] {
                                return uninstall({options.user, options.host, options.installed}, *host);
                              },
                          .trustsLabels = false,
                          .testFolder = runtimeFolder(options) / "mirvel-tests"});
  return Service(socket, handler, admission(authorisation, console)).run();
}

}  // namespace

/// The privileged helper: carries out requests of one user's application as root, within the limits of
/// `GuardedJobFiles`.
///
/// It is protected in this order: the options are reduced to what the user may choose (`PrivilegedOptions`); everything
/// inherited is reset, so that limits, signals, descriptors or the environment can't make a check fail or a library
/// misbehave; tracing is forbidden; only the application may connect; and each request must contain the secret.
int main(int argc, char** argv) {
  const auto options =
      PrivilegedOptions::read({argv + (argc > 0 ? 1 : 0), argv + argc}, processEnvironment(), ::getuid());
  if (!options) return fail(options.error().text());
  // Below another root, users may run it with the rights that they have, for tests and the demo.
  if (::geteuid() != 0 && !options->root) return fail(notByHand().text());
  resetProcessState(options->root ? ControlGroup::Keep : ControlGroup::Leave);
  resetEnvironment();
  forbidTracing();
  SystemLog console;
  const auto authorisation = Authorisation::make();
  if (!authorisation) return fail(authorisation.error().text());
  const auto peer =
      options->process ? namedSocket(*options, *authorisation, console) : standardSocket(*options, *authorisation);
  if (!peer) return fail(peer.error().text());
  const auto served = work(peer->number(), *authorisation, *options, console);
  if (!served) console.log("disconnected: " + served.error().text());
  return served ? 0 : 1;
}
