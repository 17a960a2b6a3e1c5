#include "core/actions/MoveJournal.h"

#include <gmock/gmock.h>

#include "core/catalogue/Launchd.h"
#include "support/ProgramFixture.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using testing::IsEmpty;
using testing::SizeIs;

/// Ends the program during a move, and starts another one. The requests are carried out as far as they concern files.
class MoveJournalTest : public testdata::ProgramFixture {
 protected:
  /// Moves a job, and ends the program after this number of replies; the next request may have been carried out.
  void moveAndEnd(Kind before, Kind now, std::size_t answers, bool isNextCarriedOut) {
    endProgram();
    for (const Kind kind : {Kind::userAgent, Kind::localAgent, Kind::localDaemon}) fs::remove_all(path(kind));
    const auto file = writeJob(before, "job", {{"ProgramArguments", propertylist::Array{"/bin/ls"}}});
    const auto job = Launchd::read(testdata::bytes(file), URL::file(file), before, {}, console);
    job->kind = now;
    helpers.requests.clear();
    program().actions.save(job);
    for (std::size_t i = 0; i < answers; ++i) {
      carryOut(helpers.requests[i]);
      helpers.requests[i].reply({});
    }
    if (isNextCarriedOut) carryOut(helpers.requests[answers]);
    helpers.requests.clear();
    endProgram();
  }
  void carryOut(const testdata::FakeHelpers::Request& request) {
    if (request.body.find("string")) {
      (void)folder.write(fs::path(request.text("path")).lexically_relative(folder.path()), request.text("string"));
    }
    if (request.body.find("deletePath")) fs::remove(request.text("deletePath"));
  }
  /// The requests that a program sends at its start: "delete u", "load a".
  std::vector<std::string> askedAtStart() {
    program().appDelegate.applicationDidFinishLaunching();
    std::vector<std::string> result;
    for (std::size_t i = 0; i < helpers.requests.size(); ++i) {
      const auto& request = helpers.requests[i];
      EXPECT_FALSE(request.isPrivileged) << "no password is needed";
      const bool isDeletion = request.body.find("deletePath");
      const fs::path file = request.text(isDeletion ? "deletePath" : "path");
      result.push_back((isDeletion ? "delete " : "load ") + letterOf(file));
      EXPECT_EQ(request.kind(), isDeletion ? 2 : 5);
      carryOut(request);
      helpers.requests[i].reply({});
    }
    helpers.requests.clear();
    endProgram();
    return result;
  }
  std::string letterOf(const fs::path& file) const {
    return file.parent_path() == path(Kind::userAgent).parent_path()    ? "u"
           : file.parent_path() == path(Kind::localAgent).parent_path() ? "a"
                                                                        : "d";
  }
  std::string files() const {
    std::string result;
    for (const Kind kind : {Kind::userAgent, Kind::localAgent, Kind::localDaemon}) {
      std::error_code failure;
      for (const auto& entry : fs::directory_iterator(path(kind), failure)) result += letterOf(entry.path());
    }
    return result;
  }

  const fs::path journal = roots.applicationSupport / "Moves.plist";
};

TEST_F(MoveJournalTest, AnInterruptedMoveIsCompletedOrUndoneByTheNextStart) {
  constexpr Kind user = Kind::userAgent, agent = Kind::localAgent, daemon = Kind::localDaemon;
  const struct {
    Kind before, now;
    std::size_t answers;
    bool isNextCarriedOut;
    std::vector<std::string> asked;
    std::string files;
  } table[] = {
      {user, daemon, 0, false, {"load u"}, "u"},  // the job may have been unloaded
      {user, daemon, 0, true, {"load u"}, "u"},   {user, daemon, 1, false, {"load u"}, "u"},
      {user, daemon, 1, true, {}, "d"},           {user, agent, 1, false, {"load u"}, "u"},
      {user, agent, 1, true, {"load a"}, "a"},    {daemon, user, 0, false, {}, "d"},
      {daemon, user, 0, true, {"delete u"}, "d"}, {daemon, user, 1, false, {"delete u"}, "d"},
      {daemon, user, 1, true, {"load u"}, "u"},   {agent, user, 1, false, {"delete u", "load a"}, "a"},
      {agent, user, 1, true, {"load u"}, "u"},
  };
  for (const auto& row : table) {
    SCOPED_TRACE("row " + std::to_string(&row - table));
    moveAndEnd(row.before, row.now, row.answers, row.isNextCarriedOut);
    EXPECT_TRUE(fs::exists(journal));
    EXPECT_EQ(askedAtStart(), row.asked);
    EXPECT_EQ(files(), row.files);
    EXPECT_FALSE(fs::exists(journal));
    EXPECT_THAT(askedAtStart(), IsEmpty()) << "only once";
  }
}

