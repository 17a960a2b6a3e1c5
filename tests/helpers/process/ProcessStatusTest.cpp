#include "helpers/process/ProcessStatus.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace mirvel {
namespace {

TEST(ProcessIdentityTest, ANumberThatIsUsedAgainIsAnotherProcess) {
  const auto own = ProcessIdentity::ofThisProcess();
  EXPECT_EQ(own.id, ::getpid());
  EXPECT_EQ(ProcessIdentity::from(own.text()), own);
  const pid_t child = ::fork();
  if (child == 0) ::_exit(0);
  const auto other = ProcessIdentity::of(child);  // even a zombie has a start time
  ::waitpid(child, nullptr, 0);
  ASSERT_TRUE(other);
  EXPECT_GE(other->start, own.start);
  EXPECT_FALSE(ProcessIdentity::of(child));
  for (const char* text : {"", "5", "5:", ":5", "x:5", "0:5", "-5:5", "99999999999:5"}) {
    EXPECT_FALSE(ProcessIdentity::from(text)) << text;
  }
}

}  // namespace
}  // namespace mirvel
