#include "core/session/CurrentMode.h"

#include <gmock/gmock.h>

#include "support/ProgramFixture.h"
#include "support/RecordingShell.h"

namespace mirvel {
namespace {

using testing::ElementsAre;
using Names = std::vector<std::string>;

class CurrentModeTest : public testdata::ProgramFixture {
 protected:
  static std::shared_ptr<Job> job(const std::string& name, const std::string& path, const std::string& text) {
    auto result = std::make_shared<Job>(Kind::userAgent, name, "the summary", name, URL::file(path));
    result->textContent = text;
    return result;
  }

  const Jobs jobs{job("R\u00e9sum\u00e9", "/a/1", "text"), job("two", "/RESUME/2", "text"),
                  job("three", "/a/3", "a r\u00e9sume\u0301 here"), job("four", "/a/4\xFF", "a\nTEXT\xFF")};
};

TEST_F(CurrentModeTest, TextNameAndPathAreSearchedWhateverCaseAndAccents) {
  const std::pair<const char*, Names> table[] = {
      {"resume", {"R\u00e9sum\u00e9", "two", "three"}},
      {"R\u00c9SUM\u00c9", {"R\u00e9sum\u00e9", "two", "three"}},
      {"text", {"R\u00e9sum\u00e9", "two", "four"}},
      {"/a/", {"R\u00e9sum\u00e9", "three", "four"}},
      {"/a/4", {"four"}},
      {"summary", {}},
      {"texttwo", {}},
      {"two/RESUME", {}},
      {"e h", {"three"}},
      {"%", {}},
  };
  for (const auto& [text, found] : table) EXPECT_EQ(names(filtered(jobs, text)), found) << text;
  EXPECT_TRUE(filtered(jobs, std::string("t\0t", 3)).empty());
  EXPECT_TRUE(filtered(jobs, std::string(1, '\0')).empty());
}

TEST_F(CurrentModeTest, AFilterLeavesTheSelectedJobMarkedOrNothing) {
  testdata::RecordingShell shell(program());
  program().selection.select(jobs[1]);
  shell.events.clear();
  program().currentMode.setFilter(jobs, "four");
  EXPECT_EQ(names(shell.shown), Names{"four"});
  EXPECT_THAT(shell.events, ElementsAre("update, catalogue of 0", "deselect"));
  EXPECT_EQ(program().currentMode.filter(), "four");
  EXPECT_EQ(program().selection.job(), jobs[1]);

  shell.events.clear();
  shell.tab = DetailTab::NoSelection;
  program().currentMode.setFilter(jobs, "t");
  EXPECT_THAT(shell.events, ElementsAre("update, catalogue of 0", "select job two", "updateDetail"))
      << "a job that the filter leaves stays selected, and one that it leaves again is";
  shell.events.clear();
  shell.tab = DetailTab::LaunchdDisplay;
  program().currentMode.setFilter(jobs, "tw");
  EXPECT_THAT(shell.events, ElementsAre("update, catalogue of 0", "select job two")) << "the details stay as they are";

  shell.events.clear();
  program().currentMode.setFilter(jobs, "");
  EXPECT_EQ(shell.shown, jobs);
  EXPECT_THAT(shell.events, ElementsAre("update, catalogue of 0", "select job two", "updateDetail"));
  EXPECT_EQ(program().currentMode.filter(), "");

  shell.events.clear();
  jobs[1]->isNewFile = true;
  program().currentMode.setFilter(jobs, "");
  EXPECT_THAT(shell.events, ElementsAre("update, catalogue of 0", "select 2", "updateDetail"));
}

}  // namespace
}  // namespace mirvel
