#include "core/editor/JobDetails.h"

#include <gtest/gtest.h>

#include "core/catalogue/PrivilegedHelperTool.h"
#include "support/ProgramFixture.h"

namespace mirvel {
namespace {

class JobDetailsTest : public testdata::ProgramFixture {
 protected:
  /// Each row as "When: At login".
  std::vector<std::string> rowsOf(const std::string& name) {
    std::vector<std::string> result;
    for (const auto& row : JobDetails::rows(*jobNamed(name), foundation.localize, roots.home))
      result.push_back(row.label + ": " + row.text);
    return result;
  }
};

TEST_F(JobDetailsTest, EachKindHasItsRows) {
  loginItems.ownItems = {{"own", roots.home.string() + "/own", {}, {}}};
  (void)write(Kind::localStartupItem, "Web/StartupParameter.plist",
              testdata::startupParameters("Web", propertylist::Array{"Web"}));
  (void)write(Kind::localStartupItem, "Web/Web", "");
  (void)write(Kind::privilegedHelperTool, "tool", "");
  scan();

  using Rows = std::vector<std::string>;
  EXPECT_EQ(rowsOf("own"), (Rows{"When: At login"})) << "no summary that repeats the name";
  const std::string web = path(Kind::localStartupItem, "Web");
  EXPECT_EQ(rowsOf("Web"), (Rows{"When: When the system starts", "Path: " + web}));

  auto& tool = dynamic_cast<PrivilegedHelperTool&>(*jobNamed("tool"));
  tool.identifier = "org.example.tool";
  tool.clients = "someone";
  EXPECT_EQ(rowsOf("tool"), (Rows{"When: When one of its clients requests it", "Identifier: org.example.tool",
                                  "Clients: someone", "Path: " + path(Kind::privilegedHelperTool, "tool").string()}));
}

}  // namespace
}  // namespace mirvel
