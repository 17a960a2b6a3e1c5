#include "helpers/privileged/Elevation.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>

#include <array>
#include <cerrno>
#include <optional>
#include <utility>

#include "core/files/RegularFile.h"
#include "core/process/ProcessStatus.h"
#include "core/process/SpawnPlan.h"
#include "core/text/Bytes.h"
#include "core/text/Strings.h"
#include "helpers/privileged/Authorisation.h"
#include "helpers/privileged/Listener.h"
#include "helpers/wire/FrameSocket.h"

namespace mirvel {

namespace {

using Refusal = HelperConnections::Refusal;

/// pkexec(1) has one exit status for all failures except a closed dialog, and explains them in English (LC_ALL is C).
std::optional<Elevated> refusalOfPkexec(int exitStatus, const std::string& complaints) {
  constexpr int dismissed = 126, notAuthorised = 127;
  const auto says = [&](std::string_view words) { return complaints.find(words) != std::string::npos; };
  if (exitStatus == dismissed) return Elevated{.isCancelled = true};
  if (exitStatus != notAuthorised) return std::nullopt;
  if (says("No authentication agent")) return Elevated{.refusal = Refusal::NoAgent};
  if (says("Error getting authority") || says("Error checking for authorization")) {
    return Elevated{.refusal = Refusal::NoService};
  }
  return says("Not authorized") ? std::optional(Elevated{.refusal = Refusal::NotAuthorised}) : std::nullopt;
}

std::optional<Elevated> refusalOfOsascript(const std::string& complaints) {
  if (complaints.find("(-128)") != std::string::npos) return Elevated{.isCancelled = true};
  if (complaints.find("(-60005)") != std::string::npos) return Elevated{.refusal = Refusal::NotAuthorised};
  return std::nullopt;
}

std::optional<Elevated> refusalOf(Elevation::Method method, int exitStatus, const std::string& complaints) {
  if (method == Elevation::Method::Pkexec) return refusalOfPkexec(exitStatus, complaints);
  return method == Elevation::Method::Osascript ? refusalOfOsascript(complaints) : std::nullopt;
}

Error noHelper(std::string_view complaints) {
  const std::string said(String::trim(complaints, true));
  return {.code = Error::Code::Io,
          .message = "the privileged helper can't be started" + (said.empty() ? "" : ": " + said)};
}

/// Contains no variable of the user's, because pkexec(1) fails for some values, such as a SHELL not in /etc/shells.
Environment environmentFor(Elevation::Method method) {
  Environment result{{"PATH", "/usr/bin:/bin:/usr/sbin:/sbin"}};
  if (method == Elevation::Method::Pkexec) result.emplace("LC_ALL", "C");
  return result;
}

}  // namespace

std::vector<std::string> Elevation::command(const std::string& program,
                                            const std::vector<std::string>& arguments) const {
  std::vector<std::string> words{program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  if (method == Method::None) return words;
  if (method == Method::Pkexec) {
    // The internal agent would ask for the password on the terminal, which the user may not see.
    words.insert(words.begin(), {tool, "--disable-internal-agent"});
    return words;
  }
  words.insert(words.end(), {"--process", ProcessIdentity::ofThisProcess().text()});
  std::string line;
  for (const auto& word : words) line += (line.empty() ? "" : " ") + String::quote(word);
  return {tool, "-e",
          "do shell script " + String::quoteWithBackslashes(line) +
              " without altering line endings with administrator privileges"};
}

PrivilegedStart::PrivilegedStart(const Elevation& elevation, std::shared_ptr<wire::Reaper> reaper)
    : m_elevation(elevation), m_reaper(std::move(reaper)) {}

Result<std::shared_ptr<PrivilegedStart>> PrivilegedStart::begin(const Elevation& elevation, const std::string& program,
                                                                const std::vector<std::string>& arguments,
                                                                std::shared_ptr<wire::Reaper> reaper) {
  // std::make_shared can't call the private constructor.
  const std::shared_ptr<PrivilegedStart> result(new PrivilegedStart(elevation, std::move(reaper)));
  if (auto started = result->start(program, arguments); !started) return started.error();
  return result;
}

Result<void> PrivilegedStart::start(const std::string& program, const std::vector<std::string>& arguments) {
  const auto words = m_elevation.command(program, arguments);
  const bool passesSocket = m_elevation.passesSocket();
  wire::SocketPair sockets = passesSocket ? wire::SocketPair::make() : wire::SocketPair();
  Pipe output = passesSocket ? Pipe() : Pipe::make();
  Pipe complaints = Pipe::make();
  const int theirs = passesSocket ? sockets.theirs.number() : output.write.number();
  if (theirs < 0 || !complaints || !m_cancelling) return systemError(errno, "run", words[0]);
  SpawnPlan plan;
  passesSocket ? plan.give(theirs, STDIN_FILENO) : plan.open(STDIN_FILENO, "/dev/null", O_RDONLY);
  plan.give(theirs, STDOUT_FILENO);
  plan.give(complaints.write.number(), STDERR_FILENO);
  const int failure =
      plan.start(m_child, words[0], {words.begin() + 1, words.end()}, environmentFor(m_elevation.method));
  if (failure != 0) return systemError(failure, "run", words[0]);
  m_output = passesSocket ? std::move(sockets.ours) : std::move(output.read);
  m_complaints = std::move(complaints.read);
  return {};
}

PrivilegedStart::~PrivilegedStart() {
  m_output.reset();
  if (m_child <= 0) return;
  ::kill(m_child, SIGTERM);  // fails for a process of root, which ends with its connection
  m_reaper->adopt(m_child);
}

void PrivilegedStart::cancel() {
  (void)!::write(m_cancelling.write.number(), "", 1);  // remains readable for a later wait
}

Result<Elevated> PrivilegedStart::finish() {
  return m_elevation.passesSocket() ? finishWithSocket() : finishWithAddress();
}

/// Waits until there is something to read, or the end of it. Returns false if the wait was cancelled.
bool PrivilegedStart::waitFor(const FileDescriptor& file) const {
  std::array<pollfd, 2> waiting{pollfd{.fd = m_cancelling.read.number(), .events = POLLIN, .revents = 0},
                                pollfd{.fd = file.number(), .events = POLLIN, .revents = 0}};
  while (::poll(waiting.data(), waiting.size(), -1) < 0 && errno == EINTR) {
  }
  return waiting[0].revents == 0;
}

/// Reads to the end, or to a limit. Returns nullopt if the wait was cancelled.
std::optional<std::string> PrivilegedStart::readAll(const FileDescriptor& file) const {
  constexpr std::size_t largestOutput = std::size_t{1} << 16U;
  std::string result;
  std::array<char, 4096> buffer;
  for (ssize_t count = 1; count > 0 && result.size() < largestOutput;) {
    if (!waitFor(file)) return std::nullopt;
    count = readUninterrupted(file.number(), buffer.data(), buffer.size());
    if (count > 0) result.append(buffer.data(), static_cast<std::size_t>(count));
  }
  return result;
}

/// The helper sends a greeting with its secret when it has been authorised. It is read in pieces, so that `cancel` also
/// ends the wait for the rest of an incomplete one.
Result<Elevated> PrivilegedStart::finishWithSocket() {
  wire::FrameReader reader(wire::largestGreeting);
  std::array<char, wire::largestGreeting> buffer;
  while (true) {
    const auto greeting = reader.next();
    if (!greeting) return noHelper(greeting.error().message);
    if (*greeting) return greeted(**greeting);
    if (!waitFor(m_output)) return Elevated{.isCancelled = true};
    const ssize_t count = readUninterrupted(m_output.number(), buffer.data(), buffer.size());
    if (count <= 0) return failed();
    reader.append({buffer.data(), static_cast<std::size_t>(count)});
  }
}

Result<Elevated> PrivilegedStart::greeted(const wire::Frame& greeting) {
  auto authData = Authorisation::dataIn(greeting.body);
  if (!authData) return noHelper("it sent an invalid greeting");
  return Elevated{.socket = std::move(m_output), .authData = *std::move(authData), .child = std::exchange(m_child, -1)};
}

/// The helper prints the address of its socket and its secret, and closes its output.
Result<Elevated> PrivilegedStart::finishWithAddress() {
  const auto said = readAll(m_output);
  if (!said) return Elevated{.isCancelled = true};
  if (said->empty()) return failed();
  const std::string lines(String::trim(*said, true));
  const std::size_t end = lines.find('\n');
  auto authData = end == std::string::npos ? std::nullopt : fromHex(std::string_view(lines).substr(end + 1));
  if (!authData || authData->empty()) return noHelper(lines);
  auto socket = connectTo(lines.substr(0, end));
  if (!socket) return std::move(socket).error();
  return Elevated{.socket = *std::move(socket), .authData = *std::move(authData)};
}

Result<Elevated> PrivilegedStart::failed() {
  const auto complaints = readAll(m_complaints);
  if (!complaints) return Elevated{.isCancelled = true};
  const int status = waitForChild();
  auto refusal = refusalOf(m_elevation.method, status, *complaints);
  return refusal ? Result<Elevated>(*std::move(refusal)) : noHelper(*complaints);
}

/// Returns the exit status. Doesn't block for long, because the child has closed its output.
int PrivilegedStart::waitForChild() {
  int status = 0;
  while (::waitpid(m_child, &status, 0) < 0 && errno == EINTR) {
  }
  m_child = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace mirvel
