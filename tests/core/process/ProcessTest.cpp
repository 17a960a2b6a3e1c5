#include "core/process/Arguments.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <thread>

#include "core/process/Commands.h"
#include "core/process/ProcessStatus.h"
#include "core/process/UserEntry.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::Pair;

Result<ParsedArguments> parse(const std::vector<std::string>& words) {
  return parseArguments(words, {{"--json"}, {"--root", true}});
}

TEST(ArgumentsTest, OptionsAndOperandsAreMixedUpToTheDoubleDash) {
  const auto parsed = parse({"a", "--root", "/x", "-", "--json", "--root=/y=z", "--", "--json", "-q"});
  ASSERT_TRUE(parsed);
  EXPECT_THAT(parsed->operands, ElementsAre("a", "-", "--json", "-q"));
  EXPECT_THAT(parsed->options, ElementsAre(Pair("--root", "/x"), Pair("--json", ""), Pair("--root", "/y=z")));
  EXPECT_EQ(parsed->value("--root"), "/y=z");
  EXPECT_TRUE(parsed->has("--json"));
  EXPECT_FALSE(parsed->has("--other"));
}

TEST(ArgumentsTest, UnknownOptionsAndMissingOrExtraValuesAreRejected) {
  for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
           {"--other"}, {"-j"}, {"--jso"}, {"--json=yes"}, {"--root"}, {"x", "--root"}, {"--root=/x", "---"}}) {
    const auto parsed = parse(words);
    ASSERT_FALSE(parsed) << words.front();
    EXPECT_EQ(parsed.error().code, Error::Code::BadArgument) << words.front();
  }
}

TEST(CommandsTest, ToolsAreFoundInTheSearchPathOrKeepTheirDefaultPath) {
  for (const char* tool : {"osascript", "automator", "swift", "open"}) {
    if (fs::exists(fs::path("/usr/bin") / tool)) GTEST_SKIP() << "this machine has " << tool;
  }
  const testdata::TemporaryFolder folder;
  for (const char* tool : {"second/osascript", "second/xdg-open", "first/xdg-open"}) {
    ASSERT_EQ(::chmod(folder.write(tool, "#!/bin/sh\n").c_str(), 0755), 0);
  }
  ASSERT_EQ(::chmod(folder.write("first/osascript", "not a program").c_str(), 0644), 0);
  fs::create_directories(folder.path() / "first/automator");
  const fs::path first = folder.path() / "first", second = folder.path() / "second";

  const Commands commands = Commands::forThisMachine(
      {{"PATH", "::" + fs::relative(second).string() + ":" + first.string() + ":" + second.string()}});
  EXPECT_EQ(commands.osascript, second / "osascript");
  EXPECT_EQ(commands.open, first / "xdg-open");
  EXPECT_EQ(commands.automator, "/usr/bin/automator");
  EXPECT_EQ(commands.swift, "/usr/bin/swift");
  EXPECT_EQ(commands.shell, "/bin/sh");
}

TEST(UserEntryTest, TheCommentFieldContainsTheFullName) {
  const struct {
    const char* comment;
    const char* name;
  } table[] = {
      {"Anna Example", "Anna Example"},
      {"Anna Example,Room 3,,", "Anna Example"},
      {" Anna\t", "Anna"},
      {"& Example", "Anna Example"},
      {"", "anna"},
      {",,,", "anna"},
      {" ,x", "anna"},
  };
  for (const auto& row : table) EXPECT_EQ(personName(row.comment, "anna"), row.name) << row.comment;
  EXPECT_FALSE(fullUserName().empty());
}

TEST(ProcessStatusTest, ProcessesMayEndWhileTheyAreLookedAt) {
  std::atomic<pid_t> latest = ::getpid();
  std::thread others([&] {
    for (int i = 0; i < 300; ++i) {
      const pid_t child = ::fork();
      if (child == 0) ::_exit(0);
      latest = child;
      ::waitpid(child, nullptr, 0);
    }
    latest = 0;
  });
  std::size_t found = 0;
  for (pid_t process = latest; process != 0; process = latest) {
    const auto status = ProcessStatus::of(process);
    if (!status) continue;
    ++found;
    EXPECT_EQ(status->id, process);
  }
  others.join();
  EXPECT_GT(found, 0U);
}

}  // namespace
}  // namespace mirvel
