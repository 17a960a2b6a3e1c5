#include "core/catalogue/KindSection.h"

#include <gtest/gtest.h>

#include <string>

namespace mirvel {
namespace {

std::string text(const Sections& sections) {
  std::string result;
  for (const Kind::Section& section : sections) {
    result += std::string(section.kind.name()) + ":";
    for (const auto& job : section.jobs) result += job->name;
    result += " ";
  }
  return result;
}

TEST(KindSectionTest, JobsAreGroupedByKindInTheOrderOfTheCatalogue) {
  const auto job = [](Kind kind, const char* name) {
    return std::make_shared<Job>(kind, name, "", name, URL::file("/job"));
  };
  const Jobs jobs{
      job(Kind::privilegedHelperTool, "p"),       job(Kind::systemStartupItem, "s"), job(Kind::userAgent, "b"),
      job(Kind::loginItemApplication, "l"),       job(Kind::userAgent, "a"),         job(Kind::systemDaemon, "d"),
      job(Kind::loginItemSystemPreferences, "o"), job(Kind::systemAgent, "g")};
  EXPECT_EQ(text(makeSections(jobs, false)),
            "userAgent:ba loginItemSystemPreferences:o loginItemApplication:l privilegedHelperTool:p ");
  EXPECT_EQ(text(makeSections(jobs, true)),
            "userAgent:ba loginItemSystemPreferences:o loginItemApplication:l systemAgent:g systemDaemon:d "
            "systemStartupItem:s privilegedHelperTool:p ");
  EXPECT_EQ(text(makeSections({job(Kind::systemAgent, "g")}, false)), "");
  EXPECT_EQ(text(makeSections({}, true)), "");
}

}  // namespace
}  // namespace mirvel
