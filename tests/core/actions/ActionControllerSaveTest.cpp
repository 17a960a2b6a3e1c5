#include <gmock/gmock.h>

#include <regex>

#include "core/catalogue/Launchd.h"
#include "support/ProgramFixture.h"
#include "support/RecordingShell.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using Requests = std::vector<std::string>;

class ActionControllerSaveTest : public testdata::ProgramFixture {
 protected:
  /// A job that was read from the folder of one kind, and has been changed to another.
  std::shared_ptr<Launchd> jobOf(Kind now, Kind before, bool isDisabled, bool exists) {
    auto keys = propertylist::Dictionary{{"Program", "/bin/ls"}};
    if (isDisabled) keys.set("Disabled", true);
    const auto file = writeJob(before, "job", keys);
    auto job = Launchd::read(testdata::bytes(file), URL::file(file), before, {}, console);
    job->kind = now;
    if (!exists) fs::remove(file);
    return job;
  }

  /// The path relative to the test's folder, with "#" for each UUID.
  std::string shortened(const std::string& path) const {
    const std::string relative = fs::path(path).lexically_relative(folder.path());
    return std::regex_replace(relative, std::regex("[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}"), "#");
  }

  /// The requests since the last call.
  Requests asked() {
    static constexpr std::array names = {"write", "writeAndLoad", "delete", "quit", "unload", "load"};
    Requests result;
    for (; m_seen < helpers.requests.size(); ++m_seen) {
      const auto& request = helpers.requests[m_seen];
      std::string text = request.isPrivileged ? "root " : "user ";
      text += names.at(static_cast<std::size_t>(request.kind()));
      if (request.body.find("path")) text += " " + shortened(request.text("path"));
      if (request.body.find("deletePath")) text += " drop " + shortened(request.text("deletePath"));
      if (request.body.find("label")) text += " as " + request.text("label");
      result.push_back(text);
    }
    return result;
  }
  void answerLast() { helpers.requests.back().reply({}); }
  /// Answers all requests, one after the other, and returns them.
  Requests answerAll() {
    Requests result;
    for (auto requests = asked(); !requests.empty(); requests = asked()) {
      EXPECT_EQ(requests.size(), 1U) << "one at a time";
      result.insert(result.end(), requests.begin(), requests.end());
      answerLast();
    }
    return result;
  }

  /// Starts another program on an empty machine.
  void restart() {
    endProgram();
    for (const Kind kind : {Kind::userAgent, Kind::localAgent, Kind::localDaemon}) fs::remove_all(path(kind));
  }

 private:
  std::size_t m_seen = 0;
};

