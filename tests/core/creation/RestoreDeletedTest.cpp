#include "core/creation/RestoreDeleted.h"

#include "core/creation/Creation.h"
#include "core/creation/CreationFixture.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using propertylist::Dictionary;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class RestoreDeletedTest : public CreationFixture {
 protected:
  /// Asks for the deletion of the job "a", and consents.
  void askToDelete() {
    scan();
    program().deletion.confirm(jobNamed("a"));
    interface.answerSheet(Interface::defaultButton);
  }
  void deleteJob() {
    askToDelete();
    answer(true, [this] { fs::remove(jobNamed("a")->url.path()); });
  }
  /// Answers the last request.
  void answer(
      bool isDone, const std::function<void()>& whatTheHelperDoes = [] {}) {
    ASSERT_FALSE(helpers.requests.empty());
    const auto request = helpers.requests.back();
    if (isDone) whatTheHelperDoes();
    request.reply(isDone ? Dictionary{} : Dictionary{{"error", Dictionary{{"domain", "x"}, {"code", 1}}}});
    settle();
  }
  /// The former path of a job "a" that has been deleted.
  fs::path deletedJob() {
    const auto file = writeJob(Kind::userAgent, "a");
    deleteJob();
    return file;
  }
  std::vector<std::string> rows() {
    std::vector<std::string> result;
    for (const auto& row : deletedJobRows(program().creationContext)) result.push_back(row.name + " " + row.file);
    return result;
  }
  void restore() { restoreDeleted(program().creationContext, deletedJobRows(program().creationContext).at(0).id); }
  void restoreFirst() {
    helpers.requests.clear();
    restore();
  }
  const testdata::FakeHelpers::Request& request() const { return helpers.requests.front(); }
};

TEST_F(RestoreDeletedTest, ADeletedJobComesBackAsItWas) {
  ASSERT_TRUE(foundation.defaults.set(Defaults::Key::editSystemJobs, true));
  ASSERT_TRUE(foundation.defaults.setShowSystemJobs(true));
  struct Row {
    Kind kind;
    bool isPrivileged;
    int request;
  };
  for (const Row& row : {Row{Kind::userAgent, false, 1}, Row{Kind::localAgent, true, 0},
                         Row{Kind::systemAgent, true, 0}, Row{Kind::localDaemon, true, 1}}) {
    const std::string content = "<!-- mine -->" + testdata::jobText("a", {{"Own key", 1}});
    const auto file = write(row.kind, "a.plist", content);
    fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write);
    deleteJob();
    ASSERT_FALSE(fs::exists(file));
    EXPECT_THAT(rows(), ElementsAre("a " + file.string()));
    const std::string id = deletedJobRows(program().creationContext).at(0).id;
    restoreFirst();
    restoreDeleted(program().creationContext, id);  // isn't done twice
    ASSERT_THAT(helpers.requests, SizeIs(1));
    EXPECT_EQ(request().isPrivileged, row.isPrivileged);
    EXPECT_EQ(request().kind(), row.request);
    EXPECT_EQ(request().text("path"), fs::canonical(file.parent_path()) / "a.plist");
    EXPECT_EQ(request().text("string"), content);
    EXPECT_EQ(request().at("mode"), propertylist::Value(0600));
    EXPECT_THAT(rows(), IsEmpty()) << "it can't be restored a second time";
    const auto count = helpers.requests.size();
    answer(true, [&] { write(row.kind, "a.plist", content); });
    EXPECT_THAT(rows(), IsEmpty());
    ASSERT_TRUE(program().selection.job());
    EXPECT_EQ(program().selection.job(), jobNamed("a"));
    EXPECT_EQ(helpers.requests.size() > count, row.request == 0) << "loaded in the user's session";
    EXPECT_TRUE(row.request != 0 || (helpers.requests.back().kind() == 5 && !helpers.requests.back().isPrivileged));
    fs::remove(file);
    scan();
  }
}

TEST_F(RestoreDeletedTest, AJobIsKeptUntilItIsWritten) {
  (void)deletedJob();
  restoreFirst();
  answer(false);
  EXPECT_THAT(rows(), SizeIs(1));
  helpers.requests.front().failure({.code = Error::Code::Io, .message = "the helper died"});
  EXPECT_THAT(rows(), SizeIs(1));
}

TEST_F(RestoreDeletedTest, AJobWhoseDeletionFailedIsListedOnlyIfItsFileIsGone) {
  for (const bool isGone : {false, true}) {
    const auto file = writeJob(Kind::userAgent, "a");
    askToDelete();
    if (isGone) fs::remove(file);
    answer(false);
    if (!isGone) writeJob(Kind::userAgent, "a", {{"Nice", 1}});
    EXPECT_THAT(rows(), SizeIs(isGone ? 1 : 0));
  }
}

