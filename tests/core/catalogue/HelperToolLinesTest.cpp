#include "core/catalogue/HelperToolLines.h"

#include <gtest/gtest.h>

#include <vector>

namespace mirvel {
namespace {

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

TEST(HelperToolLinesTest, TheThreeEntriesAreReadFromAWholeList) {
  expectRows({{R"({
	"CFBundleIdentifier" = "com.example.helper";
	"CFBundleName" = "Example";
	"SMAuthorizedClients" = (
		"identifier \"com.example.app\" and anchor apple generic";
		"second";
		"third";
	);
	"CFBundleInfoDictionaryVersion" = "6.0";
};
)",
               "com.example.helper", R"(identifier \"com.example.app\" and anchor apple generic)", "Example"}});
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
