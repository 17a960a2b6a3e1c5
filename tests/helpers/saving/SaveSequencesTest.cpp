#include <gmock/gmock.h>
#include <unistd.h>

#include <algorithm>
#include <map>

#include "core/catalogue/Launchd.h"
#include "helpers/action/RequestHandler.h"
#include "helpers/jobfiles/JobFolders.h"
#include "helpers/jobfiles/UserJobFiles.h"
#include "helpers/privileged/GuardedJobFiles.h"
#include "support/ProgramFixture.h"
#include "support/RecordingShell.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using propertylist::Dictionary;

Error because(const char* why) {
  return {.code = Error::Code::Io, .message = why};
}

/// Records which jobs are loaded, and their contents, instead of running them.
class MemoryHost final : public JobHost {
 public:
  struct Loaded {
    fs::path file;
    std::string content;
  };
  std::map<std::string, Loaded> jobs;

  Result<void> load(const fs::path& file) override {
    const std::string content = testdata::bytes(file);
    const auto label = labelOf(content);
    if (!label) return label.error();
    return jobs.emplace(*label, Loaded{file, content}).second ? Result<void>() : because("the label is loaded already");
  }
  Result<void> unload(const fs::path& file, const std::optional<std::string>& label) override {
    std::erase_if(jobs, [&](const auto& job) { return label ? job.first == *label : job.second.file == file; });
    return {};
  }
  Result<Ended> waitForEnd(const std::string&, std::chrono::seconds) override { return Ended{.hasEnded = true}; }
  Result<void> control(const fs::path&, const std::string&, messages::Control::Order) override { return {}; }
  Result<messages::LogLines> log(const messages::LogQuery&, Cancellation&) override { return messages::LogLines(); }
};

/// The outcome of a request.
enum class Fate {
  Done,
  Refused,      ///< an error reply, with nothing done
  DiesBefore,   ///< the helper dies
  DiesHalfway,  ///< after writing the new file, and before removing the old one
  DiesAfter,
};

/// The outcome of two log queries, one to each helper, that are in flight during a save.
enum class Beside { None, Answered, Cancelled };
/// Before which request of the save they end; `Last`: after all of them.
enum class When { First, Second, Last };

enum class Password { Right, Wrong, Cancelled };

/// A program that saves real files through the real handlers; requests wait until the test decides their outcome. "u",
/// "a" and "d" are the user's agents, everyone's agents and the daemons; 1 is the original job and 2 the edited one.
class SaveSequencesTest : public testdata::ProgramFixture {
 protected:
  using Request = testdata::FakeHelpers::Request;

  static Kind kindOf(char letter) {
    return letter == 'u' ? Kind::userAgent : letter == 'a' ? Kind::localAgent : Kind::localDaemon;
  }

  void SetUp() override {
    if (::geteuid() != 0) GTEST_SKIP() << "only root can give files to root";
    for (const char letter : {'u', 'a', 'd'}) fs::create_directories(path(kindOf(letter)));
  }

  void TearDown() override {
    m_shell.reset();
    endProgram();
  }

  /// Starts with a job that is loaded, selected, and edited to have another kind, label and command.
  void edit(char before, char now) {
    for (const char letter : {'u', 'a', 'd'}) {
      for (const auto& entry : fs::directory_iterator(path(kindOf(letter)))) fs::remove(entry.path());
    }
    session.jobs.clear();
    system.jobs.clear();
    interface.errors.clear();
    const auto file = writeJob(kindOf(before), "job", {{"ProgramArguments", propertylist::Array{"/bin/old"}}});
    ASSERT_TRUE((before == 'd' ? system : session).load(file));
    TearDown();
    helpers.requests.clear();
    helpers.privilegedReply = {};
    m_shell = std::make_unique<testdata::RecordingShell>(program());
    scan();
    job = std::dynamic_pointer_cast<Launchd>(jobNamed("job"));
    program().selection.select(job);
    Launchd* const edited = program().editing.markJobChanged();
    edited->kind = kindOf(now);
    edited->plist().run = "/bin/new";
    edited->plist().name = "renamed";
    record = job->plist().clone();
    url = job->url.text();
  }

