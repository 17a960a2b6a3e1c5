#include "core/files/HostMark.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>

#include "support/TestData.h"

namespace mirvel {
namespace {

using State = HostMark::State;
namespace fs = std::filesystem;

class HostMarkTest : public testing::Test {
 protected:
  std::optional<State> state() const { return HostMark::in(folder.path()); }
  HostMark marked() const {
    auto mark = HostMark::set(folder.path(), 0644);
    EXPECT_TRUE(mark);
    return *std::move(mark);
  }

  const testdata::TemporaryFolder folder;
};

TEST_F(HostMarkTest, SaysWhetherTheHostLives) {
  EXPECT_EQ(state(), State::None);
  EXPECT_EQ(HostMark::in(folder.path() / "missing"), State::None);
  {
    const HostMark mark = marked();
    EXPECT_EQ(state(), State::Held);
    EXPECT_EQ(state(), State::Held) << "asking takes no lock";
    EXPECT_EQ(fs::status(folder.path() / ".host").permissions(), fs::perms(0644));
  }
  EXPECT_EQ(state(), State::None);

  Pipe ready = Pipe::make();
  const pid_t host = ::fork();
  if (host == 0) {
    const HostMark mark = marked();
    (void)!::write(ready.write.number(), "", 1);
    ::pause();
  }
  char byte = 0;
  ASSERT_EQ(::read(ready.read.number(), &byte, 1), 1);
  EXPECT_EQ(state(), State::Held);
  ASSERT_EQ(::kill(host, SIGKILL), 0);
  ASSERT_EQ(::waitpid(host, nullptr, 0), host);
  EXPECT_EQ(state(), State::Left);
  const HostMark next = marked();
  EXPECT_EQ(state(), State::Held) << "the next host";
}

TEST_F(HostMarkTest, TheMarkOfAnotherHostIsLeftAlone) {
  HostMark first = marked();
  const HostMark second = marked();
  const FileDescriptor opened(::open(folder.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  EXPECT_FALSE(first.isIn(opened.number()));
  EXPECT_TRUE(second.isIn(opened.number()));
  first = HostMark();
  EXPECT_EQ(state(), State::Held);
  fs::remove(folder.path() / ".host");
  EXPECT_FALSE(second.isIn(opened.number()));
}

TEST_F(HostMarkTest, WhoMayOnlyReadItCantMakeAHostLookAlive) {
  { std::ofstream(folder.path() / ".host") << ""; }
  const FileDescriptor reader(::open((folder.path() / ".host").c_str(), O_RDONLY | O_CLOEXEC));
  struct flock lock {};
  lock.l_type = F_RDLCK;
  ASSERT_EQ(::fcntl(reader.number(), F_SETLK, &lock), 0);
  EXPECT_EQ(state(), State::Left);
  fs::remove(folder.path() / ".host");
  fs::create_symlink("/etc/hosts", folder.path() / ".host");
  EXPECT_EQ(state(), std::nullopt);
}

}  // namespace
}  // namespace mirvel
