#include "helpers/host/OutputLines.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include "core/process/FileDescriptor.h"
#include "helpers/host/JobRunner.h"

namespace mirvel::host {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

std::string repeated(std::size_t count) {
  return std::string(count, 'x');
}

TEST(OutputLines, AreTheSameHoweverTheOutputIsCut) {
  constexpr std::size_t longest = OutputLines::longestLine;
  const struct {
    std::string output;
    std::vector<std::string> lines;
    std::string rest;
  } rows[] = {
      {"", {}, ""},
      {"one\n\nthree\nfour", {"one", "", "three"}, "four"},
      {"\n", {""}, ""},
      {std::string("a\0b\x01\xff\r\n", 7), {std::string("a\0b\x01\xff\r", 6)}, ""},
      {repeated(longest) + "\n", {repeated(longest)}, ""},
      {repeated(longest) + "\n\n", {repeated(longest), ""}, ""},
      {repeated(longest + 1) + "\n", {repeated(longest), "x"}, ""},
      {repeated(2 * longest), {repeated(longest)}, repeated(longest)},
  };
  for (const auto& row : rows) {
    for (std::size_t cut = 0; cut <= row.output.size(); ++cut) {
      OutputLines output;
      auto lines = output.add(std::string_view(row.output).substr(0, cut));
      for (auto& line : output.add(std::string_view(row.output).substr(cut))) lines.push_back(std::move(line));
      ASSERT_EQ(lines, row.lines) << cut;
      EXPECT_EQ(output.isWithinLine(), !row.rest.empty());
      EXPECT_EQ(output.finish(), row.rest.empty() ? std::vector<std::string>() : std::vector{row.rest});
      EXPECT_THAT(output.finish(), ElementsAre());
    }
  }
}

TEST(OutputBudget, CountsWhatItDropsUntilThePeriodIsOver) {
  OutputBudget budget;
  const std::string half = repeated(OutputBudget::size / 2);
  EXPECT_TRUE(budget.admit(half, 5s));
  EXPECT_TRUE(budget.admit(half, 6s)) << "exactly the size";
  EXPECT_EQ(budget.droppedAt(), std::nullopt);
  EXPECT_FALSE(budget.admit("a\nb\nc", 7s));
  EXPECT_TRUE(budget.isExceeded(7s));
  EXPECT_FALSE(budget.admit("\n", 14999ms));
  EXPECT_FALSE(budget.admit("d", 14999ms));
  EXPECT_EQ(budget.takeDropped(14999ms), std::nullopt);
  EXPECT_EQ(budget.droppedAt(), 15s);
  EXPECT_FALSE(budget.isExceeded(15s));
  EXPECT_EQ(budget.takeDropped(15s), (OutputBudget::Dropped{.lines = 4, .bytes = 7}));
  EXPECT_EQ(budget.takeDropped(), std::nullopt);
  EXPECT_TRUE(budget.admit("again\n", 15s));
}

TEST(OutputBudget, KeepsNothingAfterTheFirstBytesThatExceedIt) {
  OutputBudget budget;
  EXPECT_TRUE(budget.admit(repeated(OutputBudget::size - 1), 0s));
  EXPECT_FALSE(budget.admit("xx", 1s));
  EXPECT_FALSE(budget.admit("\n", 2s)) << "which would fit, but in the middle of what is dropped";
  budget.skip(1000);
  const auto dropped = budget.takeDropped();
  EXPECT_EQ(dropped, (OutputBudget::Dropped{.lines = 1, .bytes = 1003, .uncounted = 1000}));
  EXPECT_EQ(dropped->text(), "[dropped 1 line or more (1003 bytes): the job prints too much]");
}

TEST(DiscardedOutputs, AnEndlessWriterIsReadAtIntervals) {
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
