#include "core/process/SystemProcessRunner.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <thread>

#include "core/process/FileDescriptor.h"
#include "core/process/SpawnPlan.h"

namespace mirvel {

using namespace std::chrono;

namespace {

/// How long a tool may run.
class Deadline {
 public:
  explicit Deadline(std::optional<seconds> limit) {
    if (limit) m_end = steady_clock::now() + *limit;
  }

  explicit operator bool() const { return m_end.has_value(); }
  bool isOver() const { return m_end && steady_clock::now() >= *m_end; }

 private:
  std::optional<steady_clock::time_point> m_end;
};

/// A child process. The destructor kills it unless it has ended, and reaps it, so that no zombie remains.
class Child {
 public:
  explicit Child(pid_t id) : m_id(id) {}
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;
  ~Child() {
    if (m_ended) return;
    ::kill(m_id, SIGKILL);
    (void)wait();  // reaps it; the status doesn't matter
  }

  bool hasEnded() { return m_ended || collect(WNOHANG); }
  int wait() {
    while (!m_ended && !collect(0)) {
    }
    return WIFSIGNALED(m_status) ? 128 + WTERMSIG(m_status) : WEXITSTATUS(m_status);
  }

 private:
  bool collect(int options) {
    const pid_t found = ::waitpid(m_id, &m_status, options);
    m_ended = found == m_id || (found < 0 && errno != EINTR);
    return m_ended;
  }

  pid_t m_id;
  int m_status = 0;
  bool m_ended = false;
};

/// Reads both outputs of a child at the same time: a child blocks if one pipe is full while only the other is read.
class Outputs {
 public:
  /// `receive` gets the standard output; if it is empty, that is kept. It must outlive this object.
  Outputs(FileDescriptor output, FileDescriptor complaints, std::size_t maximum, const ProcessRunner::Receiver& receive)
      : m_files{std::move(output), std::move(complaints)}, m_room(maximum), m_receive(receive) {
    for (const auto& file : m_files) ::fcntl(file.number(), F_SETFL, O_NONBLOCK);
  }

  bool areOpen() const { return m_files[0] || m_files[1]; }
  bool exceedsLimit() const { return m_exceedsLimit; }
  /// Whether the receiver needs nothing more.
  bool isStopped() const { return m_isStopped; }
  std::string text(std::size_t which) { return std::move(m_texts[which]); }

  /// Reads what is available, waiting for it at most this long.
  void read(int milliseconds) {
    std::array<pollfd, 2> waiting{};
    for (std::size_t i = 0; i < m_files.size(); ++i) {
      waiting[i] = {.fd = m_files[i].number(), .events = POLLIN, .revents = 0};
    }
    int ready = -1;
    do {
      ready = ::poll(waiting.data(), waiting.size(), milliseconds);
    } while (ready < 0 && errno == EINTR);
    for (std::size_t i = 0; i < m_files.size(); ++i) {
      if (waiting[i].revents != 0) drain(i);
    }
    if (m_receive && !m_isStopped) m_isStopped = !m_receive({});
  }

 private:
  void drain(std::size_t which) {
    std::array<char, 65536> buffer;
    while (!m_exceedsLimit && !m_isStopped) {
      const ssize_t count = ::read(m_files[which].number(), buffer.data(), buffer.size());
      if (count < 0 && errno == EINTR) continue;
      if (count < 0 && errno == EAGAIN) return;
      if (count <= 0) return m_files[which].reset();
      keep(which, {buffer.data(), static_cast<std::size_t>(count)});
    }
  }

  void keep(std::size_t which, std::string_view bytes) {
    if (which == 0 && m_receive) {
      m_isStopped = !m_receive(bytes);
      return;
    }
    m_exceedsLimit = bytes.size() > m_room;
    if (m_exceedsLimit) return;
    m_room -= bytes.size();
    m_texts[which] += bytes;
  }

