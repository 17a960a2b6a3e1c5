#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>

#include "core/catalogue/Launchd.h"
#include "support/ProgramFixture.h"
#include "support/RecordingShell.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using Requests = std::vector<std::string>;

class SaveTest : public testdata::ProgramFixture {
 protected:
  /// A job that was read from the folder of one kind and now is of another.
  std::shared_ptr<Launchd> jobOf(Kind now, Kind before, bool isDisabled, bool exists) {
    auto keys = plist::Dictionary{{"Program", "/bin/ls"}};
    if (isDisabled) keys.set("Disabled", true);
    const auto file = writeJob(before, "job", keys);
    auto job = Launchd::read(testdata::bytes(file), URL::file(file), before, Launchd::Source::File, {}, console);
    job->kind = now;
    if (!exists) fs::remove(file);
    return job;
  }

  /// The path below the machine's root, with new identifiers made the same.
  std::string shortened(const std::string& path) const {
    const std::string relative = fs::path(path).lexically_relative(folder.path());
    return std::regex_replace(relative, std::regex("[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}"), "#");
  }

  /// What was asked for since the last time, and after which wait.
  Requests asked() {
    static constexpr std::array names = {"write", "writeAndLoad", "delete", "quit", "unload", "load"};
    Requests result;
    for (; m_seen < helpers.requests.size(); ++m_seen) {
      const auto& request = helpers.requests[m_seen];
      std::string text = request.isPrivileged ? "root " : "user ";
      text += names.at(static_cast<std::size_t>(request.kind()));
      if (request.body.find("path")) text += " " + shortened(request.text("path"));
      if (request.body.find("deletePath")) text += " drop " + shortened(request.text("deletePath"));
      if (!request.body.find("label")) text += " unlabelled";
      if (m_waits[m_seen] > 0.29) text += " after a while";
      result.push_back(text);
    }
    return result;
  }
  void answerLast() { helpers.requests.back().reply({}); }

  /// Another machine, on which nothing has been asked yet.
  void startAnew() {
    endProgram();
    for (const Kind kind : {Kind::userAgent, Kind::localAgent, Kind::localDaemon}) fs::remove_all(path(kind));
    m_last = queue.now();
  }

  void SetUp() override {
    helpers.whenAsked = [this] {
      m_waits.push_back(queue.now() - m_last);
      m_last = queue.now();
    };
  }

 private:
  std::vector<double> m_waits;  // before each request
  double m_last = 0;
  std::size_t m_seen = 0;
};

