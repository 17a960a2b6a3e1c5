#include "core/runs/RunTexts.h"

#include <gtest/gtest.h>
#include <signal.h>

#include <cerrno>

#include "support/TestData.h"

namespace mirvel {
namespace {

using How = RunEnd::How;

RunEnd obstacle(StartObstacle what, int code, std::string subject) {
  return {.how = How::CouldNotStart, .code = code, .obstacle = what, .subject = std::move(subject)};
}

TEST(RunTextsTest, EachEndIsDescribedWithItsReason) {
  const testdata::TemporaryFolder folder;
  const std::string script = folder.write("script", "#!/no/such\n");
  const struct {
    RunEnd end;
    std::string text;
  } rows[] = {
      {{.code = 0}, "Exited with code 0 after 1.2 s"},
      {{.code = 78}, "Exited with code 78 after 1.2 s"},
      {{.code = 143, .isStopped = true}, "Stopped, with exit code 143 after 1.2 s"},
      {{.how = How::Signalled, .code = SIGSEGV},
       "Ended by signal " + std::to_string(SIGSEGV) + " (segmentation fault) after 1.2 s"},
      {{.how = How::Signalled, .code = 999}, "Ended by signal 999 after 1.2 s"},
      {{.how = How::Signalled, .code = SIGTERM, .isStopped = true}, "Stopped after 1.2 s"},
      {{.how = How::Signalled, .code = SIGKILL, .isStopped = true, .isTimedOut = true},
       "Killed, because it didn’t end when it was asked to"},
      {{.how = How::Lost}, "It isn’t known how it ended"},
      {{.how = How::Lost, .isStopped = true}, "Stopped"},
      {obstacle(StartObstacle::Program, ENOENT, "/no/such"),
       "Couldn’t be started: the program “/no/such” doesn’t exist"},
      {obstacle(StartObstacle::Program, ENOENT, "nosuch"), "Couldn’t be started: the program “nosuch” doesn’t exist"},
      {obstacle(StartObstacle::Program, ENOENT, ""), "Couldn’t be started: the program doesn’t exist"},
      {obstacle(StartObstacle::Program, ENOENT, script),
       "Couldn’t be started: the interpreter in the first line of “" + script + "” doesn’t exist"},
      {obstacle(StartObstacle::Program, EACCES, "/x"),
       "Couldn’t be started: the program “/x” isn’t executable for the user of the job"},
      {obstacle(StartObstacle::WorkingDirectory, ENOENT, "/x"),
       "Couldn’t be started: the working directory “/x” doesn’t exist"},
      {obstacle(StartObstacle::WorkingDirectory, EACCES, "/x"),
       "Couldn’t be started: the working directory “/x” can’t be entered: the user of the job lacks the permission"},
      {obstacle(StartObstacle::RootDirectory, ENOTDIR, ""), "Couldn’t be started: the root folder doesn’t exist"},
      {obstacle(StartObstacle::User, 0, "me"), "Couldn’t be started: there is no user “me”"},
      {obstacle(StartObstacle::Group, 0, ""), "Couldn’t be started: its group doesn’t exist"},
      {obstacle(StartObstacle::StandardOut, EISDIR, "/x"),
       "Couldn’t be started: the file for standard output “/x” can’t be opened: it’s a folder"},
      {obstacle(StartObstacle::StandardIn, ENOENT, "/x"),
       "Couldn’t be started: the file for standard input “/x” can’t be opened: it, or a folder that contains it, "
       "doesn’t exist"},
      {obstacle(StartObstacle::Resources, EAGAIN, ""),
       "Couldn’t be started: there are too many processes, or there is too little memory"},
      {obstacle(StartObstacle::Other, 0, ""), "Couldn’t be started: the reason isn’t known"},
  };
  const Localize localize("en");
  for (const auto& row : rows) EXPECT_EQ(RunTexts(localize).ended(row.end, 1.23), row.text);
  EXPECT_EQ(RunTexts(localize).ended({.code = 3}), "Exited with code 3");
}

TEST(RunTextsTest, ADurationHasThePrecisionThatMatters) {
  const struct {
    double seconds;
    const char* english;
    const char* german;
  } rows[] = {{-1, "0.01 s", "0,01 s"},
              {0.001, "0.01 s", "0,01 s"},
              {0.234, "0.23 s", "0,23 s"},
              {0.999, "1 s", "1 s"},
              {1.25001, "1.3 s", "1,3 s"},
              {9.96, "10 s", "10 s"},
              {59.4, "59 s", "59 s"},
              {59.6, "1 min 0 s", "1 min 0 s"},
              {3599.6, "1 h 0 min", "1 h 0 min"},
              {86399, "23 h 59 min", "23 h 59 min"},
              {5e8, "5,787 d 0 h", "5.787 d 0 h"}};
  const Localize english("en"), german("de");
  for (const auto& row : rows) {
    EXPECT_EQ(RunTexts(english).duration(row.seconds), row.english) << row.seconds;
    EXPECT_EQ(RunTexts(german).duration(row.seconds), row.german) << row.seconds;
  }
}

}  // namespace
}  // namespace mirvel
