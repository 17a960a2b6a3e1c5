#include <gmock/gmock.h>

#include "core/catalogue/CustomIcons.h"
#include "core/editor/IconEditing.h"
#include "core/editor/NotesStore.h"
#include "support/ProgramFixture.h"
#include "support/RecordingShell.h"

namespace mirvel {
namespace {

using testing::SizeIs;

class NotesAndIconsTest : public testdata::ProgramFixture {
 protected:
  std::string noteOnDisk(const URL& job) {
    testdata::VirtualQueue other;
    return NotesStore(folder.path(), other, foundation.storeTroubles).note(job);
  }

  const std::filesystem::path store = folder.path() / "Notes.plist";
  const URL a = URL::file("/a.plist");
  const URL b = URL::file("/b.plist");
};

TEST_F(NotesAndIconsTest, ANoteIsWrittenOnceTheTypingPauses) {
  NotesStore notes(folder.path(), queue, foundation.storeTroubles);
  EXPECT_EQ(notes.note(a), "");
  notes.setNote(a, "x");
  queue.runFor(0.29);
  notes.setNote(a, "xy\n\tz");
  notes.setNote(b, "");
  queue.runFor(0.29);
  EXPECT_FALSE(std::filesystem::exists(store));
  queue.runFor(0.02);
  EXPECT_EQ(noteOnDisk(a), "xy\n\tz");
  EXPECT_EQ(notes.note(b), "");
}

TEST_F(NotesAndIconsTest, ANoteMovesWithItsJobAndNoneIsLost) {
  struct Row {
    std::optional<std::string> moved;
    std::optional<std::string> there;
    std::string both;
  };
  for (const Row& row : {Row{"mine", {}, "mine"}, Row{"mine", "old", "mine\n\nold"}, Row{"mine", "", "mine"},
                         Row{"", "old", "old"}, Row{{}, "old", "old"}, Row{"same", "same", "same"}}) {
    std::filesystem::remove(store);
    {
      NotesStore notes(folder.path(), queue, foundation.storeTroubles);
      if (row.moved) notes.setNote(a, *row.moved);
      if (row.there) notes.setNote(b, *row.there);
      notes.jobMoved(a, b);
      EXPECT_FALSE(notes.has(a));
    }
    EXPECT_EQ(noteOnDisk(b), row.both);
    EXPECT_EQ(noteOnDisk(a), "");
  }
}

TEST_F(NotesAndIconsTest, AnIconIsStoredUnderThePathOfItsJobAndShown) {
  writeJob(Kind::userAgent, "a");
  scan();
  testdata::RecordingShell shell(program());
  const auto job = jobNamed("a");
  program().selection.select(job);
  const auto file = customIconFile(roots.applicationSupport, *job->iconStoreName());

  program().icons.setIcon(job, "picture");
  EXPECT_EQ(testdata::bytes(file), "picture");
  EXPECT_EQ(job->customIcon, Image::file(file));
  program().icons.setIcon(job, "another");
  EXPECT_EQ(testdata::bytes(file), "another");
  EXPECT_EQ(shell.count("updateIcon"), 2U);
  EXPECT_EQ(shell.count("reloadJob a"), 2U);
  EXPECT_FALSE(program().editing.hasUnsavedChanges()) << "it is no part of the job's file";

  program().icons.removeIcon(job);
  EXPECT_FALSE(std::filesystem::exists(file));
  EXPECT_EQ(job->customIcon, std::nullopt);
  EXPECT_EQ(shell.count("updateIcon"), 3U);
}

TEST_F(NotesAndIconsTest, AFailureIsReportedAndChangesNothing) {
  writeJob(Kind::userAgent, "a");
  scan();
  (void)folder.write("support", "a file in the place of the folder");
  program().icons.setIcon(jobNamed("a"), "picture");
  EXPECT_THAT(interface.errors, SizeIs(1));
  EXPECT_EQ(jobNamed("a")->customIcon, std::nullopt);
}

}  // namespace
}  // namespace mirvel
