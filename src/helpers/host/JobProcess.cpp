#include "helpers/host/JobProcess.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#ifdef __linux__
#include <sys/prctl.h>
#endif

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include "core/process/FileDescriptor.h"
#include "core/process/SpawnPlan.h"
#include "core/text/Strings.h"

namespace mirvel::host {

namespace {

// After the fork, no memory may be allocated: the child reports a failure as two numbers through a pipe.
struct ChildFailure {
  StartObstacle obstacle;
  int errnoValue;
};

const char* textOf(StartObstacle obstacle) {
  switch (obstacle) {
    case StartObstacle::RootDirectory:
      return "change the root folder";
    case StartObstacle::Rights:
      return "become the user of the job";
    case StartObstacle::WorkingDirectory:
      return "change to the working directory";
    case StartObstacle::StandardIn:
      return "open the standard input";
    case StartObstacle::StandardOut:
      return "open the standard output";
    case StartObstacle::StandardError:
      return "open the standard error";
    case StartObstacle::User:
      return "find the user";
    case StartObstacle::Group:
      return "find the group";
    case StartObstacle::Resources:
      return "make a process, pipe or file";
    case StartObstacle::Program:
    case StartObstacle::Other:
      break;
  }
  return "run the program";
}

std::string subjectOf(StartObstacle obstacle, const ProcessPlan& plan) {
  switch (obstacle) {
    case StartObstacle::Program:
      return plan.program;
    case StartObstacle::WorkingDirectory:
      return plan.workingDirectory.value_or("/");
    case StartObstacle::RootDirectory:
      return plan.rootDirectory.value_or("");
    case StartObstacle::User:
      return plan.userName.value_or("");
    case StartObstacle::Group:
      return plan.groupName.value_or("");
    case StartObstacle::StandardIn:
      return plan.standardIn.value_or("/dev/null");
    case StartObstacle::StandardOut:
      return plan.standardOut.value_or("");
    case StartObstacle::StandardError:
      return plan.standardError.value_or("");
    case StartObstacle::Rights:
    case StartObstacle::Resources:
    case StartObstacle::Other:
      break;
  }
  return {};
}

/// The paths to try in turn, as execvp(3) would.
std::vector<std::string> candidates(const std::string& program, const Environment& environment) {
  if (program.find('/') != std::string::npos) return {program};
  std::vector<std::string> result;
  const auto path = environment.find("PATH");
  if (path == environment.end()) return result;
  for (const std::string_view folder : String::split(path->second, ':')) {
    if (!folder.empty()) result.push_back(std::string(folder) + '/' + program);
  }
  return result;
}

/// The work of the child between fork and exec, where only async-signal-safe functions may be called: the constructor,
/// which runs before the fork, allocates everything that `run` needs.
class JobChild {
 public:
  JobChild(const ProcessPlan& plan, const JobUser& user, const Environment& environment, int output, int failure)
      : m_plan(plan), m_user(user), m_output(output), m_failure(failure), m_host(::getpid()) {
    m_programs = candidates(plan.program, environment);
    m_variables = execVariables(environment);
    m_words = plan.arguments;
    m_programPointers = execPointers(m_programs);
    m_variablePointers = execPointers(m_variables);
    m_wordPointers = execPointers(m_words);
  }

  [[noreturn]] void run() {
    resetSignals();
    ::setsid();
    if (m_plan.nice) ::setpriority(PRIO_PROCESS, 0, *m_plan.nice);  // ignored where the user may not
    for (const auto& limit : m_plan.limits) applyLimit(limit);
    if (m_plan.rootDirectory && (::chroot(m_plan.rootDirectory->c_str()) != 0 || ::chdir("/") != 0))
      fail(StartObstacle::RootDirectory);
    if (const int failure = m_user.assume()) fail(StartObstacle::Rights, failure);
    endWithHost();  // after `assume`: changing the user resets this setting
    if (m_plan.umask) ::umask(*m_plan.umask);
    if (::chdir(m_plan.workingDirectory ? m_plan.workingDirectory->c_str() : "/") != 0)
      fail(StartObstacle::WorkingDirectory);
    openStandardFiles();
    runProgram();
  }

