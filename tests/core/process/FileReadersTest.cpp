#include "core/process/FileReaders.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>

#include "core/process/FileDescriptor.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;

/// A stopped shell in this folder with this argument, which it doesn't open.
class Shell {
 public:
  Shell(const fs::path& folder, const std::string& argument) {
    Pipe untilStarted = Pipe::make();
    m_process = ::fork();
    if (m_process == 0) {
      if (::chdir(folder.c_str()) == 0) {
        ::execl("/bin/sh", "sh", "-c", "kill -STOP $$", argument.c_str(), nullptr);
      }
      ::_exit(127);
    }
    untilStarted.write.reset();
    char ignored = 0;
    EXPECT_EQ(::read(untilStarted.read.number(), &ignored, 1), 0);
  }
  ~Shell() {
    ::kill(m_process, SIGKILL);
    ::waitpid(m_process, nullptr, 0);
  }
  Shell(const Shell&) = delete;
  Shell& operator=(const Shell&) = delete;

  bool isUsing(const fs::path& file) const {
    const auto found = processesWith(file);
    return std::find(found.begin(), found.end(), m_process) != found.end();
  }

 private:
  pid_t m_process = -1;
};

class FileReadersTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!fs::exists("/proc/self/cmdline")) GTEST_SKIP() << "command lines aren’t considered here";
    ::chmod(m_folder.path().c_str(), 0755);
    fs::create_hard_link(m_script, m_folder.path() / "hard");
    fs::create_symlink("script", m_folder.path() / "symbolic");
  }

  const testdata::TemporaryFolder m_folder;
  const fs::path m_script = fs::canonical(m_folder.write("script", "true\n"));
  const fs::path m_home = m_script.parent_path();
  const fs::path m_other = m_folder.write("other/script", "true\n").parent_path();
};

struct Row {
  fs::path folder;
  std::string argument;
  bool isUsed;
};

TEST_F(FileReadersTest, AnArgumentNamesAFileByAnyOfItsLinks) {
  const Row rows[] = {
      {"/", m_script, true},      {"/", m_home / "hard", true}, {"/", m_home / "symbolic", true},
      {m_home, "script", true},   {m_home, "./hard", true},     {m_other, "../symbolic", true},
      {m_other, "script", false}, {m_home, "missing", false},   {m_home, "", false},
  };
  for (const Row& row : rows) {
    const Shell shell(row.folder, row.argument);
    EXPECT_EQ(shell.isUsing(m_script), row.isUsed) << row.argument << " in " << row.folder;
  }
}

/// Another user for the duration of its life.
class Nobody {
 public:
  Nobody() { EXPECT_EQ(::seteuid(65534), 0); }
  ~Nobody() { EXPECT_EQ(::seteuid(0), 0); }
  Nobody(const Nobody&) = delete;
  Nobody& operator=(const Nobody&) = delete;
};

TEST_F(FileReadersTest, AProcessOfAnotherUserCouldBeInAnyFolder) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can become another user";
  const Row rows[] = {
      {m_home, "script", true},    {m_home, "hard", true},       {m_other, "./script", true},
      {m_other, "missing", false}, {"/", m_home / "hard", true}, {"/", m_other / "script", false},
  };
  for (const Row& row : rows) {
    const Shell shell(row.folder, row.argument);
    const Nobody nobody;
    EXPECT_EQ(shell.isUsing(m_script), row.isUsed) << row.argument << " in " << row.folder;
  }
}

}  // namespace
}  // namespace mirvel
