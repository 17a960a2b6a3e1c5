#include "helpers/agent/AgentActions.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "core/catalogue/JobFolder.h"
#include "core/catalogue/Launchd.h"
#include "core/files/ReadFile.h"
#include "core/messages/Replies.h"
#include "core/messages/Requests.h"
#include "core/notifications/NoticeTexts.h"
#include "core/process/SpawnPlan.h"
#include "core/propertylist/Reader.h"

namespace mirvel::agent {

namespace {

/// How a job can be disabled.
struct Disabling {
  enum class By {
    Agent,    ///< by writing `content`
    Program,  ///< which asks for what it needs: a password, or whether comments may be lost
    Nobody,   ///< it is disabled already
    User,     ///< it isn't the job of that name any more; the user has to look at it
  };

  By by = By::Program;
  std::string content = {};
};

Disabling disablingOf(const Notice& notice, Console& console) {
  using By = Disabling::By;
  const bool isOwn = notice.kind == Kind::userAgent;
  const auto bytes = readFile(notice.path, JobFolder::largestFile);
  if (!bytes) return {.by = isOwn ? By::User : By::Program};  // a file of root may be unreadable
  const auto job = Launchd::read(*bytes, URL::file(notice.path), notice.kind, {}, console);
  if (!job || job->name != notice.name) return {.by = By::User};
  if (job->isDisabled()) return {.by = By::Nobody};
  if (!isOwn || propertylist::hasComments(*bytes)) return {.by = By::Program};
  job->plist().disabled = true;
  auto content = job->plistData();
  return content ? Disabling{.by = By::Agent, .content = *std::move(content)} : Disabling{};
}

}  // namespace

void AgentActions::perform(const Notification& notification, const std::string& action, const std::string& token) {
  if (notification.notices.size() != 1) return open(nullptr, token);
  const Notice& notice = notification.notices.front();
  if (action == NoticeAction::dontTellAgain) return stayQuiet(notice);
  if (action == NoticeAction::disable) return disable(notice, token);
  const auto part = action == NoticeAction::showLog ? JobAddress::Part::Log : JobAddress::Part::Job;
  const JobAddress address{.path = notice.path, .part = part};
  open(&address, token);
}

/// Without an address, only brings the program to the front.
void AgentActions::open(const JobAddress* address, const std::string& token) {
  Environment environment = m_setup.environment;
  if (!token.empty()) {
    environment["XDG_ACTIVATION_TOKEN"] = token;
    environment["DESKTOP_STARTUP_ID"] = token;
  }
  std::vector<std::string> arguments;
  if (address) arguments.push_back(address->url());
  SpawnPlan plan;
  plan.open(STDIN_FILENO, "/dev/null", O_RDONLY);
  plan.open(STDOUT_FILENO, "/dev/null", O_WRONLY);
  plan.open(STDERR_FILENO, "/dev/null", O_WRONLY);
  pid_t child = -1;
  const int failure = plan.start(child, m_setup.program, arguments, environment);
  if (failure == 0) return m_children.push_back(child);
  m_setup.tell({.what = Notice::What::Trouble,
                .text = systemError(failure, "open", m_setup.program).text(),
                .title = NoticeTexts(m_setup.localize).programNotOpened()});
}

void AgentActions::collect() {
  std::erase_if(m_children, [](pid_t child) {
    const pid_t found = ::waitpid(child, nullptr, WNOHANG);
    return found == child || (found < 0 && errno != EINTR);
  });
}

void AgentActions::disable(const Notice& notice, const std::string& token) {
  using By = Disabling::By;
  const auto [by, content] = disablingOf(notice, m_setup.console);
  if (by == By::Agent) return sendDisabled(notice, content, token);
  if (by == By::Nobody) return;
  const auto part = by == By::Program ? JobAddress::Part::Disable : JobAddress::Part::Job;
  const JobAddress address{.path = notice.path, .part = part};
  open(&address, token);
}

void AgentActions::sendDisabled(const Notice& notice, const std::string& content, const std::string& token) {
  if (m_helper) {  // another job is being disabled
    return m_delay(0.2, [=, this] { disable(notice, token); });
  }
  auto helper = wire::startHelper(m_setup.action, m_setup.queue, m_reaper);
  if (!helper) return fail(notice, helper.error().text());
  m_helper = *std::move(helper);
  const messages::Request request{.content = messages::Write{.path = notice.path, .string = content},
                                  .presentError = false};
  const auto end = [this] {
    m_delay(0, [this] { m_helper.reset(); });  // not within its own call
  };
  m_helper->run(
      request.write(),
      [this, notice, end](const propertylist::Dictionary& answer) {
        end();
        const auto reply = messages::readReply(messages::Kind::Write, answer);
        if (!reply) return fail(notice, reply.error().text());
        const auto* const error = std::get_if<HelperError>(&*reply);
        if (error) fail(notice, error->failure ? error->failure->cause.text() : error->description.value_or(""));
      },
      [this, notice, end](const Error& error) {
        end();
        fail(notice, error.text());
      });
}

void AgentActions::fail(const Notice& notice, const std::string& reason) {
  const NoticeTexts texts(m_setup.localize);
  m_setup.tell(
      {.what = Notice::What::Trouble, .text = texts.notDisabled(notice.name, reason), .title = texts.jobNotDisabled()});
}

void AgentActions::stayQuiet(const Notice& notice) {
  // The store reports a failure.
  (void)(notice.isChange() ? m_setup.exceptions.setTellsChanges(notice.name, false)
                           : m_setup.exceptions.setTellsFailures(notice.name, false));
}

}  // namespace mirvel::agent
