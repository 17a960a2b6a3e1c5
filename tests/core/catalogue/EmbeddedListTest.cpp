#include "core/catalogue/EmbeddedList.h"

#include <gtest/gtest.h>

#include <vector>

#include "core/catalogue/HelperToolLines.h"
#include "demo/HelperToolFile.h"
#include "support/FakeProcessRunner.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

using testdata::TemporaryFolder;

constexpr const char* infoPlist = R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0">
<dict>
	<key>CFBundleIdentifier</key><string>com.example.helper</string>
	<key>CFBundleName</key><string>Example &amp; Söhne</string>
	<key>SMAuthorizedClients</key>
	<array>
		<string>identifier "com.example.app" and anchor apple generic</string>
		<string>second</string>
	</array>
	<key>CFBundleInfoDictionaryVersion</key><string>6.0</string>
</dict>
</plist>
)";

constexpr const char* printed = R"({
	"CFBundleIdentifier" = "com.example.helper";
	"CFBundleName" = "Example & Söhne";
	"SMAuthorizedClients" = (
		"identifier \"com.example.app\" and anchor apple generic";
		"second";
	);
	"CFBundleInfoDictionaryVersion" = "6.0";
};
)";

class EmbeddedListTest : public testing::Test {
 protected:
  /// A file with the permissions of the tool.
  std::string launchctl(std::filesystem::perms permissions = std::filesystem::perms::owner_all) {
    const auto path = m_folder.write("launchctl", "");
    std::filesystem::permissions(path, permissions);
    return path;
  }
  std::filesystem::path helper(std::string_view list) {
    return m_folder.write("com.example.helper", demo::helperToolFile(list));
  }
  std::string missing() const { return m_folder.path() / "missing"; }

  testdata::FakeProcessRunner m_runner;

 private:
  TemporaryFolder m_folder;
};

TEST_F(EmbeddedListTest, TheToolIsUsedIfItExists) {
  const std::string tool = launchctl();
  const EmbeddedList lists(m_runner, tool);
  m_runner.answer = ProcessResult{.output = printed};
  EXPECT_EQ(lists.text("/tools/a b"), printed);
  const std::vector<std::vector<std::string>> calls{{tool, "plist", "__TEXT,__info_plist", "/tools/a b"}};
  EXPECT_EQ(m_runner.calls, calls);

  m_runner.answer = ProcessResult{.exitStatus = 1, .output = "nothing of use", .complaints = "no such section"};
  EXPECT_EQ(lists.text("/tools/b"), "nothing of use");
  m_runner.answer = Error{.code = Error::Code::NotPermitted, .message = "can't run"};
  EXPECT_EQ(lists.text("/tools/c"), "");
}

TEST_F(EmbeddedListTest, WithoutTheToolTheFileYieldsTheSameLines) {
  const auto file = helper(infoPlist);
  for (const std::string& tool : {missing(), launchctl(std::filesystem::perms::owner_read)}) {
    EXPECT_EQ(EmbeddedList(m_runner, tool).text(file), printed) << tool;
  }
  EXPECT_TRUE(m_runner.calls.empty());
  const auto lines = HelperToolLines::read(EmbeddedList(m_runner, missing()).text(file));
  EXPECT_EQ(lines.identifier, "com.example.helper");
  EXPECT_EQ(lines.clients, R"(identifier \"com.example.app\" and anchor apple generic)");
  EXPECT_EQ(lines.name, "Example & Söhne");
}

TEST_F(EmbeddedListTest, UnreadableFilesYieldNoText) {
  const EmbeddedList lists(m_runner, missing());
  EXPECT_EQ(lists.text(missing()), "");
  EXPECT_EQ(lists.text(helper("")), "");
  EXPECT_EQ(lists.text(helper("<plist><dict>")), "");
  EXPECT_EQ(lists.text(std::filesystem::temp_directory_path()), "");
}

}  // namespace
}  // namespace mirvel
