#include <gtest/gtest.h>

#include <set>

#include "core/catalogue/PrivilegedHelperTool.h"
#include "core/editor/JobDetails.h"
#include "core/editor/ValueTexts.h"
#include "core/text/Strings.h"
#include "support/ProgramFixture.h"

namespace mirvel {
namespace {

using propertylist::Array;
using propertylist::Dictionary;
using propertylist::Value;

const Localize& english() {
  static const Localize texts("en");
  return texts;
}

TEST(DescriptionTest, EveryTypeReadsAsAPersonWritesIt) {
  const struct {
    Value value;
    const char* text;
  } table[] = {
      {true, "On"},
      {86400, "86400"},
      {propertylist::Integer::fromUnsigned(UINT64_MAX), "18446744073709551615"},
      {0.1, "0.1"},
      {"a\nb", "a\nb"},
      {propertylist::Data{"12345"}, "5 bytes"},
      {propertylist::Data{std::string(1, '\0')}, "1 byte"},
      {propertylist::Uid{7}, "7"},
      {Array{}, "[ ]"},
      {Dictionary{}, "{ }"},
      {Array{1, "b", Array{}}, "– 1\n– b\n– [ ]"},
      {Array{Array{1, 2}, Dictionary{{"k", false}}}, "–\n  – 1\n  – 2\n–\n  k : Off"},
      {Dictionary{{"a", Dictionary{{"b", Array{"x"}}, {"c", Dictionary{}}}}, {"d", 1}},
       "a :\n  b :\n    – x\n  c : { }\nd : 1"},
      {propertylist::Set{{1}}, "– 1"},
  };
  for (const auto& row : table) EXPECT_EQ(description(row.value, english()), row.text);
  const std::string year = description(propertylist::Date{200 * 86400.0}, english());
  EXPECT_NE(year.find("2001"), std::string::npos) << year;
}

TEST(DescriptionTest, HugeValuesEndInAnEllipsisAndAreNotReadToTheirEnd) {
  Value deep = 1;
  for (int depth = 0; depth < 500; ++depth) {
    Array outer;
    outer.push_back(std::move(deep));  // a list in braces would copy it
    outer.emplace_back("after");
    deep = std::move(outer);
  }
  Value wide = Array{};
  for (int level = 0; level < 5; ++level) wide = Array(10, wide);
  const struct {
    const char* name;
    Value value;
  } table[] = {
      {"text", std::string(1'000'000, 'x')},
      {"characters of several bytes", std::string("ä") + std::string(3000, 'x')},
      {"array", Array(100'000, Value("ä"))},
      {"key", Dictionary{{std::string(1'000'000, 'k'), 1}}},
      {"deep", std::move(deep)},
      {"wide", std::move(wide)},
  };
  for (const auto& row : table) {
    const std::string text = description(row.value, english());
    EXPECT_TRUE(text.ends_with("…")) << row.name;
    EXPECT_LE(String::characterCount(text), 2001U) << row.name;
    EXPECT_GT(String::characterCount(text), 1500U) << row.name;
  }
  EXPECT_EQ(description(std::string(2000, 'x'), english()), std::string(2000, 'x'));
}

class JobDetailsTest : public testdata::ProgramFixture {
 protected:
  /// Each row as "When: At login", with an arrow if it has a button.
  std::vector<std::string> rowsOf(const std::string& name) {
    std::vector<std::string> result;
    for (const auto& row : JobDetails::rows(*jobNamed(name), program().kinds, foundation.localize, roots.home)) {
      result.push_back(row.label + ": " + row.text + (row.button == JobDetails::Row::Button::None ? "" : " →"));
    }
    return result;
  }
};

TEST_F(JobDetailsTest, EachKindHasItsRows) {
  loginItems.ownItems = {{.name = "own", .path = roots.home.string() + "/own", .kind = "Program"},
                         {.name = "entry", .path = "/bin/entry", .file = roots.home.string() + "/entry.desktop"}};
  loginItems.bundledItems = {{.name = "App", .itemName = "Item", .itemPath = "/App/Item", .applicationPath = "/App"}};
  (void)write(Kind::localStartupItem, "Web/StartupParameter.plist",
              testdata::startupParameters("Web", propertylist::Array{"Web"}));
  const auto script = write(Kind::localStartupItem, "Web/Web", "#!/usr/bin/perl\nprint 1\n");
  (void)write(Kind::privilegedHelperTool, "tool", "");
  scan();

  using Rows = std::vector<std::string>;
  EXPECT_EQ(rowsOf("own"),
            (Rows{"When: At login", "Where: Login Items – System Settings →", "Kind: Program", "Path: ~/own →"}))
      << "no summary that repeats the name";
  EXPECT_EQ(rowsOf("entry"), (Rows{"When: At login", "Where: ~/entry.desktop →", "Path: /bin/entry →"}));
  EXPECT_EQ(rowsOf("App"),
            (Rows{"Summary: Item", "When: At login", "Where: /App →", "Kind: Application", "Path: /App/Item →"}));
  const std::string web = path(Kind::localStartupItem, "Web");
  EXPECT_EQ(rowsOf("Web"),
            (Rows{"When: When the system starts", "Where: " + web + " →", "Run: #!/usr/bin/perl\nprint 1\n"}));
  EXPECT_EQ(JobDetails::rows(*jobNamed("Web"), program().kinds, foundation.localize, {}).back().syntax,
            SyntaxType::perl);
  std::filesystem::remove(script);
  EXPECT_EQ(rowsOf("Web").back().find("Run: Can’t be read: " + script.string()), 0U) << "since the scan";

  auto& tool = dynamic_cast<PrivilegedHelperTool&>(*jobNamed("tool"));
  tool.identifier = "org.example.tool";
  tool.clients = R"(identifier \"a\\b\" and \x \)";
  EXPECT_EQ(rowsOf("tool"), (Rows{"When: When one of its clients requests it",
                                  "Where: " + path(Kind::privilegedHelperTool, "tool").string() + " →",
                                  "Identifier: org.example.tool", R"(Clients: identifier "a\b" and \x \)"}));
}

TEST_F(JobDetailsTest, EachKindHasItsSheet) {
  const std::set<Kind::Case> loginItemKinds{Kind::loginItemSystemPreferences, Kind::loginItemApplication};
  const std::set<Kind::Case> startupItemKinds{Kind::localStartupItem, Kind::systemStartupItem};
  for (const Kind kind : Kind::allCases) {
    const InfoSheet expected = loginItemKinds.contains(kind)        ? InfoSheet::LoginItem
                               : startupItemKinds.contains(kind)    ? InfoSheet::StartupItem
                               : kind == Kind::privilegedHelperTool ? InfoSheet::PrivilegedHelperTool
                                                                    : InfoSheet::Launchd;
    EXPECT_EQ(infoSheetFor(kind), expected) << kind.name();
  }
}

TEST_F(JobDetailsTest, SheetsShowTheTextOfTheFileOrWhyThereIsNone) {
  (void)write(Kind::localStartupItem, "Web/StartupParameter.plist",
              testdata::startupParameters("Web", propertylist::Array{"Web"}));
  const auto script = write(Kind::localStartupItem, "Web/Web", "echo 1\n");
  const auto executable = write(Kind::privilegedHelperTool, "tool", "");
  scan();
  const auto infoOf = [this](const char* name) { return infoText(*jobNamed(name), foundation.localize); };
  EXPECT_EQ(infoOf("Web").title, "StartupItems – Web");
  EXPECT_EQ(infoOf("Web").text, "echo 1\n");
  EXPECT_EQ(infoOf("Web").syntax, SyntaxType::shell) << "without an interpreter";
  EXPECT_EQ(infoOf("Web").problem, "");
  std::filesystem::remove(script);
  std::filesystem::create_directory(script);
  EXPECT_NE(infoOf("Web").problem, "");

  EXPECT_EQ(infoOf("tool").title, "PrivilegedHelperTools – tool");
  EXPECT_EQ(infoOf("tool").problem, "Can’t be read: the file contains no property list");
  dynamic_cast<PrivilegedHelperTool&>(*jobNamed("tool")).list = "{\n}\n";
  EXPECT_EQ(infoOf("tool").text, "{\n}\n");
  EXPECT_EQ(infoOf("tool").problem, "");
}

}  // namespace
}  // namespace mirvel