TEST_F(ActionControllerSaveTest, EachPairOfKindsHasItsRequestsInTheirOrder) {
  constexpr Kind user = Kind::userAgent, agent = Kind::localAgent, daemon = Kind::localDaemon;
  constexpr Kind system = Kind::systemAgent;
  /// The files by letters: of the user, of agents for everyone, of daemons, and of the system's agents.
  const auto lettered = [](std::string text) {
    for (const auto& [file, letter] :
         {std::pair("user/LaunchAgents/job.plist", "U"), std::pair("local/LaunchAgents/job.plist", "A"),
          std::pair("local/LaunchDaemons/job.plist", "D"), std::pair("system/LaunchAgents/job.plist", "S")}) {
      text = std::regex_replace(text, std::regex(file), letter);
    }
    return text;
  };
  const struct {
    Kind before, now;
    bool isDisabled, exists;
    std::string requests, url;
  } table[] = {
      {user, user, false, true, "user writeAndLoad U as job; ", "U"},
      {user, user, false, false, "user writeAndLoad U as job; ", "U"},
      {user, user, true, true, "user write U as job; ", "U"},
      {agent, user, false, true, "user write U as job; root delete drop A as job; user unload A as job; user load U; ",
       "U"},
      {agent, user, true, false, "user write U as job; root delete drop A as job; user unload A as job; ", "U"},
      {daemon, user, false, true, "user write U as job; root delete drop D as job; user load U; ", "U"},
      {daemon, user, true, true, "user write U as job; root delete drop D as job; ", "U"},
      {agent, agent, false, true, "user unload A; root write A as new; user load A; ", "A"},
      {agent, agent, false, false, "root write A as new; user load A; ", "A"},
      {agent, agent, true, true, "user unload A; root write A as new; ", "A"},
      {user, agent, false, true, "user unload U; root write A drop U as new; user load A; ", "A"},
      {daemon, agent, true, true, "root write A drop D as new; ", "A"},
      {daemon, daemon, false, true, "root writeAndLoad D as new; ", "D"},
      {daemon, daemon, true, false, "root write D as new; ", "D"},
      {user, daemon, false, true, "user unload U; root writeAndLoad D drop U as new; ", "D"},
      {user, daemon, false, false, "root writeAndLoad D as new; ", "D"},
      {agent, daemon, false, true, "user unload A; root writeAndLoad D drop A as new; ", "D"},
      {system, system, false, true, "user unload S; root write S as new; user load S; ", "S"},
  };
  ASSERT_TRUE(foundation.defaults.set(Defaults::Key::editSystemJobs, true));
  for (const auto& row : table) {
    SCOPED_TRACE("row " + std::to_string(&row - table));
    restart();
    testdata::RecordingShell shell(program());
    const auto job = jobOf(row.now, row.before, row.isDisabled, row.exists);
    const std::string before = job->url.text();
    job->customIcon = Image::named("x");
    job->plist().name = "new";
    program().selection.select(job);
    program().actions.save(job);
    EXPECT_TRUE(program().saving.isBusy());
    EXPECT_EQ(job->url.text(), before) << "until the file is written";
    std::string requests;
    for (const std::string& request : answerAll()) requests += lettered(request) + "; ";
    EXPECT_EQ(requests, row.requests);
    EXPECT_FALSE(program().saving.isBusy());
    EXPECT_EQ(lettered(shortened(job->url.text())), row.url);
    EXPECT_EQ(job->customIconDigest, job->iconStoreName()) << "follows the file";
    EXPECT_EQ(job->isToBeReadAgain(), row.now != row.before);
    EXPECT_TRUE(program().revisions.revisions().find(job->url.text()));
    EXPECT_EQ(shell.count("saveCompleted"), 1U);
    EXPECT_EQ(shell.count("showDisplay"), 1U);
    EXPECT_FALSE(fs::exists(roots.applicationSupport / "Moves.plist"));
    program().actions.save(job);  // before the scan
    EXPECT_THAT(answerAll(), Each(Not(HasSubstr("drop")))) << "it moves once";
    EXPECT_EQ(lettered(shortened(job->url.text())), row.url);
    settle();
    EXPECT_EQ(program().catalogue.jobs().size(), row.exists && !row.before.isSystem() ? 1U : 0U) << "after a scan";
  }
}

/// It would unload the whole session.
TEST_F(ActionControllerSaveTest, AnEmptyLabelIsNeverSent) {
  for (const auto& [kind, label] :
       {std::pair(Kind::localDaemon, "old"), std::pair(Kind::userAgent, ""), std::pair(Kind::localDaemon, "")}) {
    restart();
    const auto file =
        write(kind, "job.plist", testdata::jobText(label, {{"ProgramArguments", propertylist::Array{"/bin/ls"}}}));
    const auto job = Launchd::read(testdata::bytes(file), URL::file(file), kind, {}, console);
    job->plist().name.clear();
    program().actions.save(job);
    EXPECT_EQ(helpers.requests.back().text("label"), "ls");
    answerLast();
  }
}

TEST_F(ActionControllerSaveTest, TwoNewJobsWithTheSameNameGetDifferentFilesAfterOnePassword) {
  helpers.isHandshakeHeld = true;
  std::vector<std::shared_ptr<Launchd>> jobs;
  for (int i = 0; i < 2; ++i) {
    jobs.push_back(Launchd::read(testdata::jobText("a", {{"Program", "/bin/ls"}}), URL::address("new"),
                                 Kind::localDaemon, {}, console));
    jobs.back()->isNewFile = true;
    program().actions.save(jobs.back());
  }
  EXPECT_THAT(asked(), IsEmpty());
  helpers.authorise();
  EXPECT_THAT(asked(), ElementsAre("root writeAndLoad local/LaunchDaemons/a.plist as a",
                                   "root writeAndLoad local/LaunchDaemons/a#.plist as a"));
  helpers.requests[1].reply({});
  EXPECT_TRUE(program().saving.isBusy()) << "the first goes on";
  helpers.requests[0].reply({});
  EXPECT_FALSE(program().saving.isBusy());
}

