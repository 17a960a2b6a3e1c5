#include "core/catalogue/PrivilegedHelperTool.h"

#include <gtest/gtest.h>

#include <vector>

#include "core/catalogue/EmbeddedList.h"
#include "core/catalogue/HelperToolLines.h"
#include "core/text/Bytes.h"
#include "demo/HelperToolFile.h"
#include "support/FakeProcessRunner.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

/// As the tool prints it.
constexpr const char* printed = R"({
	"CFBundleIdentifier" = "com.example.helper";
	"CFBundleName" = "Example & Söhne";
	"SMAuthorizedClients" = (
		"identifier \"com.example\"";
		"second";
	);
};
)";

class PrivilegedHelperToolTest : public testing::Test {
 protected:
  /// A file with the permissions of the tool.
  std::string launchctl(std::filesystem::perms permissions = std::filesystem::perms::owner_all) const {
    const auto path = folder.write("launchctl", "");
    std::filesystem::permissions(path, permissions);
    return path;
  }
  std::filesystem::path helper(std::string_view list) const {
    return folder.write("com.example.helper", demo::helperToolFile(list));
  }
  std::string missing() const { return folder.path() / "missing"; }
  std::shared_ptr<PrivilegedHelperTool> read(const std::string& name, bool showInternalHelpers = false) {
    const EmbeddedList list(runner, launchctl());
    return PrivilegedHelperTool::read(URL::file("/tools/" + name), list, showInternalHelpers);
  }

  testdata::TemporaryFolder folder;
  testdata::FakeProcessRunner runner;
};

TEST_F(PrivilegedHelperToolTest, TheEmbeddedListDescribesTheTool) {
  runner.answer->output = printed;
  const auto tool = read("com.example.helper");
  ASSERT_TRUE(tool);
  EXPECT_EQ(tool->kind, Kind::privilegedHelperTool);
  EXPECT_EQ(tool->name, "Example & Söhne");
  EXPECT_EQ(tool->summary, "Example & Söhne");
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
  runner.answer->output = "\t\"CFBundleName\" = \"app.mirvel.other\";\n";
  EXPECT_TRUE(read("tool"));
}

class EmbeddedListTest : public PrivilegedHelperToolTest {};

TEST_F(EmbeddedListTest, TheToolIsUsedIfItExists) {
  const std::string tool = launchctl();
  const EmbeddedList lists(runner, tool);
  runner.answer = ProcessResult{.output = printed};
  EXPECT_EQ(lists.text("/tools/a b"), printed);
  const std::vector<std::vector<std::string>> calls{{tool, "plist", "__TEXT,__info_plist", "/tools/a b"}};
  EXPECT_EQ(runner.calls, calls);

  runner.answer = ProcessResult{.exitStatus = 1, .output = "nothing of use", .complaints = "no such section"};
  EXPECT_EQ(lists.text("/tools/b"), "nothing of use");
  runner.answer = Error{.code = Error::Code::NotPermitted, .message = "can't run"};
  EXPECT_EQ(lists.text("/tools/c"), "");
}

TEST_F(EmbeddedListTest, WithoutTheToolTheFileYieldsTheSameLines) {
  const auto file = helper(R"(<plist><dict>
	<key>CFBundleIdentifier</key><string>com.example.helper</string>
	<key>CFBundleName</key><string>Example &amp; Söhne</string>
	<key>SMAuthorizedClients</key>
	<array><string>identifier "com.example"</string><string>second</string></array>
</dict></plist>)");
  for (const std::string& tool : {missing(), launchctl(std::filesystem::perms::owner_read)}) {
    EXPECT_EQ(EmbeddedList(runner, tool).text(file), printed) << tool;
  }
  EXPECT_TRUE(runner.calls.empty());
}

TEST_F(EmbeddedListTest, UnreadableFilesYieldNoText) {
  const EmbeddedList lists(runner, missing());
  EXPECT_EQ(lists.text(missing()), "");
  EXPECT_EQ(lists.text(helper("")), "");
  EXPECT_EQ(lists.text(helper("<plist><dict>")), "");
  EXPECT_EQ(lists.text(std::filesystem::temp_directory_path()), "");
}