/// The new file is deleted at the next start, unless it has been changed since.
TEST_F(MoveJournalTest, AFailedRollbackOfAMoveToTheUsersFolderIsCompletedByTheNextStart) {
  const propertylist::Dictionary refusal{{"error", propertylist::Dictionary{{"domain", "x"}, {"code", 1}}}};
  for (const bool isChanged : {false, true}) {
    moveAndEnd(Kind::localDaemon, Kind::userAgent, 0, false);
    fs::remove(journal);
    scan();
    const auto job = std::dynamic_pointer_cast<Launchd>(jobNamed("job"));
    job->kind = Kind::userAgent;
    program().actions.save(job);
    carryOut(helpers.requests[0]);
    helpers.requests[0].reply({});
    helpers.requests[1].reply(refusal);  // removes the old file
    ASSERT_EQ(helpers.requests[2].text("deletePath"), path(Kind::userAgent, "job.plist"));
    helpers.requests[2].reply(refusal);
    for (std::size_t i = 3; i < helpers.requests.size(); ++i) helpers.requests[i].reply({});
    EXPECT_FALSE(program().saving.isBusy());
    helpers.requests.clear();
    endProgram();
    if (isChanged) (void)writeJob(Kind::userAgent, "job", {{"Nice", 1}});
    EXPECT_EQ(files(), "ud");
    EXPECT_EQ(askedAtStart(), isChanged ? std::vector<std::string>() : std::vector<std::string>{"delete u"});
    EXPECT_EQ(files(), isChanged ? "ud" : "d");
    EXPECT_FALSE(fs::exists(journal));
  }
}

TEST_F(MoveJournalTest, OnlyTheFileThatMovedIsRemoved) {
  const auto file = writeJob(Kind::userAgent, "job", {{"Nice", 1}});
  const auto rootsFile = writeJob(Kind::localDaemon, "job");
  const std::string checksum = Checksum::ofFile(testdata::bytes(file)).text();
  const MoveJournal::Move move{URL::file(file), URL::file(rootsFile), "job", checksum};
  EXPECT_EQ(remedyFor(move), MoveRemedy::RemoveUsers);
  auto other = move;
  other.label = "another";
  EXPECT_EQ(remedyFor(other), MoveRemedy::LoadUsers) << "root's file is another job's";
  (void)writeJob(Kind::userAgent, "job", {{"Nice", 2}});
  EXPECT_EQ(remedyFor(move), MoveRemedy::None) << "it was edited since";
  fs::remove(file);
  EXPECT_EQ(remedyFor(move), MoveRemedy::LoadRoots);
}

TEST_F(MoveJournalTest, AnEntryOfAnotherVersionIsIgnoredAndKept) {
  (void)folder.write("support/Moves.plist", "<plist><dict><key>/a</key><dict/></dict></plist>");
  MoveJournal moves(roots.applicationSupport, foundation.storeTroubles);
  EXPECT_THAT(moves.unfinished(), IsEmpty());
  ASSERT_TRUE(moves.begin({URL::file("/u/job.plist"), URL::file("/d/job.plist"), "job", "sum"}));
  EXPECT_THAT(moves.unfinished(), SizeIs(1));
  EXPECT_NE(testdata::bytes(journal).find("<key>/a</key>"), std::string::npos);
}

TEST_F(MoveJournalTest, AMoveThatCantBeRecordedIsReportedOnceAndForgotten) {
  fs::create_directories(journal);
  int reports = 0;
  foundation.storeTroubles.setListener([&](const StoreTrouble&) { ++reports; });
  MoveJournal moves(roots.applicationSupport, foundation.storeTroubles);
  EXPECT_THAT(moves.unfinished(), IsEmpty());
  EXPECT_FALSE(moves.begin({URL::file("/u/job.plist"), URL::file("/d/job.plist"), "job", "sum"}));
  EXPECT_EQ(reports, 1);
  fs::remove(journal);
  EXPECT_THAT(moves.unfinished(), IsEmpty());
}

}  // namespace
}  // namespace mirvel