  /// The files, the loaded jobs, and whether the job is still being edited, such as "u1a2|u1|edited". A job that is
  /// loaded by the wrong host has "!" instead of its kind.
  std::string state() {
    std::string files, loaded;
    const auto version = [](const std::string& content) {
      return content.find("/bin/new") == std::string::npos ? '1' : '2';
    };
    for (const char letter : {'u', 'a', 'd'}) {
      for (const auto& entry : fs::directory_iterator(path(kindOf(letter)))) {
        files += {letter, version(testdata::bytes(entry.path()))};
      }
      for (const auto* host : {&session, &system}) {
        for (const auto& [label, entry] : host->jobs) {
          if (entry.file.parent_path() != path(kindOf(letter)).parent_path()) continue;
          const bool isRightHost = (letter == 'd') == (host == &system);
          loaded += {isRightHost ? letter : '!', version(entry.content)};
        }
      }
    }
    return files + '|' + loaded + '|' + (isEdited() ? "edited" : "saved");
  }

  /// Also checks that everything else agrees with this.
  bool isEdited() {
    const bool isEdited = program().editing.hasUnsavedChanges();
    EXPECT_FALSE(program().saving.isBusy());
    EXPECT_FALSE(fs::exists(roots.applicationSupport / "Moves.plist"));
    EXPECT_EQ(program().selection.job(), job);
    EXPECT_EQ(m_shell->count("saveCompleted"), isEdited ? 0U : 1U);
    if (isEdited) {
      EXPECT_EQ(job->url.text(), url);
      EXPECT_EQ(job->plist(), record);
      EXPECT_TRUE(program().editing.canUndo());
    } else {
      EXPECT_TRUE(fs::exists(job->url.path()));
    }
    return isEdited;
  }

  static bool isWaiting(const Request& request) { return request.reply && !request.isCancelled; }
  static bool isAboutFiles(const Request& request) { return isWaiting(request) && request.kind() != 9; }
  static bool isQuery(const Request& request) { return isWaiting(request) && request.kind() == 9; }
  std::size_t count() const {
    return static_cast<std::size_t>(std::count_if(helpers.requests.begin(), helpers.requests.end(), isAboutFiles));
  }
  /// Takes the first such request; its reply can send another one.
  Request take(bool (*isMeant)(const Request&)) {
    const auto found = std::find_if(helpers.requests.begin(), helpers.requests.end(), isMeant);
    const Request request = *found;
    found->reply = nullptr;
    return request;
  }
  Dictionary handle(const Request& request) {
    return (request.isPrivileged ? rootHandler : userHandler).handle(request.body);
  }
  void answer(Fate fate) {
    Request request = take(isAboutFiles);
    if (fate == Fate::DiesHalfway) {
      request.body.remove("deletePath");
      request.body.set("kind", 0);
    }
    Dictionary reply{{"error", Dictionary{{"domain", "MirvelActionErrorDomain"}, {"code", 4}}}};
    if (fate != Fate::Refused && fate != Fate::DiesBefore) reply = handle(request);
    if (fate == Fate::Done || fate == Fate::Refused) return request.reply(reply);
    for (Request& other : helpers.requests) {
      if (isWaiting(other) && other.isPrivileged == request.isPrivileged) other.reply = nullptr;
    }
    request.failure(because("the helper has ended"));
  }

  /// Saves with this outcome of one request, and success of all others.
  std::string saveWith(std::size_t step, Fate fate, Beside beside = Beside::None, When when = When::Last) {
    const auto queries = startQueries(beside);
    if (when == When::First) endQueries(beside, queries);
    helpers.isHandshakeHeld = password != Password::Right;
    program().actions.save(job);
    if (helpers.isHandshakeHeld && helpers.privilegedReply) {
      helpers.privilegedReply({.isCancelled = password == Password::Cancelled});
    }
    for (std::size_t i = 0; count() > 0; ++i) {
      EXPECT_EQ(count(), 1U) << "each step waits for the one before it";
      if (when == When::Second && i == 1) endQueries(beside, queries);
      answer(i == step ? fate : Fate::Done);
      queue.runDue();
    }
    endQueries(beside, queries);
    for (const Request& request : helpers.requests) EXPECT_TRUE(request.reply || !request.isCancelled) << "too late";
    EXPECT_EQ(m_endedQueries.size(), queries.size()) << "each ends once";
    return state();
  }