struct Row {
  std::string text, identifier, clients, name;
};

void expectRows(const std::vector<Row>& rows) {
  for (const auto& row : rows) {
    const auto lines = HelperToolLines::read(row.text);
    EXPECT_EQ(lines.identifier, row.identifier) << row.text;
    EXPECT_EQ(lines.clients, row.clients) << row.text;
    EXPECT_EQ(lines.name, row.name) << row.text;
  }
}

TEST(HelperToolLinesTest, EntriesMustHaveTheExactFormatOfTheTool) {
  expectRows({
      {"x\n\"CFBundleIdentifier\" = \"a\";", "a", "x", ""},
      {"x\n \t\"CFBundleIdentifier\" = \"a\";\t\r\n", "a", "x", ""},
      {"x\n\"CFBundleIdentifier\" = \"a\"", "a\"", "x", ""},
      {"x\n\"CFBundleIdentifier\" = \"a\";\n\"CFBundleIdentifier\" = \"b\";", "b", "x", ""},
      {"x\n\"CFBundleIdentifier\" = \"\";", "", "x", ""},
      {"x\n\"CFBundleIdentifier\"=\"a\";", "", "x", ""},
      {"x\n\"CFBundleIdentifierX\" = \"a\";", "", "x", ""},
      {"x\nCFBundleIdentifier\" = \"a\";", "", "x", ""},
      {"x\n\"CFBundleName\" = 12;", "", "x", ""},
      {"x\n\"CFBundleName\" = \"a = b\";", "", "x", "a = b"},
      {"x\n\"CFBundleName\" = \"a\\\" = \\\"b\";", "", "x", "a\\\" = \\\"b"},
      {"x\n\"CFBundleName\" = \"a\" = \"b\";", "", "x", "a"},
      {"x\n\"CFBundleName\" = \"\xC3\x89t\xC3\xA9\";", "", "x", "\xC3\x89t\xC3\xA9"},
  });
}

TEST(HelperToolLinesTest, ClientsAreTheLineAfterTheirEntryOrElseTheFirstLine) {
  expectRows({
      {"", "", "", ""},
      {"\n\n\n", "", "", ""},
      {"{\n};\n", "", "{", ""},
      {"\n\n{\n};\n", "", "{", ""},  // empty lines don't count
      {" \n{\n", "", "", ""},        // lines of white space do
      {"\"first\";\nsecond", "", "first", ""},
      {"could not read it", "", "could not read it", ""},
      {"\"CFBundleName\" = \"a\";\nsecond", "", "", "a"},
      {"\"SMAuthorizedClients\" = (\n\"a\";\n\"b\";\n);", "", "a", ""},
      {"{\n\"SMAuthorizedClients\" = (\n\n\"a\";\n);", "", "a", ""},
      {"{\n\"SMAuthorizedClients\" = (\n\"\"a\";\";\n);", "", "\"a\";", ""},
      {"{\n\"SMAuthorizedClients\" = (\na\n);", "", "a", ""},
      {"{\n\"SMAuthorizedClients\" = (\n);", "", ");", ""},
      {"{\n\"SMAuthorizedClients\" = (\n\"CFBundleName\" = \"a\";\n\"b\";", "", "{", "a"},
      {"{\n\"SMAuthorizedClients\" = (\n\"SMAuthorizedClients\" = (\n\"a\";", "", "a", ""},
      {"{\n\"SMAuthorizedClients\" = (", "", "{", ""},
      {"{\n\"SMAuthorizedClients\" = \"a\";\n\"b\";", "", "{", ""},
      {"{\n\"SMAuthorizedClients\" = (\n\"a\";\n);\n\"SMAuthorizedClients\" = (\n\"b\";\n);", "", "b", ""},
  });
}

}  // namespace
}  // namespace mirvel