TEST_F(ActionControllerSaveTest, AScanIsPublishedOnlyAfterTheSave) {
  const auto job = jobOf(Kind::userAgent, Kind::userAgent, false, true);
  program().fetcher.fetchJobs();
  program().actions.save(job);
  settle();
  EXPECT_TRUE(program().saving.isBusy());
  EXPECT_THAT(program().catalogue.jobs(), IsEmpty()) << "no scan is published during a save";
  answerLast();
  EXPECT_FALSE(program().saving.isBusy());
  settle();
  EXPECT_EQ(program().catalogue.jobs().size(), 1U);
}

TEST_F(ActionControllerSaveTest, ASaveEndsTheEditOfItsOwnJobOnly) {
  testdata::RecordingShell shell(program());
  const auto saved = jobOf(Kind::userAgent, Kind::userAgent, false, true);
  writeJob(Kind::userAgent, "other");
  scan();
  program().actions.save(saved);
  program().selection.select(jobNamed("other"));
  program().editing.setUnsavedChanges(true);
  shell.events.clear();
  answerLast();
  EXPECT_TRUE(program().editing.hasUnsavedChanges());
  EXPECT_EQ(shell.count("saveCompleted") + shell.count("showDisplay"), 0U);
  EXPECT_EQ(program().selection.job()->name, "other");
}

TEST_F(ActionControllerSaveTest, AMoveToANameThatABrokenLinkHasTakenGetsAnotherName) {
  const auto job = jobOf(Kind::localDaemon, Kind::localAgent, true, true);
  fs::create_directories(path(Kind::localDaemon));
  fs::create_symlink("/nowhere/at/all", path(Kind::localDaemon, "job.plist"));
  program().actions.save(job);
  (void)answerAll();
  EXPECT_EQ(shortened(job->url.text()), "local/LaunchDaemons/job#.plist") << "in the same folder";
}

TEST_F(ActionControllerSaveTest, AJobThatCantBeSavedIsRefusedBeforeAnyRequest) {
  testdata::RecordingShell shell(program());
  const auto system = jobOf(Kind::systemDaemon, Kind::systemDaemon, false, true);
  const auto withoutFolder = jobOf(Kind::loginItemApplication, Kind::userAgent, false, true);
  const auto notUtf8 = jobOf(Kind::userAgent, Kind::userAgent, false, true);
  notUtf8->url = URL::file(path(Kind::userAgent, "j\xF6.plist"));
  for (const auto& job : {system, withoutFolder, notUtf8}) {
    const std::string before = job->url.text();
    interface.errors.clear();
    interface.alerts.clear();
    bool isWritten = true;
    program().actions.save(job, [&](bool result) { isWritten = result; });
    EXPECT_FALSE(isWritten);
    EXPECT_EQ(interface.errors.size() + interface.alerts.size(), 1U);
    EXPECT_EQ(job->url.text(), before);
    EXPECT_FALSE(program().saving.isBusy());
  }
  program().actions.deleteConfirmed(*notUtf8);
  EXPECT_THAT(asked(), IsEmpty());
  EXPECT_THAT(program().revisions.revisions(), testing::SizeIs(0));
  ASSERT_TRUE(foundation.defaults.set(Defaults::Key::editSystemJobs, true));
  program().actions.save(system);
  EXPECT_THAT(asked(), ElementsAre("root writeAndLoad system/LaunchDaemons/job.plist as job"));
}

