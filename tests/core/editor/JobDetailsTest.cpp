#include "core/editor/JobDetails.h"

#include <gtest/gtest.h>

#include "core/catalogue/PrivilegedHelperTool.h"
#include "support/ProgramFixture.h"

namespace mirvel {
namespace {

class JobDetailsTest : public testdata::ProgramFixture {
 protected:
  /// Label and lines of each row, as "When: a; b".
  static std::vector<std::string> rows(const JobDetails& details) {
    std::vector<std::string> result;
    for (const auto& row : details.rows) {
      std::string text = row.label + ": ";
      for (const auto& line : row.lines) text += (&line == &row.lines.front() ? "" : "; ") + line;
      result.push_back(text);
    }
    return result;
  }
  std::vector<std::string> rowsOf(const std::string& name) { return rows(JobDetails::of(program(), *jobNamed(name))); }
};

TEST_F(JobDetailsTest, EachSortOfJobTellsWhatItIsAndWhenItRuns) {
  const std::string home = roots.home;
  (void)write(Kind::userAgent, "a.plist",
              testdata::jobText("a", {{"ProgramArguments", plist::Array{"/bin/ls", home + "/x"}},
                                      {"RunAtLoad", true},
                                      {"StartInterval", 7200}}));
  writeJob(Kind::localAgent, "bare");
  loginItems.ownItems = {{"own", home + "/own", {}, {}}};
  (void)write(Kind::localStartupItem, "Web/StartupParameter.plist",
              testdata::startupParameters("Web", plist::Array{"Web"}));
  (void)write(Kind::localStartupItem, "Web/Web", "");
  (void)write(Kind::privilegedHelperTool, "tool", "");
  scan();

  using Rows = std::vector<std::string>;
  EXPECT_EQ(rowsOf("a"), (Rows{"Summary: ls ~/x", "Command: /bin/ls ~/x",
                               "When: When it is loaded, that is, at login or at startup; Every 2 hours",
                               "Path: " + path(Kind::userAgent, "a.plist").string()}));
  EXPECT_EQ(rowsOf("bare"),
            (Rows{"When: Only when it is started by hand", "Path: " + path(Kind::localAgent, "bare.plist").string()}));
  EXPECT_EQ(rowsOf("own"), (Rows{"Command: ~/own", "When: At login"})) << "no summary that repeats the name";
  const std::string web = path(Kind::localStartupItem, "Web");
  EXPECT_EQ(rowsOf("Web"), (Rows{"Command: " + web + "/Web", "When: When the system starts", "Path: " + web}));

  auto& tool = dynamic_cast<PrivilegedHelperTool&>(*jobNamed("tool"));
  tool.identifier = "org.example.tool";
  tool.clients = "someone";
  const std::string toolPath = path(Kind::privilegedHelperTool, "tool");
  EXPECT_EQ(rowsOf("tool"), (Rows{"Command: " + toolPath, "When: When one of its clients asks for it",
                                  "Identifier: org.example.tool", "Clients: someone", "Path: " + toolPath}));
}

TEST_F(JobDetailsTest, ADisabledJobKeepsItsOwnIcon) {
  writeJob(Kind::userAgent, "off", {{"ProgramArguments", plist::Array{"/bin/ls"}}, {"Disabled", true}});
  scan();
  const auto job = jobNamed("off");
  EXPECT_EQ(JobDetails::of(program(), *job).icon, Image::iconOfPath("/bin/ls"));
  EXPECT_EQ(JobDetails::of(program(), *job).status, statusImage(false, foundation.localize));
  EXPECT_EQ(JobDetails::of(program(), *job).kind, "Ada Lovelace");
  job->customIcon = Image::named("star");
  EXPECT_EQ(JobDetails::of(program(), *job).icon, Image::named("star"));
}

}  // namespace
}  // namespace mirvel
