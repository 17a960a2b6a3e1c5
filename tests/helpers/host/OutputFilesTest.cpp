#include "helpers/host/OutputFiles.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <fstream>
#include <functional>

#include "support/TestData.h"

namespace mirvel::host {
namespace {

namespace fs = std::filesystem;

class OutputFilesTest : public testing::Test {
 protected:
  void append(const char* name, const std::string& text) const {
    std::ofstream(folder.path() / name, std::ios::app) << text;
  }
  fs::path at(const char* name) const { return folder.path() / name; }

  /// What is read now; a bar shows where a line ends because its file was truncated.
  std::string read(OutputFiles& files) const {
    std::string result;
    files.update([&](OutputFiles::File&) { result += '|'; });
    for (auto& file : files.files()) {
      char piece[2];  // in many small pieces
      for (std::size_t count = file.read(piece, 2); count > 0; count = file.read(piece, 2)) result.append(piece, count);
      EXPECT_EQ(file.backlog(), 0U);
    }
    return result;
  }

  testdata::TemporaryFolder folder;
};

TEST_F(OutputFilesTest, AreFollowedWhateverHappensToThem) {
  const auto nothing = [] {};
  const struct {
    const char* name;
    std::function<void()> before, during;
    const char* expected;
  } rows[] = {
      {"appended", [&] { append("out", "old"); }, [&] { append("out", "new"); }, "new"},
      {"created", nothing, [&] { append("out", "new"); }, "new"},
      {"untouched", [&] { append("out", "old"); }, nothing, ""},
      {"truncated", [&] { append("out", "long"); }, [&] { std::ofstream(at("out")) << "new"; }, "|new"},
      {"renamed", [&] { append("out", "old"); },
       [&] {
         fs::rename(at("out"), at("moved"));
         append("moved", "1");
         append("out", "2");
       },
       "12"},
      {"replaced", [&] { append("out", "old"); },
       [&] {
         append("out", "1");
         append("other", "2");
         fs::rename(at("other"), at("out"));
       },
       "12"},
      {"deleted, and another created", [&] { append("out", "old"); },
       [&] {
         append("out", "1");
         fs::remove(at("out"));
         append("out", "2");
       },
       "12"},
      {"both are one file by a link", [&] { fs::create_symlink(at("out"), at("error")); },
       [&] { append("error", "once"); }, "once"},
      {"two files", nothing,
       [&] {
         append("out", "1");
         append("error", "2");
       },
       "12"},
      {"a pipe takes the place", [&] { append("out", "old"); },
       [&] {
         append("out", "1");
         fs::remove(at("out"));
         ASSERT_EQ(::mkfifo(at("out").c_str(), 0600), 0);
       },
       "1"},
      {"a folder", [&] { fs::create_directory(at("out")); }, [&] { append("error", "2"); }, "2"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    for (const auto& entry : fs::directory_iterator(folder.path())) fs::remove_all(entry);
    row.before();
    ProcessPlan plan;
    plan.workingDirectory = folder.path();
    plan.standardOut = "out";
    plan.standardError = at("error");
    OutputFiles files(plan);
    files.begin();
    EXPECT_EQ(read(files), "");
    row.during();
    EXPECT_EQ(read(files), row.expected);
    EXPECT_EQ(read(files), "") << "nothing is read twice";
  }
}

TEST_F(OutputFilesTest, AreBoundedInNumber) {
  ProcessPlan plan;
  plan.standardOut = at("out");
  plan.standardError = at("error");
  OutputFiles files(plan);
  files.begin();
  append("error", "stays");
  EXPECT_EQ(read(files), "stays");
  for (int i = 0; i < 30; ++i) {
    append("out", std::to_string(i));
    EXPECT_TRUE(files.update([](OutputFiles::File&) {})) << "file " << i << " has to be watched";
    EXPECT_FALSE(files.update([](OutputFiles::File&) {}));
    EXPECT_EQ(read(files), std::to_string(i)) << "the other file isn't given up and read again";
    fs::rename(at("out"), at(std::to_string(i).c_str()));
    EXPECT_LE(files.files().size(), OutputFiles::mostFiles);
  }
}

TEST_F(OutputFilesTest, AreNoneOfAJobInAnotherRootFolder) {
  ProcessPlan plan;
  plan.standardOut = at("out");
  plan.rootDirectory = folder.path();
  EXPECT_TRUE(OutputFiles(plan).isEmpty());
}

}  // namespace
}  // namespace mirvel::host
