#include "core/catalogue/PrivilegedHelperTool.h"

#include <gtest/gtest.h>

#include "core/text/Bytes.h"
#include "support/FakeProcessRunner.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

class PrivilegedHelperToolTest : public testing::Test {
 protected:
  std::shared_ptr<PrivilegedHelperTool> read(const std::string& name, bool showInternalHelpers = false) {
    const auto tool = folder.write("launchctl", "");
    std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
    const EmbeddedList list(launchctl, tool);
    return PrivilegedHelperTool::read(URL::file("/tools/" + name), list, showInternalHelpers);
  }

  testdata::TemporaryFolder folder;
  testdata::FakeProcessRunner launchctl;
};

TEST_F(PrivilegedHelperToolTest, TheEmbeddedListDescribesTheTool) {
  launchctl.answer->output =
      "{\n\t\"CFBundleIdentifier\" = \"com.example.helper\";\n\t\"CFBundleName\" = \"Example\";\n"
      "\t\"SMAuthorizedClients\" = (\n\t\t\"identifier \\\"com.example\\\"\";\n\t\t\"second\";\n\t);\n};\n";
  const auto tool = read("com.example.helper");
  ASSERT_TRUE(tool);
  EXPECT_EQ(tool->kind, Kind::privilegedHelperTool);
  EXPECT_EQ(tool->name, "Example");
  EXPECT_EQ(tool->summary, "Example");
  EXPECT_EQ(tool->identifier, "com.example.helper");
  EXPECT_EQ(tool->clients, "identifier \\\"com.example\\\"");
  EXPECT_EQ(tool->checksum, toBase64("/tools/com.example.helper"));
  EXPECT_EQ(tool->run(), "/tools/com.example.helper");
  EXPECT_EQ(tool->textContent, "com.example.helperidentifier \\\"com.example\\\"/tools/com.example.helper");
  EXPECT_EQ(tool->icon, Image::iconOfPath("/tools/com.example.helper"));
}

TEST_F(PrivilegedHelperToolTest, AToolWithoutListHasItsFileName) {
  const auto tool = read("mute");
  ASSERT_TRUE(tool);
  EXPECT_EQ(tool->name, "mute");
  EXPECT_EQ(tool->identifier + tool->clients, "");
}

TEST_F(PrivilegedHelperToolTest, OurOwnToolsAreRecognisedByTheirFileName) {
  EXPECT_FALSE(read("app.mirvel.privileged"));
  EXPECT_TRUE(read("app.mirvel.privileged", true));
  launchctl.answer->output = "\t\"CFBundleName\" = \"app.mirvel.other\";\n";
  EXPECT_TRUE(read("tool"));
}

}  // namespace
}  // namespace mirvel
