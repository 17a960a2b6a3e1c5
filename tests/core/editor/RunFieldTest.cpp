#include <gmock/gmock.h>

#include "core/editor/RunField.h"
#include "core/session/Shell.h"
#include "support/ProgramFixture.h"
#include "support/RecordingShell.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using testing::IsEmpty;

class RunFieldTest : public testdata::ProgramFixture {};

TEST_F(RunFieldTest, TheFileToOfferIsTheSelectedOneOrTheScript) {
  const struct {
    std::vector<fs::path> files;
    std::string selected;
    std::optional<fs::path> offered;
  } table[] = {
      {{}, "", std::nullopt},
      {{"/usr/bin/python3", "/tmp/a.py"}, "", "/tmp/a.py"},
      {{"/bin/sh", "/tmp/a.sh", "/tmp/b"}, "", "/tmp/a.sh"},
      {{"/usr/bin/python3"}, "", "/usr/bin/python3"},
      {{"/Users/me/a.sh", "/tmp/b"}, "", "/Users/me/a.sh"},
      {{"/Users/me/a.sh", "/tmp/b"}, "/tmp/b", "/tmp/b"},
      {{"/Users/me/a.sh", "/tmp/b"}, "/tmp", "/Users/me/a.sh"},
      {{"/bin/sh", "/tmp/a.sh"}, "/bin/sh", "/bin/sh"},
  };
  for (const auto& row : table) EXPECT_EQ(RunMenu::offeredFile(row.files, row.selected), row.offered);
}

TEST_F(RunFieldTest, TheMenuOffersWhatTheProgramCanDo) {
  testdata::RecordingShell shell(program());
  const auto menu = [&](const std::string& command) {
    return RunMenu::of(program().shell, program().repairs, command, "");
  };
  EXPECT_EQ(menu("/bin/sh ~/x"), (RunMenu{false, roots.home / "x", false}));
  program().shell.sheets[Sheet::Test] = [] {};
  program().shell.editScript = [](const URL&) {};
  EXPECT_EQ(menu(""), RunMenu());
  EXPECT_EQ(menu("ls"), (RunMenu{true, std::nullopt, false}));
  EXPECT_EQ(menu("/bin/ls"), (RunMenu{true, "/bin/ls", true}));
  shell.isSheetUp = true;
  EXPECT_FALSE(menu("/bin/ls").offersTest);
}

TEST_F(RunFieldTest, FilesAreQuotedAsOneArgument) {
  EXPECT_EQ(fileWord("/a/b(c)"), "/a/b(c)");
  EXPECT_EQ(fileWord("/a/b'c"), "\"/a/b'c\"");
  EXPECT_EQ(fileWord("/a b"), "\"/a b\"");
  EXPECT_EQ(withCommand("", "/x"), "/x");
  EXPECT_EQ(withCommand("/bin/sh", "/x"), "/bin/sh /x");
  EXPECT_EQ(withCommand("/bin/sh ", "/x"), "/bin/sh /x");
  const auto script = folder.write("my script.txt", "#!/bin/sh\n");
  ASSERT_TRUE(foundation.defaults.set(Defaults::Key::automaticHelp, false));
  EXPECT_EQ(chosenCommand(program().repairs, script), "\"" + script.string() + "\"");
}

TEST_F(RunFieldTest, MissingFilesAreFoundBesideTheMainThreadAndTheLastQuestionCounts) {
  FileCheck check(foundation.defaults, program().repairs, fileQueue, queue);
  using Answers = std::vector<std::vector<fs::path>>;
  Answers answers;
  const auto ask = [&](const std::string& command) {
    check.check(command, [&](const std::vector<fs::path>& missing) { answers.push_back(missing); });
  };
  const auto script = folder.write("there", "").string();
  ask(script + " /no/such/file ls");
  EXPECT_THAT(answers, IsEmpty());
  fileQueue.runAll();
  queue.runDue();
  EXPECT_EQ(answers, (Answers{{"/no/such/file"}}));

  answers.clear();
  ask("/no/such/a");
  fileQueue.runAll();  // its answer is under way
  ask("/no/such/b");
  ask(script);
  fileQueue.runAll();
  queue.runDue();
  EXPECT_EQ(answers, (Answers{{}}));

  answers.clear();
  ask("/no/such/a");
  ask("ls");
  EXPECT_EQ(answers, (Answers{{}})) << "names no file";
  fileQueue.runAll();
  queue.runDue();
  EXPECT_EQ(answers, (Answers{{}}));

  answers.clear();
  ASSERT_TRUE(foundation.defaults.setShowInvalidData(false));
  ask("/no/such/a");
  EXPECT_EQ(answers, (Answers{{}})) << "the user doesn't want to know";
}

}  // namespace
}  // namespace mirvel