  std::array<FileDescriptor, 2> m_files;
  std::array<std::string, 2> m_texts;
  std::size_t m_room;
  const ProcessRunner::Receiver& m_receive;
  bool m_exceedsLimit = false;
  bool m_isStopped = false;
};

bool containsNull(const std::string& text) {
  return text.find('\0') != std::string::npos;
}

/// Reads until both outputs end, or until the tool has ended. The second matters if it leaves a process in the
/// background that keeps the outputs open. Returns false if the time is over before.
bool readAll(Outputs& outputs, Child& child, const Deadline& deadline) {
  constexpr int interval = 100;  // milliseconds between checks whether the tool has ended
  while (outputs.areOpen() && !outputs.exceedsLimit() && !outputs.isStopped()) {
    // Checked before reading, so that everything that the tool wrote before its end is read.
    const bool ended = child.hasEnded();
    outputs.read(ended ? 0 : interval);
    if (ended) return true;
    if (deadline.isOver()) break;
  }
  return !outputs.areOpen();
}

/// Waits for the end of a tool that has closed its outputs, usually by ending. Returns false if the time is over
/// before.
bool endsInTime(Child& child, const Deadline& deadline) {
  constexpr milliseconds longestPause{100};
  for (milliseconds pause{1}; deadline && !child.hasEnded(); pause = std::min(2 * pause, longestPause)) {
    if (deadline.isOver()) return false;
    std::this_thread::sleep_for(pause);
  }
  return true;
}

Error tooLong(const std::string& program, seconds limit) {
  return {.code = Error::Code::Io,
          .message = "it hasn't ended within " + std::to_string(limit.count()) + " seconds",
          .file = program};
}

Error tooMuch(const std::string& program, std::size_t maximum) {
  return {.code = Error::Code::LimitExceeded,
          .message = "it prints more than " + std::to_string(maximum) + " bytes",
          .file = program};
}

Error badArgument(const std::string& program) {
  return {.code = Error::Code::BadArgument, .message = "an argument contains a null character", .file = program};
}

}  // namespace

Result<ProcessResult> SystemProcessRunner::run(const std::string& program, const std::vector<std::string>& arguments,
                                               std::optional<seconds> limit) {
  return execute(program, arguments, {}, limit);
}

Result<ProcessResult> SystemProcessRunner::stream(const std::string& program, const std::vector<std::string>& arguments,
                                                  const Receiver& receive, std::optional<seconds> limit) {
  return execute(program, arguments, receive, limit);
}

Result<ProcessResult> SystemProcessRunner::execute(const std::string& program,
                                                   const std::vector<std::string>& arguments, const Receiver& receive,
                                                   std::optional<seconds> limit) {
  if (containsNull(program) || std::any_of(arguments.begin(), arguments.end(), containsNull))
    return badArgument(program);
  Pipe output = Pipe::make();
  Pipe complaints = Pipe::make();
  if (!output || !complaints) return systemError(errno, "run", program);
  SpawnPlan plan;
  pid_t id = 0;
  plan.open(STDIN_FILENO, "/dev/null", O_RDONLY);
  plan.give(output.write.number(), STDOUT_FILENO);
  plan.give(complaints.write.number(), STDERR_FILENO);
  const int failure = plan.start(id, program, arguments, m_environment);
  if (failure != 0) return systemError(failure, "run", program);

  const Deadline deadline(limit);
  Child child(id);
  // Otherwise the outputs would never end.
  output.write.reset();
  complaints.write.reset();
  Outputs outputs(std::move(output.read), std::move(complaints.read), m_maximumOutput, receive);
  const bool isInTime = readAll(outputs, child, deadline);
  if (outputs.isStopped()) return stopped(program);
  if (outputs.exceedsLimit()) return tooMuch(program, m_maximumOutput);
  if (!isInTime || !endsInTime(child, deadline)) return tooLong(program, *limit);
  const int status = child.wait();
  return ProcessResult{.exitStatus = status, .output = outputs.text(0), .complaints = outputs.text(1)};
}

}  // namespace mirvel