  std::vector<Action::Shared> startQueries(Beside beside) {
    m_endedQueries.clear();
    if (beside == Beside::None) return {};
    std::vector<Action::Shared> queries;
    for (const bool isRoots : {false, true}) {
      queries.push_back(Action::log({.period = std::chrono::seconds(60), .searchString = "job"}));
      queries.back()->ended = [this](bool isDone) { m_endedQueries.push_back(isDone); };
      auto& actions = program().actions;
      EXPECT_TRUE(isRoots ? actions.sendPrivileged(queries.back()) : actions.send(queries.back()));
    }
    return queries;
  }
  void endQueries(Beside beside, const std::vector<Action::Shared>& queries) {
    while (beside == Beside::Answered && std::any_of(helpers.requests.begin(), helpers.requests.end(), isQuery)) {
      const Request query = take(isQuery);
      query.reply(handle(query));
    }
    for (const auto& query : queries) program().actions.cancel(query);  // without effect on one that has ended
  }

  MemoryHost session, system;
  const JobFolders users = JobFolders::ofUser(roots);
  const JobFolders machines = JobFolders::ofMachine(roots);
  UserJobFiles userFiles{users};
  GuardedJobFiles rootFiles{machines, console, GuardedJobFiles::User{::geteuid(), users}};
  RequestHandler userHandler{{.files = userFiles, .host = session, .uninstall = [] { return Result<void>(); }}};
  RequestHandler rootHandler{
      {.files = rootFiles, .host = system, .uninstall = [] { return Result<void>(); }, .trustsLabels = false}};
  Password password = Password::Right;
  std::shared_ptr<Launchd> job;
  jobfile::Plist record;
  std::string url;

 private:
  std::unique_ptr<testdata::RecordingShell> m_shell;
  std::vector<bool> m_endedQueries;
};

TEST_F(SaveSequencesTest, WhicheverStepFailsTheJobIsInOnePlaceAndLoadedOrEdited) {
  struct Row {
    char before, now;
    std::size_t step;
    std::string refused, diesBefore, diesAfter;
  };
  const Row table[] = {
      {'u', 'u', 0, "u1|u1|edited", "u1|u1|edited", "u2|u2|edited"},
      // unload, write and remove, load
      {'u', 'a', 0, "u1|u1|edited", "u1|u1|edited", "u1|u1|edited"},
      {'u', 'a', 1, "u1|u1|edited", "u1|u1|edited", "a2|a2|saved"},
      {'u', 'a', 2, "a2||saved", "a2||saved", "a2|a2|saved"},
      // unload, write and remove and load
      {'u', 'd', 0, "u1|u1|edited", "u1|u1|edited", "u1|u1|edited"},
      {'u', 'd', 1, "u1|u1|edited", "u1|u1|edited", "d2|d2|saved"},
      // write, remove, unload, load
      {'a', 'u', 0, "a1|a1|edited", "a1|a1|edited", "a1|a1|edited"},
      {'a', 'u', 1, "a1|a1|edited", "a1|a1|edited", "u2|u2|saved"},
      {'a', 'u', 2, "u2|u2|saved", "u2|u2|saved", "u2|u2|saved"},
      {'a', 'u', 3, "u2||saved", "u2||saved", "u2|u2|saved"},
      // unload, write, load
      {'a', 'a', 0, "a1|a1|edited", "a1|a1|edited", "a1|a1|edited"},
      {'a', 'a', 1, "a1|a1|edited", "a1|a1|edited", "a2|a2|edited"},
      {'a', 'a', 2, "a2||edited", "a2||edited", "a2|a2|edited"},
      // unload, write and remove and load
      {'a', 'd', 0, "a1|a1|edited", "a1|a1|edited", "a1|a1|edited"},
      {'a', 'd', 1, "a1|a1|edited", "a1|a1|edited", "d2|d2|saved"},
      // write, remove, load
      {'d', 'u', 0, "d1|d1|edited", "d1|d1|edited", "d1|d1|edited"},
      {'d', 'u', 1, "d1|d1|edited", "d1|d1|edited", "u2|u2|saved"},
      {'d', 'u', 2, "u2||saved", "u2||saved", "u2|u2|saved"},
      // write and remove, load
      {'d', 'a', 0, "d1|d1|edited", "d1|d1|edited", "a2|a2|saved"},
      {'d', 'a', 1, "a2||saved", "a2||saved", "a2|a2|saved"},
      {'d', 'd', 0, "d1|d1|edited", "d1|d1|edited", "d2|d2|edited"},
  };
  for (const Row& row : table) {
    for (const auto& [fate, expected] :
         {std::pair(Fate::Refused, row.refused), std::pair(Fate::DiesBefore, row.diesBefore),
          std::pair(Fate::DiesAfter, row.diesAfter)}) {
      SCOPED_TRACE(std::string{row.before} + " to " + row.now + ", step " + std::to_string(row.step) + ", fate " +
                   std::to_string(static_cast<int>(fate)));
      for (const Beside beside : {Beside::None, Beside::Answered, Beside::Cancelled}) {
        for (const When when : {When::First, When::Second, When::Last}) {
          if (beside == Beside::None && when != When::Last) continue;
          SCOPED_TRACE("queries " + std::to_string(static_cast<int>(beside)) + std::to_string(static_cast<int>(when)));
          edit(row.before, row.now);
          EXPECT_EQ(saveWith(row.step, fate, beside, when), expected);
          EXPECT_EQ(interface.errors.size(), 1U) << "the user is notified once";
        }
      }
    }
  }
}

