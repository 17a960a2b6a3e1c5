#include "core/files/ReadFile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <thread>

#include "core/process/FileDescriptor.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using testdata::TemporaryFolder;

TEST(ReadFileTest, FilesUpToTheLimitAreRead) {
  const TemporaryFolder folder;
  const std::string content(100000, 'x');
  const auto file = folder.write("file", content);
  const auto whole = readFile(file, content.size());
  ASSERT_TRUE(whole);
  EXPECT_EQ(*whole, content);
  const auto refused = readFile(file, content.size() - 1);
  ASSERT_FALSE(refused);
  EXPECT_EQ(refused.error().code, Error::Code::LimitExceeded);
  EXPECT_EQ(*readBeginning(file, 70000), content.substr(0, 70000));
  EXPECT_EQ(*readBeginning(file, 200000), content);
}

TEST(ReadFileTest, ErrorsHaveACodeAndThePath) {
  const TemporaryFolder folder;
  const std::pair<fs::path, Error::Code> rows[] = {
      {"/dev/zero", Error::Code::LimitExceeded},
      {folder.path(), Error::Code::Io},
      {folder.path() / "none", Error::Code::NotFound},
      {fs::path(std::string("/tmp/a\0b", 8)), Error::Code::BadArgument},
  };
  for (const auto& [path, code] : rows) {
    const auto result = readFile(path, 100000);
    ASSERT_FALSE(result) << path;
    EXPECT_EQ(result.error().code, code) << path;
    EXPECT_EQ(result.error().file, path);
  }
}

TEST(ReadFileTest, PipesAreReadToTheirEndWithoutWaitingForAWriter) {
  const TemporaryFolder folder;
  const auto path = folder.path() / "pipe";
  ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  const auto unattended = readFile(path, 10);
  ASSERT_TRUE(unattended);
  EXPECT_EQ(*unattended, "");

  const std::string content(200000, 'p');
  FileDescriptor end(::open(path.c_str(), O_RDWR | O_CLOEXEC));
  std::thread writer([&] {
    EXPECT_EQ(::write(end.number(), content.data(), content.size()), static_cast<ssize_t>(content.size()));
    end.reset();
  });
  const auto piped = readFile(path, content.size());
  writer.join();
  ASSERT_TRUE(piped);
  EXPECT_EQ(*piped, content);
}

}  // namespace
}  // namespace mirvel
