#include "core/editor/NotesStore.h"

#include <gmock/gmock.h>

#include <optional>

#include "support/TestData.h"
#include "support/VirtualQueue.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;

class NotesStoreTest : public testing::Test {
 protected:
  std::string noteOnDisk(const URL& job) {
    testdata::VirtualQueue other;
    return NotesStore(folder.path(), other, troubles).note(job);
  }

  const testdata::TemporaryFolder folder;
  const fs::path file = folder.path() / "Notes.plist";
  testdata::VirtualQueue queue;
  StoreTroubles troubles;
  const URL a = URL::file("/a.plist");
  const URL b = URL::file("/b.plist");
};

TEST_F(NotesStoreTest, IsWrittenOnceTheTypingPauses) {
  NotesStore notes(folder.path(), queue, troubles);
  EXPECT_EQ(notes.note(a), "");
  notes.setNote(a, "x");
  queue.runFor(0.29);
  notes.setNote(a, "xy\n\tz");
  notes.setNote(b, "");
  queue.runFor(0.29);
  EXPECT_FALSE(fs::exists(file));
  queue.runFor(0.02);
  EXPECT_EQ(noteOnDisk(a), "xy\n\tz");
  EXPECT_EQ(notes.note(b), "");
}

TEST_F(NotesStoreTest, PendingChangesAreWrittenAtTheEnd) {
  std::optional<NotesStore> notes(std::in_place, folder.path(), queue, troubles);
  notes->setNote(a, "last words");
  notes.reset();
  queue.runFor(1);
  EXPECT_EQ(noteOnDisk(a), "last words");
}

TEST_F(NotesStoreTest, APathThatIsNotUtf8CanHaveANote) {
  const URL odd = URL::file("/a\xff.plist");
  {
    NotesStore notes(folder.path(), queue, troubles);
    notes.setNote(a, "even");
    notes.setNote(odd, "odd");
  }
  EXPECT_EQ(noteOnDisk(a), "even");
  EXPECT_EQ(noteOnDisk(odd), "odd");
}

TEST_F(NotesStoreTest, AStoreThatCantBeReadIsLeftAloneAndTheNoteGoesOutOnceItCan) {
  fs::create_directories(file / "folder");
  NotesStore notes(folder.path(), queue, troubles);
  notes.setNote(a, "new");
  queue.runFor(1);
  EXPECT_TRUE(fs::is_directory(file / "folder"));
  EXPECT_EQ(notes.note(a), "new");
  fs::remove_all(file);
  notes.setNote(b, "newer");
  queue.runFor(1);
  EXPECT_EQ(noteOnDisk(a), "new");
}

TEST_F(NotesStoreTest, EveryDamagedStoreIsKeptBesideTheNewOne) {
  for (const auto& [damage, rescue] : {std::pair{"my valuable notes", "Notes.plist.damaged-1"},
                                       std::pair{"my second notes", "Notes.plist.damaged-2"}}) {
    (void)folder.write("Notes.plist", damage);
    NotesStore notes(folder.path(), queue, troubles);
    EXPECT_EQ(notes.note(a), "");
    notes.setNote(a, "new");
    queue.runFor(1);
    EXPECT_EQ(noteOnDisk(a), "new");
    EXPECT_EQ(testdata::bytes(folder.path() / rescue), damage);
  }
  EXPECT_EQ(testdata::bytes(folder.path() / "Notes.plist.damaged-1"), "my valuable notes");
}

TEST_F(NotesStoreTest, ANoteMovesWithItsJobAndNoneIsLost) {
  struct Row {
    std::optional<std::string> moved;
    std::optional<std::string> there;
    std::string both;
  };
  for (const Row& row : {Row{"mine", {}, "mine"}, Row{"mine", "old", "mine\n\nold"}, Row{"mine", "", "mine"},
                         Row{"", "old", "old"}, Row{{}, "old", "old"}, Row{"same", "same", "same"}}) {
    fs::remove(file);
    {
      NotesStore notes(folder.path(), queue, troubles);
      if (row.moved) notes.setNote(a, *row.moved);
      if (row.there) notes.setNote(b, *row.there);
      notes.jobMoved(a, b);
      EXPECT_FALSE(notes.has(a));
    }
    EXPECT_EQ(noteOnDisk(b), row.both);
    EXPECT_EQ(noteOnDisk(a), "");
  }
}

}  // namespace
}  // namespace mirvel
