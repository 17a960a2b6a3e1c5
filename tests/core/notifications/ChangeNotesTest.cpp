#include "core/notifications/ChangeNotes.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "core/propertylist/Writer.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using propertylist::Dictionary;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class ChangeNotesTest : public testing::Test {
 protected:
  static unsigned modeOf(const fs::path& path) { return static_cast<unsigned>(fs::status(path).permissions()); }

  const testdata::TemporaryFolder folder;
  const fs::path file = folder.path() / "made" / "changes.plist";
  const ChangeNotes notes{file, ChangeNotes::Readers::User};
  const uid_t user = ::geteuid();
};

TEST_F(ChangeNotesTest, NotesAreNumberedAndTheNewestAreKept) {
  EXPECT_THAT(*notes.read(user), IsEmpty());
  for (std::size_t i = 0; i < ChangeNotes::most + 3; ++i) {
    ASSERT_TRUE(notes.add({.user = user, .path = "/a/" + std::to_string(i), .checksum = "sum"}));
  }
  const auto all = notes.read(user);
  ASSERT_TRUE(all);
  ASSERT_THAT(*all, SizeIs(ChangeNotes::most));
  EXPECT_EQ(all->front().path, "/a/3");
  EXPECT_TRUE(
      std::is_sorted(all->begin(), all->end(), [](const auto& a, const auto& b) { return a.number < b.number; }));

  ASSERT_TRUE(notes.withdraw(all->back().number));
  EXPECT_THAT(*notes.read(user), SizeIs(ChangeNotes::most - 1));
}

TEST_F(ChangeNotesTest, TheFilesAreReadableByThoseForWhomTheyAre) {
  const mode_t before = ::umask(0077);
  const ChangeNotes roots(folder.path() / "public" / "changes.plist", ChangeNotes::Readers::Everybody);
  EXPECT_TRUE(roots.add({.path = "/a"}));
  ::umask(0);
  EXPECT_TRUE(notes.add({.path = "/a"}));
  ::umask(before);
  EXPECT_EQ(modeOf(folder.path() / "public"), 0755U);
  EXPECT_EQ(modeOf(folder.path() / "public" / "changes.plist"), 0644U);
  EXPECT_EQ(modeOf(folder.path() / "public" / "changes.lock"), 0600U) << "nobody else can hold the lock";
  EXPECT_EQ(modeOf(file.parent_path()), 0700U);
  EXPECT_EQ(modeOf(file), 0600U);
}

TEST_F(ChangeNotesTest, ARecordThatOthersCouldHaveWrittenIsntUsed) {
  ASSERT_TRUE(notes.add({.path = "/a"}));
  ::chmod(file.c_str(), 0666);
  const auto read = notes.read(user);
  ASSERT_FALSE(read);
  EXPECT_EQ(read.error().code, Error::Code::NotTrusted);
}

TEST_F(ChangeNotesTest, EntriesOfAnotherFormAreSkipped) {
  const std::string path = "/a\xff\n";
  const ChangeNote good{.number = 5, .user = 7, .path = path, .isRemoval = true};
  const auto entryWith = [](const char* key, propertylist::Value value) {
    Dictionary entry{
        {"Number", 1}, {"User", 0}, {"Path", propertylist::Data{"/a"}}, {"Removal", false}, {"Checksum", ""}};
    entry.set(key, std::move(value));
    return entry;
  };
  propertylist::Array entries{1,
                              entryWith("Number", 0),
                              entryWith("Number", std::int64_t{1} << 60U),
                              entryWith("User", -1),
                              entryWith("Path", propertylist::Data{"a"}),
                              entryWith("Path", propertylist::Data{"/" + std::string(5000, 'a')}),
                              entryWith("Removal", 1),
                              entryWith("Checksum", 1)};
  const auto written = readChangeNotes(writeChangeNotes({good}));
  EXPECT_THAT(*written, ElementsAre(good));
  const auto read = readChangeNotes(propertylist::writeBinary(Dictionary{{"Notes", entries}}));
  ASSERT_TRUE(read);
  EXPECT_THAT(*read, IsEmpty());
  EXPECT_FALSE(readChangeNotes("damaged"));
}

TEST_F(ChangeNotesTest, ADamagedRecordIsReplacedByTheNextNote) {
  folder.write("made/changes.plist", "damaged");
  EXPECT_FALSE(notes.read(user));
  ASSERT_TRUE(notes.add({.path = "/a"}));
  EXPECT_THAT(*notes.read(user), SizeIs(1));
}

}  // namespace
}  // namespace mirvel