 private:
  static void resetSignals() {
    for (int number = 1; number < NSIG; ++number) ::signal(number, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
  }

  // If the host is killed, nobody could stop the job any more, so the system then sends it SIGTERM. The check covers a
  // host that was killed before the setting took effect.
  void endWithHost() const {
#ifdef __linux__
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (::getppid() != m_host) ::_exit(startFailureCode);
#endif
  }

  static rlim_t limitOf(std::int64_t number) {
    return number < 0 ? RLIM_INFINITY : static_cast<rlim_t>(number);
  }

  static void applyLimit(const ProcessPlan::ResourceLimit& wanted) {
#ifdef __GLIBC__
    const auto resource = static_cast<__rlimit_resource>(wanted.resource);
#else
    const int resource = wanted.resource;
#endif
    rlimit limit{};
    if (::getrlimit(resource, &limit) != 0) return;
    rlimit next = limit;
    if (wanted.hard) next.rlim_max = limitOf(*wanted.hard);
    if (wanted.soft) next.rlim_cur = limitOf(*wanted.soft);
    next.rlim_cur = std::min(next.rlim_cur, next.rlim_max);
    if (::setrlimit(resource, &next) == 0) return;
    next.rlim_max = limit.rlim_max;  // only root may raise the hard limit: the soft one still counts
    next.rlim_cur = std::min(next.rlim_cur, next.rlim_max);
    ::setrlimit(resource, &next);
  }

  void openStandardFiles() const {
    open(m_plan.standardIn ? m_plan.standardIn->c_str() : "/dev/null", O_RDONLY, STDIN_FILENO,
         StartObstacle::StandardIn);
    constexpr int append = O_WRONLY | O_CREAT | O_APPEND;
    if (m_plan.standardOut) {
      open(m_plan.standardOut->c_str(), append, STDOUT_FILENO, StartObstacle::StandardOut);
    } else if (::dup2(m_output, STDOUT_FILENO) < 0) {
      fail(StartObstacle::StandardOut);
    }
    if (m_plan.standardError) {
      open(m_plan.standardError->c_str(), append, STDERR_FILENO, StartObstacle::StandardError);
    } else if (::dup2(m_output, STDERR_FILENO) < 0) {
      fail(StartObstacle::StandardError);
    }
  }

  void open(const char* path, int flags, int as, StartObstacle obstacle) const {
    const int file = ::open(path, flags | O_NOCTTY | O_CLOEXEC, 0666);
    if (file < 0 || ::dup2(file, as) < 0) fail(obstacle);
  }

  [[noreturn]] void runProgram() {
    int failure = ENOENT;
    for (const char* program : m_programPointers) {
      if (!program) break;
      ::execve(program, m_wordPointers.data(), m_variablePointers.data());
      if (errno != ENOENT && errno != ENOTDIR) failure = errno;
      if (errno != ENOENT && errno != ENOTDIR && errno != EACCES) break;
    }
    fail(StartObstacle::Program, failure);
  }

  [[noreturn]] void fail(StartObstacle obstacle) const {
    fail(obstacle, errno);
  }
  [[noreturn]] void fail(StartObstacle obstacle, int errnoValue) const {
    const ChildFailure failure{obstacle, errnoValue};
    (void)!::write(m_failure, &failure, sizeof failure);  // if this fails as well, the exit status still says so
    ::_exit(startFailureCode);
  }

  const ProcessPlan& m_plan;
  const JobUser& m_user;
  int m_output;
  int m_failure;
  pid_t m_host;
  std::vector<std::string> m_programs, m_variables, m_words;
  std::vector<char*> m_programPointers, m_variablePointers, m_wordPointers;
};

/// The first one that has a variable wins (`insert` keeps existing ones).
Environment merged(const Environment& usual, const JobUser& user, const ProcessPlan& plan) {
  Environment result = plan.environment;
  result.insert(user.environment.begin(), user.environment.end());
  result.insert(usual.begin(), usual.end());
  return result;
}

/// Moves a descriptor above those that the child replaces by its standard files. It can be one of them if the host was
/// started without standard files.
bool moveAboveStandard(FileDescriptor& file) {
  if (file.number() > STDERR_FILENO) return true;
  file = FileDescriptor(::fcntl(file.number(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
  return static_cast<bool>(file);
}

/// Forks with all signals blocked: until the child has reset the handlers, a signal would run those of the host in it,
/// and write to the host's signal pipe. The child unblocks them itself.
pid_t forkBlockingSignals() {
  sigset_t all, before;
  sigfillset(&all);
  ::sigprocmask(SIG_SETMASK, &all, &before);
  const pid_t id = ::fork();
  const int failure = errno;
  if (id != 0) ::sigprocmask(SIG_SETMASK, &before, nullptr);
  errno = failure;
  return id;
}

Error noRoom(int errnoValue, const std::string& program) {
  Error error = systemError(errnoValue, "run", program);
  error.code = Error::Code::LimitExceeded;
  return error;
}

}  // namespace

Result<JobProcess> JobProcess::start(const ProcessPlan& plan, const Environment& usual) {
  if (plan.program.empty()) return Error{.code = Error::Code::MissingKey, .message = "the job has no program"};
  const auto user = JobUser::of(plan);
  if (!user) return user.error();
  Pipe output = Pipe::make();
  Pipe failure = Pipe::make();
  if (!output || !failure || !moveAboveStandard(output.write) || !moveAboveStandard(failure.write)) {
    return noRoom(errno, plan.program);
  }
  JobChild child(plan, *user, merged(usual, *user, plan), output.write.number(), failure.write.number());
  const pid_t id = forkBlockingSignals();
  if (id < 0) return noRoom(errno, plan.program);
  if (id == 0) child.run();
  ::fcntl(output.read.number(), F_SETFL, O_NONBLOCK);
  ::fcntl(failure.read.number(), F_SETFL, O_NONBLOCK);
  JobProcess process{.id = id, .output = std::move(output.read), .failure = std::move(failure.read)};
  if (plan.standardOut && plan.standardError) process.output.reset();  // nobody writes to it
  return process;
}

std::optional<StartFailure> JobProcess::startFailure(const ProcessPlan& plan) const {
  ChildFailure found{};
  if (::read(failure.number(), &found, sizeof found) != sizeof found) return std::nullopt;
  return StartFailure{
      .obstacle = found.obstacle, .systemCode = found.errnoValue, .subject = subjectOf(found.obstacle, plan)};
}

StartFailure StartFailure::of(const Error& error, const ProcessPlan& plan) {
  using Keys = jobfile::Plist::CodingKeys;
  StartObstacle obstacle = StartObstacle::Other;
  if (error.code == Error::Code::LimitExceeded) obstacle = StartObstacle::Resources;
  if (error.code == Error::Code::MissingKey) obstacle = StartObstacle::Program;
  if (error.keyPath == jobfile::Plist::text(Keys::UserName)) obstacle = StartObstacle::User;
  if (error.keyPath == jobfile::Plist::text(Keys::GroupName)) obstacle = StartObstacle::Group;
  return {.obstacle = obstacle, .systemCode = error.systemCode, .subject = subjectOf(obstacle, plan)};
}

std::string StartFailure::text() const {
  return std::string("can't ") + textOf(obstacle) +
         (systemCode == 0 ? "" : std::string(": ") + std::strerror(systemCode));
}

RunEnd StartFailure::end() const {
  return {.how = RunEnd::How::CouldNotStart, .code = systemCode, .obstacle = obstacle, .subject = subject};
}

}  // namespace mirvel::host
