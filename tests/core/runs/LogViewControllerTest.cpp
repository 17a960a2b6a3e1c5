#include "core/runs/LogViewController.h"

#include <gmock/gmock.h>

#include "core/catalogue/Launchd.h"
#include "support/ProgramFixture.h"

namespace mirvel {
namespace {

using messages::LogLine;
using messages::LogLines;
using propertylist::Dictionary;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

LogLine line(std::int64_t number, const std::string& message) {
  return {.number = number, .seconds = 999'999, .kind = LogLine::Kind::Output, .message = message};
}

TEST(LogQueryTest, ThePeriodFollowsTheIndexes) {
  const struct {
    std::int64_t length, period;
    const char* text;
    std::int64_t seconds;
  } table[] = {{0, 0, "1m", 60}, {1, 1, "4h", 14'400}, {2, 2, "8d", 691'200}, {4, 2, "30d", 2'592'000},
               {5, 0, "1m", 60}, {-1, 1, "1h", 3600},  {3, 3, "16h", 57'600}, {3, -1, "16h", 57'600}};
  for (const auto& row : table) {
    const auto query = logQuery(row.length, row.period, "a");
    EXPECT_EQ(query.lastString, row.text);
    EXPECT_EQ(query.period.count(), row.seconds) << row.text;
    EXPECT_EQ(query.searchString, "a");
    EXPECT_FALSE(query.after);
  }
}

class LogViewControllerTest : public testdata::ProgramFixture {
 protected:
  LogViewController& open(Kind kind = Kind::userAgent, const Dictionary& keys = {}) {
    job = Launchd::read(testdata::jobText("org.example.a", keys), URL::file(path(kind, "a.plist")), kind, {}, console);
    program().selection.select(job);
    log = std::make_unique<LogViewController>(program().session, program().actions, *job);
    return *log;
  }
  /// Answers the request with this index.
  void reply(std::size_t request, const LogLines& lines) {
    helpers.requests.at(request).reply(messages::write(messages::Reply(lines)));
  }
  std::vector<std::string> messages() const {
    std::vector<std::string> result;
    for (std::size_t i = 0; i < log->rows().size(); ++i) result.push_back(log->rows().at(i).message);
    return result;
  }
  std::optional<std::int64_t> after(std::size_t request) const {
    const auto* query = helpers.requests.at(request).at("logQuery").as<Dictionary>();
    const auto* number = query->get<propertylist::Integer>("after");
    return number ? number->toInt64() : std::nullopt;
  }

  std::shared_ptr<Launchd> job;
  std::unique_ptr<LogViewController> log;
};

TEST_F(LogViewControllerTest, OnlyTheLogOfADaemonNeedsThePassword) {
  for (const Kind kind :
       {Kind::userAgent, Kind::localAgent, Kind::systemAgent, Kind::localDaemon, Kind::systemDaemon}) {
    open(kind).refresh(1, 1);
    EXPECT_EQ(helpers.requests.back().isPrivileged, kind == Kind::localDaemon || kind == Kind::systemDaemon) << kind;
  }
  open(Kind::userAgent);
  job->kind = Kind::localDaemon;  // not saved yet
  log = std::make_unique<LogViewController>(program().session, program().actions, *job);
  log->refresh(1, 1);
  EXPECT_FALSE(helpers.requests.back().isPrivileged) << "the job is loaded where its file is";
}

TEST_F(LogViewControllerTest, AQueryIsForTheLoadedLabelAndStoresThePeriod) {
  open();
  job->plist().name = "typed";
  log->refresh(1, 2);
  EXPECT_EQ(helpers.requests.back().at("logQuery"),
            propertylist::Value(
                Dictionary{{"lastString", "4d"}, {"lastSeconds", "345600"}, {"searchString", "org.example.a"}}));
  EXPECT_EQ(foundation.defaults.logLength(), 1);
  EXPECT_EQ(foundation.defaults.logPeriod(), 2);
  EXPECT_EQ(log->title(), "Log – org.example.a");
  job->isNewFile = true;
  log = std::make_unique<LogViewController>(program().session, program().actions, *job);
  log->refresh(1, 1);
  EXPECT_EQ(helpers.requests.size(), 1U) << "a job without a file isn't loaded";
  EXPECT_FALSE(log->isRunning());
}

TEST_F(LogViewControllerTest, EveryOutcomeEndsTheQuery) {
  const struct {
    const char* name;
    std::function<void()> end;
    std::size_t errors;
    std::vector<std::string> rows;
  } table[] = {
      {"lines", [&] { reply(0, {{line(1, "x")}}); }, 0, {"x"}},
      {"no lines", [&] { reply(0, {}); }, 0, {}},
      {"malformed",
       [&] {
         helpers.requests.at(0).reply({{"logLines", "text"}});
       },
       1,
       {}},
      {"empty reply", [&] { helpers.requests.at(0).reply({}); }, 1, {}},
      {"error",
       [&] {
         helpers.requests.at(0).reply({{"error", Dictionary{{"domain", actionErrorDomain}, {"code", 7}}}});
       },
       1,
       {}},
      {"died", [&] { helpers.requests.at(0).failure({.code = Error::Code::HungUp, .message = "it died"}); }, 1, {}},
      {"cancelled", [&] { log->cancel(); }, 0, {}},
  };
  for (const auto& row : table) {
    log.reset();
    helpers.requests.clear();
    interface.errors.clear();
    open().refresh(1, 1);
    EXPECT_TRUE(log->isRunning());
    row.end();
    EXPECT_FALSE(log->isRunning()) << row.name;
    EXPECT_EQ(interface.errors.size(), row.errors) << row.name;
    EXPECT_EQ(messages(), row.rows) << row.name;
    log->refresh(1, 1);
    EXPECT_TRUE(log->isRunning()) << row.name << ": it can be repeated";
    queue.runDue();
  }
}

TEST_F(LogViewControllerTest, AHelperThatCantBeReachedLeavesAnEmptyLog) {
  helpers.canConnect = false;
  open().refresh(1, 1);
  EXPECT_FALSE(log->isRunning());
  EXPECT_THAT(console.logged, testing::Contains("Cannot connect to helper tool to fetch log"));
}

TEST_F(LogViewControllerTest, ARefusedPasswordEndsTheQuery) {
  helpers.isHandshakeHeld = true;
  open(Kind::localDaemon).refresh(1, 1);
  EXPECT_TRUE(log->isRunning());
  log->cancel();
  EXPECT_FALSE(log->isRunning());
  log->refresh(1, 1);
  helpers.privilegedReply({.connection = {}, .authData = {}, .isCancelled = true});
  EXPECT_FALSE(log->isRunning());
  EXPECT_THAT(helpers.requests, IsEmpty());
}

TEST_F(LogViewControllerTest, CancellingEndsOneRequestAndKeepsTheConnection) {
  open().refresh(1, 1);
  log->cancel();
  EXPECT_TRUE(helpers.requests.at(0).isCancelled);
  EXPECT_THAT(helpers.ended, IsEmpty());
  EXPECT_THAT(interface.errors, IsEmpty());
}

TEST_F(LogViewControllerTest, AnAnswerCountsForItsOwnQueryOnly) {
  const std::vector<std::vector<std::size_t>> orders{{0, 1, 2}, {0, 2, 1}, {1, 0, 2}, {1, 2, 0}, {2, 0, 1}, {2, 1, 0}};
  for (const auto& order : orders) {
    log.reset();
    helpers.requests.clear();
    open();
    for (int i = 0; i < 3; ++i) log->refresh(i, 1);
    for (const std::size_t request : order) {
      reply(request, {{line(1, std::to_string(request))}});
      EXPECT_EQ(log->isRunning(), messages().empty());
    }
    EXPECT_THAT(messages(), ElementsAre("2"));
  }
  log.reset();
  open().refresh(1, 1);
  log.reset();
  EXPECT_TRUE(helpers.requests.back().isCancelled);
  reply(helpers.requests.size() - 1, {{line(1, "late")}});  // there is no sheet to receive it
}

TEST_F(LogViewControllerTest, FollowingAsksForNewerLinesUntilItEnds) {
  open().refresh(1, 1);
  log->setFollowing(true);
  reply(0, {{line(4, "a")}});
  queue.runDue();
  ASSERT_EQ(helpers.requests.size(), 2U);
  EXPECT_EQ(after(1), 4);
  EXPECT_FALSE(log->isRunning()) << "the sheet can be used while it waits";
  reply(1, {{line(5, "b"), line(8, "c")}, 2});
  EXPECT_THAT(messages(), ElementsAre("a", "b", "2 lines were dropped", "c"));
  queue.runFor(LogViewController::secondsBetweenQueries);
  ASSERT_EQ(helpers.requests.size(), 3U);
  EXPECT_EQ(after(2), 8);
  reply(2, {});  // nothing came for a long time
  queue.runFor(LogViewController::secondsAfterNothing);
  ASSERT_EQ(helpers.requests.size(), 4U);
  log->setFollowing(false);
  EXPECT_TRUE(helpers.requests.at(3).isCancelled);
  queue.runFor(600);
  EXPECT_EQ(helpers.requests.size(), 4U);
  EXPECT_EQ(messages().size(), 4U) << "the lines stay";
  log->setFollowing(true);
  queue.runDue();
  helpers.requests.back().failure({.code = Error::Code::HungUp, .message = "it died"});
  EXPECT_FALSE(log->isFollowing());
  EXPECT_EQ(messages().size(), 4U);
  queue.runFor(600);
  EXPECT_EQ(helpers.requests.size(), 5U);
}

TEST_F(LogViewControllerTest, ARefreshReplacesTheWaitingQuery) {
  EXPECT_TRUE(foundation.defaults.setFollowLog(true));
  open().refresh(1, 1);
  reply(0, {});
  queue.runFor(LogViewController::secondsAfterNothing);
  EXPECT_EQ(after(1), 0) << "no number is known yet";
  log->refresh(0, 0);
  EXPECT_TRUE(helpers.requests.at(1).isCancelled);
  reply(1, {{line(1, "old")}});
  EXPECT_THAT(messages(), IsEmpty());
  reply(2, {});
  queue.runFor(LogViewController::secondsAfterNothing);
  reply(3, {{{.number = 1, .seconds = 999'900, .message = "before the period"}, line(2, "within")}});
  EXPECT_THAT(messages(), ElementsAre("within"));
  log->cancel();
  queue.runFor(600);
  EXPECT_EQ(helpers.requests.size(), 4U);
}

TEST_F(LogViewControllerTest, ALogWhoseNumbersBeginAgainIsFollowed) {
  EXPECT_TRUE(foundation.defaults.setFollowLog(true));
  open().refresh(1, 1);
  reply(0, {{line(700, "before")}});
  queue.runDue();
  reply(1, {{line(1, "first"), line(2, "second")}});
  queue.runFor(LogViewController::secondsBetweenQueries);
  EXPECT_THAT(messages(), ElementsAre("before", "first", "second"));
  EXPECT_EQ(after(2), 2);
}

TEST_F(LogViewControllerTest, TheStatusCountsLines) {
  open();
  EXPECT_EQ(log->status(), "");
  log->refresh(1, 1);
  EXPECT_EQ(log->status(), "");
  reply(0, {});
  EXPECT_EQ(log->status(), "Nothing was logged in this period.");
  log->refresh(1, 1);
  reply(1, {{line(2, "a"), line(3, "b")}, 1});
  EXPECT_EQ(log->status(), "2 lines – 1 line was dropped");
  log->setFilter("B");
  EXPECT_EQ(log->status(), "1 of 2 lines – 1 line was dropped");
  log->setFilter("x");
  EXPECT_EQ(log->status(), "No line contains the text of the filter.");
  log->setFilter("");
  log->refresh(1, 1);
  const std::string longLine(LogRows::mostBytes, 'x');
  reply(2, {{line(2, longLine), line(3, "b")}, 1});
  EXPECT_EQ(log->status(), "1 line – 1 line was dropped – 1 earlier line isn’t shown");
}

TEST_F(LogViewControllerTest, CopiesHaveWholeLines) {
  open().refresh(1, 1);
  reply(0, {{line(1, "a\tb\x1b[31m"), line(2, std::string(5000, 'x'))}});
  EXPECT_EQ(log->copiedText({}), "");
  const std::string date = log->date(log->rows().at(0));
  EXPECT_EQ(log->copiedText({0, 1}), date + " – a\tb\x1b[31m\n" + date + " – " + std::string(5000, 'x'));
}

TEST_F(LogViewControllerTest, OutputFilesAreOfferedIfTheyExist) {
  const std::string out = folder.write("out.txt", "x"), err = folder.write("err.txt", "x");
  const auto files = [&](const std::string& first, const std::string& second) {
    open(Kind::userAgent, {{"StandardOutPath", first}, {"StandardErrorPath", second}});
    std::vector<std::pair<std::string, std::string>> result;
    for (const auto& file : log->outputFiles()) result.emplace_back(file.title, file.url.text());
    return result;
  };
  EXPECT_THAT(files(out, err), ElementsAre(Pair("Open Output File", out), Pair("Open Error File", err)));
  EXPECT_THAT(files(out, out), ElementsAre(Pair("Open Output File", out)));
  EXPECT_THAT(files("/dev/null", err), ElementsAre(Pair("Open Error File", err)));
  EXPECT_THAT(files(folder.path() / "missing", "out.txt"), IsEmpty());
  (void)files(out, err);
  workspace.opens = false;
  log->open(log->outputFiles().front());
  EXPECT_EQ(interface.errors.size(), 1U);
}

}  // namespace
}  // namespace mirvel
