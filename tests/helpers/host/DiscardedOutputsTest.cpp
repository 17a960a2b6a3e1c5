#include "helpers/host/DiscardedOutputs.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace mirvel::host {
namespace {

TEST(DiscardedOutputsTest, AnEndlessWriterIsReadAtIntervals) {
  PollLoop loop;
  DiscardedOutputs discarded(loop);
  Pipe pipe = Pipe::make();
  ASSERT_EQ(::fcntl(pipe.read.number(), F_SETFL, O_NONBLOCK), 0);
  const FileDescriptor reader(::dup(pipe.read.number()));
  const auto unread = [&] {
    int bytes = 0;
    return ::ioctl(reader.number(), FIONREAD, &bytes) == 0 ? bytes : -1;
  };
  discarded.add(std::move(pipe.read));
  for (int turn = 0; turn < 3; ++turn) {
    EXPECT_FALSE(discarded.wakeAt());
    ASSERT_EQ(::write(pipe.write.number(), "one", 3), 3);
    loop.turn(0);
    EXPECT_EQ(unread(), 0);
    ASSERT_EQ(::write(pipe.write.number(), "more", 4), 4);
    loop.turn(0);
    EXPECT_EQ(unread(), 4) << "the pause";
    ASSERT_TRUE(discarded.wakeAt());
    discarded.settle(*discarded.wakeAt() - std::chrono::milliseconds(1));
    loop.turn(0);
    EXPECT_EQ(unread(), 4) << "the pause isn't over";
    discarded.settle(*discarded.wakeAt());
    loop.turn(0);
    EXPECT_EQ(unread(), 0);
    discarded.settle(*discarded.wakeAt());
  }
  pipe.write.reset();
  loop.turn(0);
  EXPECT_FALSE(discarded.wakeAt()) << "closed by all writers";
}

}  // namespace
}  // namespace mirvel::host