TEST_F(SaveTest, EachPairOfKindsHasItsRequestsInTheirOrder) {
  constexpr Kind user = Kind::userAgent, agent = Kind::localAgent, daemon = Kind::localDaemon;
  const std::string mine = "user/LaunchAgents/job.plist";
  const std::string agents = "local/LaunchAgents/job.plist";
  const std::string daemons = "local/LaunchDaemons/job.plist";
  const struct {
    Kind now, before;
    bool isDisabled, exists;
    std::string url;  // afterwards
    Requests requests;
    Requests afterReplies = {};
  } table[] = {
      {user, user, false, true, mine, {"user writeAndLoad " + mine}},
      {user, user, false, false, mine, {"user writeAndLoad " + mine}},
      {user, user, true, true, mine, {"user write " + mine}},
      {user,
       agent,
       false,
       true,
       mine,
       {"user unload " + agents, "root delete drop " + agents, "user writeAndLoad " + mine}},
      {user, agent, true, false, mine, {"user unload " + agents, "root delete drop " + agents, "user write " + mine}},
      {user, daemon, false, true, mine, {"root delete drop " + daemons, "user writeAndLoad " + mine}},
      {agent,
       agent,
       false,
       true,
       agents,
       {"user unload " + agents + " unlabelled", "root write " + agents + " after a while"},
       {"user load " + agents + " unlabelled"}},
      {agent, agent, false, false, agents, {"root write " + agents}, {"user load " + agents + " unlabelled"}},
      {agent,
       agent,
       true,
       true,
       agents,
       {"user unload " + agents + " unlabelled", "root write " + agents + " after a while"}},
      {agent,
       user,
       false,
       true,
       agents,
       {"user unload " + mine + " unlabelled", "root write " + agents + " drop " + mine + " after a while"},
       {"user load " + agents + " unlabelled"}},
      {agent,
       daemon,
       true,
       true,
       agents,
       {"user unload " + daemons + " unlabelled", "root write " + agents + " drop " + daemons + " after a while"}},
      {daemon, daemon, false, true, daemons, {"root writeAndLoad " + daemons}},
      {daemon, daemon, true, false, daemons, {"root write " + daemons}},
      {daemon,
       user,
       false,
       true,
       daemons,
       {"user unload " + mine + " unlabelled", "root writeAndLoad " + daemons + " drop " + mine + " after a while"}},
      {daemon, user, false, false, mine, {"root writeAndLoad " + mine}},
      {daemon, agent, false, true, daemons, {"root writeAndLoad " + daemons + " drop " + agents}},
  };
  for (const auto& row : table) {
    SCOPED_TRACE(testing::Message() << row.before.rawValue() << " to " << row.now.rawValue() << ", disabled "
                                    << row.isDisabled << ", exists " << row.exists);
    startAnew();
    testdata::RecordingShell shell(program());
    const auto job = jobOf(row.now, row.before, row.isDisabled, row.exists);
    program().state.selectedJob = job;
    program().actions.save(*job);
    EXPECT_TRUE(program().state.isBusy);
    EXPECT_EQ(asked(), row.requests);
    EXPECT_EQ(shortened(job->url.text()), row.url);
    EXPECT_EQ(job->checksum.empty(), row.now != row.before) << "what moved is read anew, though its bytes are the same";
    EXPECT_TRUE(program().revisions.revisions().find(job->url.text())) << "kept when the request went out";
    EXPECT_EQ(helpers.requests.back().text("string"), *job->plistData());

    answerLast();
    queue.runDue();
    EXPECT_EQ(asked(), row.afterReplies);
    if (!row.afterReplies.empty()) answerLast();
    EXPECT_EQ(shell.count("saveCompleted"), 1U);
    EXPECT_EQ(shell.count("showDisplay"), 1U);
    settle();
    EXPECT_FALSE(program().state.isBusy);
    EXPECT_EQ(program().state.jobs.size(), row.exists ? 1U : 0U) << "a scan was made";
  }
}

TEST_F(SaveTest, ANewJobGetsAFileOfItsNameThatNothingHas) {
  const struct {
    std::string label, expected;
  } table[] = {{"a/b", "user/LaunchAgents/a_b.plist"},
               {"taken", "user/LaunchAgents/taken#.plist"},
               {"Ünï 🙂", "user/LaunchAgents/Ünï 🙂.plist"}};
  writeJob(Kind::userAgent, "taken");
  for (const auto& row : table) {
    const auto job = Launchd::read(testdata::jobText(row.label, {{"Program", "/bin/ls"}}), URL::address("new"),
                                   Kind::userAgent, Launchd::Source::Elsewhere, {}, console);
    job->isNewFile = true;
    job->customIcon = Image::named("x");
    program().actions.save(*job);
    EXPECT_EQ(shortened(job->url.text()), row.expected);
    EXPECT_EQ(job->customIconDigest, job->iconStoreName()) << "follows the file";
    EXPECT_EQ(asked(), Requests{"user writeAndLoad " + row.expected});
  }
}

TEST_F(SaveTest, AMoveToATakenNameEndsInAFolderOfThatName) {
  const auto job = jobOf(Kind::localDaemon, Kind::localAgent, false, true);
  writeJob(Kind::localDaemon, "job");
  program().actions.save(*job);
  EXPECT_EQ(shortened(job->url.text()), "local/LaunchDaemons/job/#.plist");
}

