#include "helpers/jobfiles/NotedJobFiles.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/catalogue/Checksum.h"
#include "helpers/jobfiles/JobFolders.h"
#include "helpers/jobfiles/UserJobFiles.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;

class NotedJobFilesTest : public testing::Test {
 protected:
  /// The notes, such as "+a.plist" for content, "*" for any content and "-" for a removal.
  std::string noted() const {
    std::string result;
    const auto all = notes.read(::geteuid());
    EXPECT_TRUE(all);
    for (const ChangeNote& note : *all) {
      EXPECT_EQ(note.user, 7U);
      const bool isContent = note.checksum == Checksum::ofFile("text").text();
      result += (note.isRemoval          ? "-"
                 : note.checksum.empty() ? "*"
                 : isContent             ? "+"
                                         : "?") +
                note.path.filename().string() + " ";
    }
    return result;
  }

  const testdata::TemporaryFolder folder;
  const fs::path a = folder.path() / "a", b = folder.path() / "b";
  const ChangeNotes notes{folder.path() / "record" / "changes.plist", ChangeNotes::Readers::Everybody};
  UserJobFiles inner{JobFolders({folder.path()})};
  NotedJobFiles files{inner, 7, notes};
};

TEST_F(NotedJobFilesTest, EachChangeIsNoted) {
  ASSERT_TRUE(files.write(a, "text", 0777));
  EXPECT_EQ(noted(), "+a ");
  fs::permissions(a, fs::perms{0644});  // whatever the umask
  ASSERT_TRUE(files.move(a, b, "text", 0777));
  EXPECT_EQ(noted(), "+a -a +b ");
  ASSERT_TRUE(files.remove(b));
  EXPECT_EQ(noted(), "+a -a +b -b ");
}

TEST_F(NotedJobFilesTest, NoChecksumTellsOfAPrivateFile) {
  ASSERT_TRUE(files.write(a, "text", 0600));
  ASSERT_TRUE(files.write(a, "text", 0777)) << "an existing file keeps its mode";
  ASSERT_TRUE(files.move(a, b, "text", 0777));
  EXPECT_EQ(noted(), "*a *a -a *b ");
}

TEST_F(NotedJobFilesTest, AChangeThatFailsIsntNoted) {
  folder.write("b", "in the way");
  folder.write("a", "old");
  EXPECT_FALSE(files.move(a, b, "text", 0777));
  EXPECT_FALSE(files.write(folder.path() / "no folder" / "a", "text", 0777));
  EXPECT_FALSE(files.remove(folder.path()));
  EXPECT_EQ(noted(), "");
}

TEST_F(NotedJobFilesTest, ARecordThatCantBeWrittenStopsNothing) {
  folder.write("record", "a file in its place");
  EXPECT_TRUE(files.write(a, "text", 0777));
  EXPECT_EQ(testdata::bytes(a), "text");
}

}  // namespace
}  // namespace mirvel
