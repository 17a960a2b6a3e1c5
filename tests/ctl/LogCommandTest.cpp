#include <gmock/gmock.h>
#include <signal.h>

#include <deque>

#include "core/catalogue/Kind.h"
#include "core/process/SystemProcessRunner.h"
#include "ctl/CommandFixture.h"
#include "ctl/Json.h"
#include "helpers/jobhost/EmbeddedHost.h"

namespace mirvel::ctl {
namespace {

using messages::LogLine;
using messages::LogLines;
using testing::ElementsAre;
using testing::HasSubstr;
using Order = messages::Control::Order;

/// Answers with prepared logs, and then acts like a query that is interrupted by Ctrl+C.
class FakeHost final : public JobHost {
 public:
  struct Calls {
    std::vector<messages::LogQuery> queries;
    std::deque<Result<LogLines>> logs;
    std::vector<std::string> orders;
    std::optional<Error> refusal;      ///< of every order
    std::filesystem::path loadedFrom;  ///< other files aren't; empty: each is
  };
  explicit FakeHost(Calls& calls) : m_calls(calls) {}

  Result<void> load(const std::filesystem::path&) override { return unexpected(); }
  Result<void> unload(const std::filesystem::path&, const std::optional<std::string>&) override { return unexpected(); }
  Result<Ended> waitForEnd(const std::string&, std::chrono::seconds) override { return unexpected(); }
  Result<void> control(const std::filesystem::path& file, const std::string& label, Order order) override {
    m_calls.orders.push_back(std::to_string(static_cast<int>(order)) + ' ' + label + ' ' + file.filename().string());
    if (!m_calls.loadedFrom.empty() && m_calls.loadedFrom != file) {
      return Error{.code = Error::Code::NotFound, .message = "not loaded"};
    }
    return m_calls.refusal ? Result<void>(*m_calls.refusal) : Result<void>();
  }
  Result<LogLines> log(const messages::LogQuery& query, Cancellation& cancellation) override {
    m_calls.queries.push_back(query);
    if (!m_calls.logs.empty()) {
      const auto next = m_calls.logs.front();
      m_calls.logs.pop_front();
      return next;
    }
    std::mutex mutex;
    std::condition_variable changed;
    bool isCancelled = false;
    EXPECT_TRUE(cancellation.setAction([&] {
      const std::lock_guard lock(mutex);
      isCancelled = true;
      changed.notify_all();
    }));
    ::kill(::getpid(), SIGINT);
    std::unique_lock lock(mutex);
    changed.wait(lock, [&] { return isCancelled; });
    lock.unlock();
    (void)cancellation.setAction({});
    return Error{.code = Error::Code::Cancelled, .message = "cancelled"};
  }