TEST_F(SaveTest, AKindWithoutAFolderCantBeSavedTo) {
  testdata::RecordingShell shell(program());
  const auto job = jobOf(Kind::loginItemApplication, Kind::userAgent, false, true);
  const std::string before = job->url.text();
  program().actions.save(*job);
  EXPECT_EQ(interface.errors.size() + interface.alerts.size(), 1U);
  EXPECT_EQ(job->url.text(), before);
  EXPECT_FALSE(program().state.isBusy);
  EXPECT_THAT(program().revisions.revisions(), testing::SizeIs(0));
}

TEST_F(SaveTest, AFileWhoseNameIsNoTextIsLeftAlone) {
  const auto job = jobOf(Kind::userAgent, Kind::userAgent, false, true);
  job->url = URL::file(path(Kind::userAgent,
                            "j\xF6"
                            "b.plist"));
  program().actions.save(*job);
  program().actions.deleteConfirmed(Interface::defaultButton, *job);
  EXPECT_THAT(asked(), IsEmpty());
  EXPECT_EQ(interface.errors.size(), 2U);
  EXPECT_FALSE(program().state.isBusy);
}

TEST_F(SaveTest, ALinkIsWrittenAtItsTargetAndRemovedAsItself) {
  const auto target = folder.write("elsewhere/real.plist", testdata::jobText("job", {{"Program", "/bin/ls"}}));
  const auto link = path(Kind::localAgent, "job.plist");
  fs::create_directories(link.parent_path());
  fs::create_symlink(folder.path() / "elsewhere/real.plist", link);
  const auto job =
      Launchd::read(testdata::bytes(link), URL::file(link), Kind::localAgent, Launchd::Source::File, {}, console);
  program().actions.save(*job);
  EXPECT_EQ(asked().back(), "root write elsewhere/real.plist after a while");
  job->kind = Kind::localDaemon;
  program().actions.save(*job);
  EXPECT_EQ(asked(), Requests{"root writeAndLoad local/LaunchDaemons/job.plist drop local/LaunchAgents/job.plist"});
}

TEST_F(SaveTest, DeletionAsksTheHelperOfTheKindAndClearsTheSelection) {
  testdata::RecordingShell shell(program());
  const struct {
    Kind kind;
    Requests requests;
    Requests afterReply = {};
  } table[] = {
      {Kind::userAgent, {"user delete drop user/LaunchAgents/job.plist"}},
      {Kind::localAgent,
       {"root delete drop local/LaunchAgents/job.plist"},
       {"user unload local/LaunchAgents/job.plist"}},
      {Kind::localDaemon, {"root delete drop local/LaunchDaemons/job.plist"}},
  };
  for (const auto& row : table) {
    const auto job = jobOf(row.kind, row.kind, false, true);
    program().state.selectedJob = job;
    program().actions.deleteConfirmed(Interface::alternateButton, *job);
    EXPECT_THAT(asked(), IsEmpty());
    program().actions.deleteConfirmed(Interface::defaultButton, *job);
    EXPECT_EQ(asked(), row.requests);
    answerLast();
    queue.runDue();
    EXPECT_EQ(asked(), row.afterReply);
    EXPECT_EQ(program().state.selectedJob != nullptr, !row.afterReply.empty());
  }
}

TEST_F(SaveTest, TheLoginItemGoesThatWasAskedAboutWhateverIsSelected) {
  loginItems.ownItems = {{"a", "/1", {}, {}}, {"b", "/not \xff UTF-8", {}, {}}, {"b", "/3", {}, {}}};
  scan();
  const Jobs jobs = program().state.jobs;
  program().state.selectedJob = jobNamed("a");
  program().actions.deleteConfirmed(Interface::defaultButton, *jobs.at(2));
  EXPECT_THAT(asked(), IsEmpty());
  settle();
  EXPECT_THAT(names(program().state.jobs), ElementsAre("a", "b"));
  EXPECT_EQ(jobNamed("b")->run(), "/not \xff UTF-8");

  loginItems.removalFailure = Error{.code = Error::Code::NotPermitted, .message = "can't delete", .file = "/a"};
  program().actions.deleteConfirmed(Interface::defaultButton, *jobs.at(0));
  EXPECT_EQ(interface.errors.size(), 1U);
}

}  // namespace
}  // namespace mirvel