TEST_F(RestoreDeletedTest, AJobForWhoseDeletionNoHelperWasAskedIsntListedEvenAfterItChanges) {
  helpers.canConnect = false;
  helpers.isHandshakeHeld = true;
  for (const Kind kind : {Kind::userAgent, Kind::localDaemon}) {
    writeJob(kind, "a");
    askToDelete();
    if (kind == Kind::localDaemon) helpers.privilegedReply({.isCancelled = true});
    EXPECT_THAT(helpers.requests, IsEmpty());
    fs::remove(path(kind, "a.plist"));
    EXPECT_THAT(rows(), IsEmpty());
  }
}

TEST_F(RestoreDeletedTest, AFileDeletedByADisconnectedHelperIsKept) {
  const auto file = writeJob(Kind::localDaemon, "a");
  askToDelete();
  helpers.requests.back().failure({.code = Error::Code::Io, .message = "the helper has ended"});
  settle();
  EXPECT_THAT(rows(), IsEmpty()) << "it is still there";
  fs::remove(file);
  EXPECT_THAT(rows(), SizeIs(1));
}

TEST_F(RestoreDeletedTest, TheFileGetsItsFormerPathUnlessThatIsInUse) {
  const auto occupy = [this] { write(Kind::localDaemon, "a.plist", testdata::jobText("another")); };
  const struct {
    const char* description;
    std::function<void()> before, duringThePasswordDialog;
    bool hasFormerPath;
  } table[] = {
      {"unused", [] {}, [] {}, true},
      {"without a folder", [this] { fs::remove_all(path(Kind::localDaemon)); }, [] {}, true},
      {"in use", occupy, [] {}, false},
      {"in use by then", [] {}, occupy, false},
  };
  for (const auto& row : table) {
    SCOPED_TRACE(row.description);
    const auto file = writeJob(Kind::localDaemon, "a");
    deleteJob();
    program().shell.endPrivilegedConnection();
    row.before();
    scan();
    helpers.isHandshakeHeld = true;
    restoreFirst();
    row.duringThePasswordDialog();
    helpers.authorise();
    helpers.isHandshakeHeld = false;
    const fs::path place = helpers.requests.back().text("path");
    EXPECT_EQ(place.parent_path(), fs::weakly_canonical(file.parent_path()));
    EXPECT_EQ(place.filename() == "a.plist", row.hasFormerPath);
    EXPECT_EQ(place.extension(), ".plist");
    answer(true);
    program().selection.select(nullptr);
    fs::remove_all(file.parent_path());
    scan();
  }
}

TEST_F(RestoreDeletedTest, AnotherJobWithTheSameLabelIsntStopped) {
  (void)deletedJob();
  const auto other = write(Kind::userAgent, "other.plist", testdata::jobText("a"));
  scan();
  restoreFirst();
  EXPECT_THAT(helpers.requests, IsEmpty());
  ASSERT_THAT(interface.sheets, SizeIs(1));
  EXPECT_THAT(interface.sheets.front().first.informativeText, HasSubstr(other.string()));
  EXPECT_EQ(interface.sheets.front().first.safeButton, Interface::alternateButton);
  interface.answerSheet(Interface::alternateButton);
  EXPECT_THAT(helpers.requests, IsEmpty());

  restoreFirst();
  interface.answerSheet(Interface::defaultButton);
  ASSERT_THAT(helpers.requests, SizeIs(1));
  EXPECT_EQ(request().kind(), 0) << "written, and not loaded";
  EXPECT_EQ(*helpers.written().find("Disabled"), propertylist::Value(true));
}

TEST_F(RestoreDeletedTest, AJobRestoredAsDisabledIsForgottenAndItsCommentsAreKept) {
  const std::string plain = testdata::jobText("a"), commented = "<!-- mine -->" + plain;
  for (const std::string& content : {plain, commented}) {
    write(Kind::userAgent, "a.plist", content);
    deleteJob();
    const auto other = write(Kind::userAgent, "other.plist", testdata::jobText("a"));
    scan();
    restoreFirst();
    const fs::path kept = roots.applicationSupport / "Kept Files";
    const bool isTold = interface.sheets.front().first.informativeText.find(kept.string()) != std::string::npos;
    EXPECT_EQ(isTold, content == commented);
    interface.answerSheet(Interface::defaultButton);
    answer(true);
    EXPECT_THAT(rows(), IsEmpty());
    EXPECT_EQ(fs::exists(kept), content == commented);
    if (content == commented) {
      EXPECT_EQ(testdata::bytes(*fs::directory_iterator(kept)), commented);
    }
    fs::remove(other);
    scan();
  }
}