TEST_F(ActionControllerSaveTest, ALinkIsWrittenAtItsTargetAndRemovedAsItself) {
  const auto target = folder.write("elsewhere/real.plist", testdata::jobText("job", {{"Program", "/bin/ls"}}));
  const auto link = path(Kind::localAgent, "job.plist");
  fs::create_directories(link.parent_path());
  fs::create_symlink(folder.path() / "elsewhere/real.plist", link);
  const auto job = Launchd::read(testdata::bytes(link), URL::file(link), Kind::localAgent, {}, console);
  program().actions.save(job);
  EXPECT_EQ(answerAll().at(1), "root write elsewhere/real.plist as job");
  job->kind = Kind::localDaemon;
  program().actions.save(job);
  EXPECT_EQ(answerAll().at(1),
            "root writeAndLoad local/LaunchDaemons/job.plist drop local/LaunchAgents/job.plist as job");
}

TEST_F(ActionControllerSaveTest, DeletionAsksTheHelperOfTheKindAndClearsTheSelection) {
  testdata::RecordingShell shell(program());
  const struct {
    Kind kind;
    Requests requests;
    Requests afterReply = {};
  } table[] = {
      {Kind::userAgent, {"user delete drop user/LaunchAgents/job.plist as job"}},
      {Kind::localAgent,
       {"root delete drop local/LaunchAgents/job.plist as job"},
       {"user unload local/LaunchAgents/job.plist as job"}},
      {Kind::localDaemon, {"root delete drop local/LaunchDaemons/job.plist as job"}},
  };
  for (const auto& row : table) {
    const auto job = jobOf(row.kind, row.kind, false, true);
    program().selection.select(job);
    program().actions.deleteConfirmed(*job);
    EXPECT_EQ(asked(), row.requests);
    answerLast();
    queue.runDue();
    EXPECT_EQ(asked(), row.afterReply);
    EXPECT_FALSE(program().selection.job());
    if (!row.afterReply.empty()) answerLast();
  }
}

TEST_F(ActionControllerSaveTest, TheReplyToADeletionAffectsTheDeletedJobOnly) {
  testdata::RecordingShell shell(program());
  const auto deleted = jobOf(Kind::userAgent, Kind::userAgent, false, true);
  writeJob(Kind::userAgent, "other");
  scan();
  struct Row {
    std::string selected;
    bool hasUnsavedChanges, staysSelected;
  };
  for (const Row& row :
       {Row{"other", true, true}, Row{"other", false, true}, Row{"job", true, true}, Row{"job", false, false}}) {
    program().selection.select(jobNamed(row.selected));
    program().actions.deleteConfirmed(*deleted);
    program().editing.setUnsavedChanges(row.hasUnsavedChanges);
    shell.events.clear();
    answerLast();
    EXPECT_EQ(program().editing.hasUnsavedChanges(), row.hasUnsavedChanges);
    EXPECT_EQ(program().selection.job() != nullptr, row.staysSelected) << row.selected << row.hasUnsavedChanges;
    EXPECT_EQ(shell.count("saveCompleted") + shell.count("showDisplay"), 0U);
    EXPECT_EQ(shell.count("clearDetail"), row.staysSelected ? 0U : 1U);
  }
}

TEST_F(ActionControllerSaveTest, TheGivenLoginItemIsDeletedWhateverIsSelected) {
  loginItems.ownItems = {{"a", "/1", {}, {}}, {"b", "/not \xff UTF-8", {}, {}}, {"b", "/3", {}, {}}};
  scan();
  const Jobs jobs = program().catalogue.jobs();
  program().selection.select(jobNamed("a"));
  program().actions.deleteConfirmed(*jobs.at(2));
  EXPECT_THAT(asked(), IsEmpty());
  settle();
  EXPECT_THAT(names(program().catalogue.jobs()), ElementsAre("a", "b"));
  EXPECT_EQ(jobNamed("b")->run(), "/not \xff UTF-8");

  loginItems.removalFailure = Error{.code = Error::Code::NotPermitted, .message = "can't delete", .file = "/a"};
  program().actions.deleteConfirmed(*jobs.at(0));
  EXPECT_EQ(interface.errors.size(), 1U);
}

}  // namespace
}  // namespace mirvel