TEST_F(SaveSequencesTest, EachPairOfKindsIsSavedOrLeftAloneByThePasswordAndAPrivateFileStaysPrivate) {
  constexpr auto ownersAlone = fs::perms::owner_read | fs::perms::owner_write;
  for (const char before : {'u', 'a', 'd'}) {
    for (const char now : {'u', 'a', 'd'}) {
      SCOPED_TRACE(std::string{before} + " to " + now);
      const std::string saved = std::string{now, '2', '|', now} + "2|saved";
      const std::string left = std::string{before, '1', '|', before} + "1|edited";
      const bool needsNone = before == 'u' && now == 'u';
      for (const auto& [given, errors] :
           {std::pair(Password::Right, 0U), std::pair(Password::Wrong, 1U), std::pair(Password::Cancelled, 0U)}) {
        edit(before, now);
        fs::permissions(job->url.path(), ownersAlone);
        password = given;
        const bool isSaved = needsNone || password == Password::Right;
        EXPECT_EQ(saveWith(99, Fate::Done), isSaved ? saved : left);
        EXPECT_EQ(interface.errors.size(), isSaved ? 0U : errors);
        EXPECT_EQ(job->url.path(), path(kindOf(isSaved ? now : before), "job.plist"));
        EXPECT_EQ(fs::status(job->url.path()).permissions(), ownersAlone);
      }
    }
  }
}

/// The user's helper can remove the old file without a password. Of two files of root's, both remain.
TEST_F(SaveSequencesTest, AMoveOutOfTheUsersFolderThatDiesHalfwayGoesOn) {
  edit('u', 'a');
  EXPECT_EQ(saveWith(1, Fate::DiesHalfway), "a2|a2|saved");
  edit('u', 'd');
  EXPECT_EQ(saveWith(1, Fate::DiesHalfway), "d2||saved");
  EXPECT_EQ(interface.errors.size(), 1U);
  edit('a', 'd');
  EXPECT_EQ(saveWith(1, Fate::DiesHalfway), "a1d2|a1|edited");
  EXPECT_EQ(interface.errors.size(), 2U);
  EXPECT_THAT(interface.errors.back().second + interface.errors.back().first,
              testing::HasSubstr(path(Kind::localDaemon, "job.plist").string()));
}

TEST_F(SaveSequencesTest, ADisabledJobIsNeverLoadedOnItsWayBack) {
  edit('u', 'd');
  (void)writeJob(Kind::userAgent, "job", {{"Disabled", true}});
  session.jobs.clear();
  EXPECT_EQ(saveWith(1, Fate::Refused), "u1||edited");
}

}  // namespace
}  // namespace mirvel