TEST_F(RestoreDeletedTest, ANewJobWithTheSameNameGetsAnotherFile) {
  for (const bool isRestoredFirst : {true, false}) {
    const auto file = writeJob(Kind::userAgent, "a");
    deleteJob();
    helpers.requests.clear();
    if (isRestoredFirst) restore();
    saveNewJob(program().creationContext,
               makeNewJob(program().creationContext, {{"Label", "a"}, {"Program", "/bin/ls"}}, URL::file("/new"),
                          Kind::userAgent));
    if (!isRestoredFirst) restore();
    ASSERT_THAT(helpers.requests, SizeIs(2));
    EXPECT_NE(helpers.requests[0].text("path"), helpers.requests[1].text("path"));
    for (const auto& request : std::vector(helpers.requests)) request.reply({});
    program().selection.select(nullptr);
    scan();
  }
}

TEST_F(RestoreDeletedTest, AJobThatIsBeingEditedByThenIsntDeleted) {
  helpers.isHandshakeHeld = true;
  for (const bool isDuringThePasswordDialog : {false, true}) {
    interface.errors.clear();
    writeJob(Kind::localDaemon, "a");
    scan();
    program().deletion.confirm(jobNamed("a"));
    program().editing.setUnsavedChanges(!isDuringThePasswordDialog);
    interface.answerSheet(Interface::defaultButton);
    program().editing.setUnsavedChanges(true);
    if (isDuringThePasswordDialog) helpers.authorise();
    EXPECT_THAT(helpers.requests, IsEmpty());
    EXPECT_THAT(interface.errors, SizeIs(1));
    program().editing.setUnsavedChanges(false);
  }
}

TEST_F(RestoreDeletedTest, QuittingWaitsForADeletion) {
  writeJob(Kind::localDaemon, "a");
  askToDelete();
  EXPECT_FALSE(program().termination.applicationShouldTerminate());
  EXPECT_THAT(helpers.ended, IsEmpty()) << "the helper is still needed";
  answer(true);
  EXPECT_EQ(shell.count("terminate"), 1U);
  EXPECT_TRUE(program().termination.applicationShouldTerminate());
}

TEST_F(RestoreDeletedTest, ABinaryFileComesBackWithTheSameValues) {
  const Dictionary content{
      {"Label", "a"}, {"Program", "/bin/ls"}, {"Own", propertylist::Data{std::string("\0\xff", 2)}}};
  write(Kind::userAgent, "a.plist", propertylist::writeBinary(content));
  deleteJob();
  restoreFirst();
  EXPECT_EQ(helpers.written(), content);
}

TEST_F(RestoreDeletedTest, TheQuestionSaysUntilWhenTheJobCanBeRestored) {
  loginItems.ownItems = {{"own", "/own/item", {}, {}}};
  writeJob(Kind::userAgent, "a");
  scan();
  EXPECT_THAT(program().deletion.consequence(*jobNamed("a")), HasSubstr("“Restore Deleted”"));
  EXPECT_THAT(program().deletion.consequence(*jobNamed("a")), HasSubstr("1970")) << "30 days after the clock's now";
  EXPECT_EQ(program().deletion.consequence(*jobNamed("own")), "You can’t undo this action.");
  for (const Kind kind : {Kind::privilegedHelperTool, Kind::localStartupItem, Kind::systemStartupItem}) {
    EXPECT_EQ(program().deletion.consequence(Job(kind, "x", "", "", URL::file("/x"))), "You can’t undo this action.");
  }
}

TEST_F(RestoreDeletedTest, AFileThatCantBeKeptIsDeletedOnlyAfterAnotherQuestion) {
  (void)folder.write("support", "a file where the folder should be");
  writeJob(Kind::userAgent, "a");
  scan();
  for (const int button : {Interface::alternateButton, Interface::defaultButton}) {
    program().deletion.confirm(jobNamed("a"));
    interface.answerSheet(Interface::defaultButton);
    ASSERT_THAT(interface.sheets, SizeIs(1));
    EXPECT_EQ(interface.sheets.front().first.safeButton, Interface::alternateButton);
    EXPECT_THAT(interface.sheets.front().first.informativeText, HasSubstr(roots.applicationSupport.string()));
    EXPECT_THAT(helpers.requests, IsEmpty());
    interface.answerSheet(button);
  }
  EXPECT_THAT(helpers.requests, SizeIs(1));
}

}  // namespace
}  // namespace mirvel
