#include <gmock/gmock.h>

#include "helpers/host/JobLog.h"
#include "support/TestData.h"

namespace mirvel::host {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono;
using testing::ElementsAre;

constexpr std::size_t unbounded = SIZE_MAX;

JobLog::Moment moment(double seconds) {
  return JobLog::Moment(milliseconds(static_cast<std::int64_t>(seconds * 1000)));
}

std::vector<std::string> messages(const std::vector<messages::LogLine>& lines) {
  std::vector<std::string> result;
  for (const auto& line : lines) result.push_back(line.message);
  return result;
}

TEST(OutputLines, AreAssembledFromPieces) {
  const std::string text = "one\n\nthree\nfour";
  for (std::size_t cut = 0; cut <= text.size(); ++cut) {
    OutputLines output;
    auto lines = output.add(std::string_view(text).substr(0, cut), 0ms);
    for (auto& line : output.add(std::string_view(text).substr(cut), 0ms)) lines.push_back(line);
    EXPECT_THAT(lines, ElementsAre("one", "", "three"));
    EXPECT_THAT(output.finish(), ElementsAre("four"));
    EXPECT_THAT(output.finish(), ElementsAre());
  }
}

TEST(OutputLines, AreBrokenAtTheMaximumLength) {
  OutputLines output;
  const auto lines = output.add(std::string(OutputLines::longestLine + 1, 'x') + '\n', 0ms);
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0].size(), OutputLines::longestLine);
  EXPECT_EQ(lines[1], "x");
}

TEST(OutputLines, AreDroppedBeyondTheAllowanceOfAPeriod) {
  OutputLines output;
  const std::string piece(OutputLines::allowance / 2, '\n');
  EXPECT_EQ(output.add(piece, 0ms).size(), piece.size());
  EXPECT_EQ(output.add(piece, 1ms).size(), piece.size());
  EXPECT_EQ(output.add("more\n", 2ms).size(), 1U) << "which says that the rest is dropped";
  EXPECT_THAT(output.add("more\n", 3ms), ElementsAre());
  EXPECT_THAT(output.add("again\n", OutputLines::period + 1ms), ElementsAre("again"));
}

TEST(JobLog, FindsLinesByTimeAndTextInOrder) {
  const testdata::TemporaryFolder folder;
  const JobLog log(folder.path() / "new");
  EXPECT_THAT(log.find(moment(0), "", unbounded), ElementsAre());
  ASSERT_TRUE(log.add("b", moment(10), {"b: first", "b: second"}));
  ASSERT_TRUE(log.add("a", moment(10.5), {"a: with\nline end"}));
  ASSERT_TRUE(log.add("b", moment(20), {"b: third"}));
  EXPECT_THAT(messages(log.find(moment(0), "", unbounded)),
              ElementsAre("b: first", "b: second", "a: with line end", "b: third"));
  EXPECT_THAT(messages(log.find(moment(10.5), "", unbounded)), ElementsAre("a: with line end", "b: third"));
  EXPECT_THAT(messages(log.find(moment(0), "b:", unbounded)), ElementsAre("b: first", "b: second", "b: third"));
  EXPECT_THAT(messages(log.find(moment(0), "", 50)), ElementsAre("b: third")) << "the newest that fit";
  EXPECT_DOUBLE_EQ(log.find(moment(10.5), "a:", unbounded)[0].seconds, 10.5);
}

TEST(JobLog, KeepsTheNewestLinesOfAJobAndAllOfTheOthers) {
  const testdata::TemporaryFolder folder;
  const JobLog log(folder.path());
  ASSERT_TRUE(log.add("quiet", moment(1), {"quiet: only line"}));
  const std::string line(1000, 'x');
  for (int i = 0; i < 1000; ++i) ASSERT_TRUE(log.add("loud", moment(2 + i), {std::to_string(i) + line}));
  std::uintmax_t size = 0;
  for (const auto& file : fs::directory_iterator(folder.path())) size += fs::file_size(file);
  EXPECT_LT(size, 3 * JobLog::fileSize);
  const auto lines = log.find(moment(0), "", unbounded);
  EXPECT_EQ(lines.front().message, "quiet: only line");
  EXPECT_EQ(lines.back().message, "999" + line);
  EXPECT_GT(lines.size(), JobLog::fileSize / 1100) << "rotated lines are included";
}

TEST(JobLog, AcceptsManyLinesAtOnce) {
  const testdata::TemporaryFolder folder;
  const JobLog log(folder.path());
  constexpr int count = 60000;
  std::vector<std::string> lines;
  for (int i = 0; i < count; ++i) lines.push_back("job[1]: " + std::to_string(i));
  ASSERT_TRUE(log.add("job", moment(1), lines));
  ASSERT_TRUE(log.add("job", moment(2), {"job[1]: the end"}));
  const auto found = messages(log.find(moment(0), "job", unbounded));
  ASSERT_GT(found.size(), 1000U);
  EXPECT_EQ(found.back(), "job[1]: the end");
  EXPECT_EQ(found[found.size() - 2], "job[1]: 59999");
  for (const auto& file : fs::directory_iterator(folder.path())) EXPECT_LT(fs::file_size(file), 2 * JobLog::fileSize);
}

TEST(JobLog, ReadsTheEndOfAFileThatIsTooLarge) {
  const testdata::TemporaryFolder folder;
  std::string text;
  while (text.size() < 10 * JobLog::fileSize) text += "12.000 job[1]: line\n";
  folder.write("job.log", text + "13.000 job[1]: last\n");
  const auto found = messages(JobLog(folder.path()).find(moment(0), "job", unbounded));
  ASSERT_GT(found.size(), 1000U);
  EXPECT_EQ(found.front(), "job[1]: line");
  EXPECT_EQ(found.back(), "job[1]: last");
}

TEST(JobLog, StaysInItsFolderWhateverTheLabelIs) {
  const testdata::TemporaryFolder folder;
  const JobLog log(folder.path() / "log");
  const std::vector<std::string> labels = {
      "../x", "/etc/x", "..", ".", "a b\n", std::string("a\0b", 3), std::string(5000, 'l'), "ü"};
  for (const auto& label : labels) EXPECT_TRUE(log.add(label, moment(1), {"line"})) << label;
  EXPECT_EQ(log.find(moment(0), "line", unbounded).size(), labels.size());
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()), 1);
}

TEST(JobLog, SkipsLinesOfAnotherForm) {
  const testdata::TemporaryFolder folder;
  const JobLog log(folder.path());
  folder.write("job.log", "garbage\n\n12 good\nnan bad\n99999999999999999999");
  EXPECT_THAT(messages(log.find(moment(0), "", unbounded)), ElementsAre("good"));
}

}  // namespace
}  // namespace mirvel::host
