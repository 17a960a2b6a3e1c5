#include "core/editor/NotesStore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
    return NotesStore(folder.path(), other).note(job);
  }

  const testdata::TemporaryFolder folder;
  const fs::path file = folder.path() / "Notes.plist";
  testdata::VirtualQueue queue;
  const URL a = URL::file("/a.plist");
  const URL b = URL::file("/b.plist");
};

TEST_F(NotesStoreTest, IsWrittenOnceTheTypingPauses) {
  NotesStore notes(folder.path(), queue);
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

TEST_F(NotesStoreTest, WhatWasTypedLastIsWrittenAtTheEnd) {
  std::optional<NotesStore> notes(std::in_place, folder.path(), queue);
  notes->setNote(a, "last words");
  notes.reset();
  queue.runFor(1);
  EXPECT_EQ(noteOnDisk(a), "last words");
}

TEST_F(NotesStoreTest, APathThatIsNoTextHasANoteLikeAnyOther) {
  const URL odd = URL::file("/a\xff.plist");
  {
    NotesStore notes(folder.path(), queue);
    notes.setNote(a, "even");
    notes.setNote(odd, "odd");
  }
  EXPECT_EQ(noteOnDisk(a), "even");
  EXPECT_EQ(noteOnDisk(odd), "odd");
}

TEST_F(NotesStoreTest, AStoreThatCantBeReadIsntReplaced) {
  fs::create_directories(file / "folder");
  {
    NotesStore notes(folder.path(), queue);
    notes.setNote(a, "new");
  }
  EXPECT_TRUE(fs::is_directory(folder.path() / "Notes.plist.damaged" / "folder"));
  EXPECT_EQ(noteOnDisk(a), "new");
}

TEST_F(NotesStoreTest, ADamagedStoreIsKeptBesideTheNewOne) {
  (void)folder.write("Notes.plist", "my valuable notes");
  NotesStore notes(folder.path(), queue);
  EXPECT_EQ(notes.note(a), "");
  notes.setNote(a, "new");
  queue.runFor(1);
  EXPECT_EQ(noteOnDisk(a), "new");
  EXPECT_EQ(testdata::bytes(folder.path() / "Notes.plist.damaged"), "my valuable notes");
}

}  // namespace
}  // namespace mirvel
