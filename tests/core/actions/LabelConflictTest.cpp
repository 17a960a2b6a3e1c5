#include "core/actions/LabelConflict.h"

#include <gmock/gmock.h>

#include "core/catalogue/Launchd.h"
#include "core/creation/Creation.h"
#include "support/ProgramFixture.h"
#include "support/RecordingShell.h"

namespace mirvel {
namespace {

using propertylist::Dictionary;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class LabelConflictTest : public testdata::ProgramFixture {
 protected:
  std::shared_ptr<Launchd> jobOf(Kind kind, const std::string& file, const std::string& label,
                                 bool isDisabled = false) {
    Dictionary keys{{"ProgramArguments", propertylist::Array{"/bin/ls"}}};
    if (isDisabled) keys.set("Disabled", true);
    return Launchd::read(testdata::jobText(label, keys),
                         URL::file(path(kind == Kind::extraFolder ? Kind(Kind::userAgent) : kind, file)), kind, {},
                         console);
  }
  bool isDisabledInRequest() {
    const Dictionary content = helpers.written();
    const auto* const disabled = content.find("Disabled");
    return disabled && *disabled == propertylist::Value(true);
  }
};

TEST_F(LabelConflictTest, OnlyEnabledJobsInTheSameDomainAreInConflict) {
  constexpr Kind user = Kind::userAgent, agent = Kind::localAgent, daemon = Kind::localDaemon;
  const struct {
    Kind kind, other;
    std::string otherLabel;
    bool isDisabled, isOtherDisabled, conflicts;
  } table[] = {
      {user, user, "job", false, false, true},
      {user, user, "Job", false, false, false},
      {user, user, "job", true, false, false},
      {user, user, "job", false, true, false},
      {user, agent, "job", false, false, true},
      {user, Kind::systemAgent, "job", false, false, true},
      {user, daemon, "job", false, false, false},
      {user, Kind::systemDaemon, "job", false, false, false},
      {agent, user, "job", false, false, true},
      {agent, daemon, "job", false, false, true},
      {daemon, agent, "job", false, false, true},
      {daemon, user, "job", false, false, false},
      {daemon, Kind::systemDaemon, "job", false, false, true},
      {daemon, Kind::privilegedHelperTool, "job", false, false, false},
      {user, Kind::extraFolder, "job", false, false, false},
  };
  for (const auto& row : table) {
    const auto job = jobOf(row.kind, "job.plist", "job", row.isDisabled);
    const auto other = jobOf(row.other, "other.plist", row.otherLabel, row.isOtherDisabled);
    EXPECT_EQ(conflictingJob(*job, "job", {job, other}), row.conflicts ? other : nullptr) << "row " << &row - table;
  }
  const auto job = jobOf(user, "job.plist", "job");
  EXPECT_FALSE(conflictingJob(*job, "job", {jobOf(user, "job.plist", "job")})) << "its own file";
  job->isNewFile = true;
  EXPECT_TRUE(conflictingJob(*job, "job", {jobOf(user, "job.plist", "job")})) << "a copy of that file";
}

TEST_F(LabelConflictTest, ASaveAsksAndNamesTheOtherFile) {
  testdata::RecordingShell shell(program());
  (void)writeJob(Kind::userAgent, "job", {{"Program", "/bin/ls"}});
  (void)writeJob(Kind::userAgent, "other", {{"Program", "/bin/ls"}});
  scan();
  const auto job = std::dynamic_pointer_cast<Launchd>(jobNamed("job"));
  program().selection.select(job);
  program().editing.markJobChanged()->plist().name = "other";
  std::vector<bool> ended;
  const auto save = [&] { program().actions.save(job, [&ended](bool isWritten) { ended.push_back(isWritten); }); };

  save();
  EXPECT_THAT(helpers.requests, IsEmpty());
  ASSERT_THAT(interface.sheets, SizeIs(1));
  const Alert question = interface.sheets.front().first;
  EXPECT_THAT(question.message, HasSubstr("“other”"));
  EXPECT_THAT(question.informativeText, HasSubstr(path(Kind::userAgent, "other.plist").string()));
  EXPECT_EQ(question.returnAnswer(), Interface::defaultButton);
  EXPECT_EQ(question.escapeAnswer(), Interface::defaultButton);
  interface.answerSheet(Interface::defaultButton);
  EXPECT_THAT(helpers.requests, IsEmpty());
  EXPECT_THAT(ended, testing::ElementsAre(false));
  EXPECT_TRUE(program().editing.hasUnsavedChanges());
  EXPECT_FALSE(job->isDisabled());

  save();
  interface.answerSheet(Interface::alternateButton);
  ASSERT_THAT(helpers.requests, SizeIs(1));
  EXPECT_EQ(helpers.requests.front().kind(), 0) << "not loaded";
  EXPECT_TRUE(isDisabledInRequest());
  helpers.requests.front().failure(Error{.code = Error::Code::Io, .message = "full"});
  EXPECT_TRUE(job->isDisabled());
  program().editing.undo();
  EXPECT_FALSE(job->isDisabled()) << "it is an undo step";
}

TEST_F(LabelConflictTest, ACopyThatIsDeletedDoesntStopTheOtherJob) {
  (void)write(Kind::localAgent, "copy.plist", testdata::jobText("job", {{"Disabled", true}}));
  for (const bool isOtherThere : {false, true}) {
    if (isOtherThere) (void)writeJob(Kind::localAgent, "job");
    scan();
    const auto copy = program().catalogue.jobAt(URL::file(path(Kind::localAgent, "copy.plist")));
    ASSERT_TRUE(copy);
    helpers.requests.clear();
    program().actions.deleteConfirmed(*copy);
    helpers.requests.at(0).reply({});
    EXPECT_EQ(helpers.requests.at(0).body.find("label") != nullptr, !isOtherThere);
    EXPECT_THAT(helpers.requests, SizeIs(isOtherThere ? 1 : 2)) << "the agent is unloaded";
  }
}

TEST_F(LabelConflictTest, ANewJobOfATakenLabelIsAskedAboutToo) {
  testdata::RecordingShell shell(program());
  (void)writeJob(Kind::localDaemon, "ls", {{"Program", "/bin/ls"}});
  scan();
  for (const int answer : {Interface::defaultButton, Interface::alternateButton}) {
    // Without a label it will get that of its program.
    const auto made =
        makeNewJob(program().creationContext, {{"Label", ""}, {"ProgramArguments", propertylist::Array{"/bin/ls"}}},
                   URL::file("/"), Kind::localDaemon);
    std::vector<bool> ended;
    saveNewJob(program().creationContext, made, [&ended](bool isWritten) { ended.push_back(isWritten); });
    ASSERT_THAT(interface.sheets, SizeIs(1));
    interface.answerSheet(answer);
    const bool isCancelled = answer == Interface::defaultButton;
    EXPECT_THAT(helpers.requests, SizeIs(isCancelled ? 0 : 1));
    EXPECT_EQ(program().selection.job(), isCancelled ? nullptr : std::shared_ptr<Job>(made));
    EXPECT_EQ(ended, isCancelled ? std::vector<bool>{false} : std::vector<bool>{});
  }
  EXPECT_TRUE(isDisabledInRequest());
  EXPECT_EQ(helpers.requests.front().text("label"), "ls");
}

}  // namespace
}  // namespace mirvel