 private:
  static Error unexpected() {
    ADD_FAILURE() << "the command only controls jobs and reads logs";
    return {};
  }
  Calls& m_calls;
};

LogLine logged(std::int64_t number, const std::string& message, LogLine::Kind kind = LogLine::Kind::Output) {
  return {.number = number, .seconds = 999'999.5, .kind = kind, .message = message};
}

class LogCommandTest : public CommandFixture {
 protected:
  LogCommandTest() {
    ::setenv("TZ", "UTC", 1);
    jobHost = [this] { return std::make_unique<FakeHost>(calls); };
  }
  std::string agent(Kind kind, const std::string& name, const std::string& label) {
    const auto path = *kind.folderURL(roots()) / name;
    return job(path.lexically_relative(folder.path()), label, {{"Program", "/bin/ls"}});
  }

  FakeHost::Calls calls;
};

TEST_F(LogCommandTest, LinesArePrintedWithTheirTimes) {
  const LogLines log{{logged(4, "a\x1b[31m\xff"), logged(7, "ended", LogLine::Kind::Event)}, 5};
  calls.logs = {log};
  const auto outcome = start({"log", "org.a"});
  EXPECT_EQ(outcome.status, Success);
  EXPECT_EQ(outcome.out,
            "(3 lines were dropped)\n"
            "1970-01-12 13:46:39  a\\x1b[31m\\xff\n"
            "(2 lines were dropped)\n"
            "1970-01-12 13:46:39  * ended\n");
  ASSERT_EQ(calls.queries.size(), 1U);
  EXPECT_EQ(calls.queries[0], (messages::LogQuery{.period = std::chrono::hours(24), .searchString = "org.a"}));
  calls.logs = {LogLines{{logged(4, "x"), logged(6, "ended", LogLine::Kind::Event)}, 1}};
  EXPECT_EQ(start({"log", "--json", "org.a"}).out,
            "{\"number\":4,\"time\":999999.5,\"kind\":\"output\",\"message\":\"x\"}\n{\"dropped\":1}\n"
            "{\"number\":6,\"time\":999999.5,\"kind\":\"event\",\"message\":\"ended\"}\n");
}

TEST_F(LogCommandTest, AnEmptyLogIsExplainedIfItCantBeOtherwise) {
  (void)agent(Kind::userAgent, "quiet.plist", "org.quiet");
  (void)agent(Kind::localDaemon, "root.plist", "org.root");
  const struct {
    const char* label;
    int status;
    const char* err;
  } rows[] = {
      {"org.quiet", Success, ""},
      {"org.root", Failed, "mirvelctl log: org.root is a job of root; use the application\n"},
      {"org.qiet", Failed, "mirvelctl log: there is no job with the label org.qiet\n"},
  };
  for (const auto& row : rows) {
    calls.logs = {LogLines{}};
    const auto outcome = start({"log", row.label});
    EXPECT_EQ(outcome.status, row.status) << row.label;
    EXPECT_EQ(outcome.err, row.err);
  }
  calls.logs = {LogLines{{logged(1, "deleted")}}};
  EXPECT_EQ(start({"log", "org.qiet"}).status, Success) << "its job was deleted";
}

TEST_F(LogCommandTest, FollowingEndsCleanlyWhenInterrupted) {
  (void)agent(Kind::userAgent, "a.plist", "org.a");
  LogLine old = logged(1, "before the period");
  old.seconds = 5;
  calls.logs = {LogLines{}, LogLines{{old, logged(2, "b")}}, LogLines{}, LogLines{{logged(5, "c")}, 2},
                LogLines{{logged(1, "new log")}}};
  const auto outcome = start({"log", "org.a", "--follow", "--since", "4h"});
  EXPECT_EQ(outcome.status, Success);
  EXPECT_EQ(outcome.out,
            "1970-01-12 13:46:39  b\n(2 lines were dropped)\n1970-01-12 13:46:39  c\n1970-01-12 13:46:39  new log\n");
  std::vector<std::int64_t> after;
  for (const auto& query : calls.queries) after.push_back(query.after.value_or(-1));
  EXPECT_THAT(after, ElementsAre(-1, 0, 2, 2, 5, 1));
  EXPECT_EQ(calls.queries[0].period, std::chrono::hours(4));
}

/// Passes queries on to a real host. After an answer `next` says what happens before the following query.
class FollowedHost final : public JobHost {
 public:
  using Next = std::function<void()>;
  FollowedHost(EmbeddedHost& real, std::function<Next(const LogLines&)> next) : m_real(real), m_next(std::move(next)) {}

  Result<void> load(const std::filesystem::path& file) override { return m_real.load(file); }
  Result<void> unload(const std::filesystem::path& file, const std::optional<std::string>& label) override {
    return m_real.unload(file, label);
  }
  Result<Ended> waitForEnd(const std::string& label, std::chrono::seconds limit) override {
    return m_real.waitForEnd(label, limit);
  }
  Result<void> control(const std::filesystem::path& file, const std::string& label, Order order) override {
    return m_real.control(file, label, order);
  }
  Result<LogLines> log(const messages::LogQuery& query, Cancellation& cancellation) override {
    if (m_before) std::exchange(m_before, {})();
    auto lines = m_real.log(query, cancellation);
    if (lines) m_before = m_next(*lines);
    return lines;
  }

 private:
  EmbeddedHost& m_real;
  std::function<Next(const LogLines&)> m_next;
  Next m_before;
};

TEST_F(LogCommandTest, TheLogOfARealHostIsShownAndFollowed) {
  SystemProcessRunner processes{{{"PATH", "/usr/bin:/bin"}}};
  ownRoots = Roots::below(folder.path());
  EmbeddedHost real(EmbeddedHost::below(MIRVEL_HOST, folder.path()), processes);
  const std::unique_ptr<EmbeddedHost, void (*)(EmbeddedHost*)> ended(&real, [](auto* host) { (void)host->quit(); });
  const auto file =
      job("real.plist", "org.real",
          {{"ProgramArguments", propertylist::Array{"/bin/sh", "-c", "echo first; test ! -e again || echo second"}},
           {"WorkingDirectory", folder.path().string()},
           {"RunAtLoad", true}});
  ASSERT_TRUE(real.load(file));
  ASSERT_TRUE(real.waitForEnd("org.real", std::chrono::seconds(60))->hasEnded);

  int ends = 0;
  jobHost = [&] {
    return std::make_unique<FollowedHost>(real, [&](const LogLines& log) -> FollowedHost::Next {
      for (const auto& line : log.lines) ends += line.message == "exited with 0" ? 1 : 0;
      if (ends == 2) return [] { ::kill(::getpid(), SIGINT); };
      if (ends == 0 || std::filesystem::exists(folder.path() / "again")) return {};
      return [&] {
        (void)folder.write("again", "");
        EXPECT_TRUE(real.control(file, "org.real", Order::Start));
      };
    });
  };
  const auto messages = [](const std::string& text) {
    std::string result;
    std::istringstream lines(text);
    const std::size_t time = std::string("2026-11-23 13:46:39  ").size();
    for (std::string line; std::getline(lines, line);) result += line.substr(std::min(time, line.size())) + '\n';
    return result;
  };
  const std::string first = "* started\nfirst\n* exited with 0\n";
  EXPECT_EQ(messages(start({"log", "org.real"}).out), first);
  ends = 0;
  const auto followed = start({"log", "--follow", "org.real"});
  EXPECT_EQ(followed.status, Success) << followed.err;
  EXPECT_EQ(messages(followed.out), first + "* started\nfirst\nsecond\n* exited with 0\n");
  ASSERT_TRUE(real.quit());
  EXPECT_EQ(messages(start({"log", "org.real"}).out), messages(followed.out)) << "without a host as well";
}

TEST_F(LogCommandTest, AFailureIsReported) {
  calls.logs = {LogLines{{logged(1, "a")}}, Error{.code = Error::Code::Io, .message = "no \x1b host"}};
  const auto outcome = start({"log", "org.a", "--follow"});
  EXPECT_EQ(outcome.status, Failed);
  EXPECT_EQ(outcome.err, "mirvelctl log: no \\x1b host\n");
}

TEST_F(LogCommandTest, WrongArgumentsReachNoHost) {
  for (const std::vector<std::string>& arguments :
       std::vector<std::vector<std::string>>{{"log"},
                                             {"log", ""},
                                             {"log", "a", "b"},
                                             {"log", "a", "--since", "4"},
                                             {"log", "a", "--since", "0m"},
                                             {"log", "a", "--since", "-1d"},
                                             {"log", "a", "--since", ""},
                                             {"log", "a", "--since", "99999999999999999999d"},
                                             {"start"},
                                             {"stop", ""},
                                             {"restart", "a", "b"},
                                             {"stop", "--all", "a"},
                                             {"runs", "--past", "--days", "3"}}) {
    EXPECT_EQ(start(arguments).status, Usage) << testing::PrintToString(arguments);
  }
  EXPECT_TRUE(calls.queries.empty() && calls.orders.empty());
}

TEST_F(LogCommandTest, OnlyTheUsersOwnJobsAreStartedAndStopped) {
  (void)agent(Kind::userAgent, "one.plist", "org.a");
  const std::string second = agent(Kind::localAgent, "two.plist", "org.a");
  (void)agent(Kind::localDaemon, "three.plist", "org.d");
  (void)file("user/LaunchAgents/damaged.plist", "damaged");
  EXPECT_EQ(start({"start", "org.a"}).status, Success);
  EXPECT_EQ(start({"stop", "org.a"}).status, Success);
  EXPECT_EQ(start({"restart", "org.a"}).err, "");
  EXPECT_THAT(calls.orders, ElementsAre("0 org.a one.plist", "1 org.a one.plist", "2 org.a one.plist"));
  calls.orders.clear();
  calls.loadedFrom = second;
  EXPECT_EQ(start({"stop", "org.a"}).status, Success);
  EXPECT_THAT(calls.orders, ElementsAre("1 org.a one.plist", "1 org.a two.plist"));
  calls = {};
  EXPECT_EQ(start({"start", "org.d"}).err, "mirvelctl start: org.d is a job of root; use the application\n");
  EXPECT_EQ(start({"start", "org"}).err, "mirvelctl start: there is no job with the label org\n");
  EXPECT_TRUE(calls.orders.empty());
  calls.refusal = Error{.code = Error::Code::StillRunning, .message = "process 5 is still running"};
  const auto refused = start({"stop", "org.a"});
  EXPECT_EQ(refused.status, Failed);
  EXPECT_THAT(refused.err, HasSubstr("process 5 is still running"));
  EXPECT_EQ(calls.orders.size(), 1U) << "the other file isn't the one that is loaded";
}

}  // namespace
}  // namespace mirvel::ctl
