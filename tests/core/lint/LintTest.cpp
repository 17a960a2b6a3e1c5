#include "core/lint/Lint.h"

#include <gtest/gtest.h>

#include "core/lint/LintedJob.h"
#include "core/lint/Prolog.h"

namespace mirvel::lint {
namespace {

TEST(LintTest, FindingsHaveTheirLocationsAndAreInFileOrder) {
  const std::string file =
      "<!DOCTYPE plist PUBLIC a b>\n"
      "<plist version=\"1.0\"> <dict> <key>UserName</key> <key>me</key>\n"
      "  <key>Nicee</key> <integer>1</integer>\n"
      "  <key>ProgramArguments</key>\n"
      "  <array>\n"
      "    <string>/bin/ls</string>\n"
      "    <string>|</string>\n"
      "  </array>\n"
      "  <key>KeepAlive</key> <dict> <key>Foo</key> <true/> </dict>\n"
      "  <key>Nice</key> <string>x</string>\n"
      "  <key>RunAtLoad</key> <integer>1</integer>\n"
      "</dict>\n"
      "</plist>\n";
  EXPECT_EQ(findingsIn(file), (std::vector<std::string>{
                                  "error: Label not found",
                                  "warning: line 1, column 1: the identifiers of the DOCTYPE aren't quoted; macOS "
                                  "accepts this, other programs may not",
                                  "warning: line 2, column 50: <key> in place of a value; it is read as a string",
                                  "warning: line 3, column 3: Nicee: unknown key; did you mean Nice?",
                                  "warning: line 7, column 5: ProgramArguments[1]: launchd isn't a shell; it passes | "
                                  "to the program as an argument",
                                  "warning: line 9, column 31: KeepAlive.Foo: unknown key",
                                  "error: line 10, column 19: Nice: holds \"x\", a string, where an integer belongs",
                                  "error: line 11, column 24: RunAtLoad: holds 1, an integer, where a boolean belongs",
                              }));
}

TEST(LintTest, AFileThatIsNoJobYieldsOneError) {
  const struct {
    std::string bytes;
    std::vector<std::string> findings;
  } table[] = {
      {"", {"error: the file is empty"}},
      {"hello", {"error: line 1, column 1: an XML property list can't start with `h`"}},
      {"<plist><array/></plist>", {"error: line 1, column 8: the file holds an array of 0 where a dictionary belongs"}},
      {propertylist::writeBinary("x"), {"error: the file holds \"x\", a string, where a dictionary belongs"}},
  };
  for (const auto& row : table) EXPECT_EQ(findingsIn(row.bytes), row.findings) << row.bytes;
}

TEST(LintTest, OfEachSeverity200FindingsAreReportedAndTheOthersCounted) {
  Dict file = job({});
  for (int i = 0; i < 230; ++i) file.set("x" + std::to_string(i), true);
  List intervals;
  for (int i = 0; i < 201; ++i) intervals.push_back(Dict{{"Minute", 99}});
  file.set("StartCalendarInterval", intervals);
  const auto found = findingsOf(file);
  ASSERT_EQ(found.size(), 402U);
  EXPECT_EQ(found[400], "error: and 1 more error");
  EXPECT_EQ(found[401], "warning: and 30 more warnings");

  std::string repeated = "<dict><key>Label</key><string>a</string><key>Program</key><string>/bin/ls</string>";
  for (int i = 0; i < 1235; ++i) repeated += "<key>RunAtLoad</key><true/>";
  const auto ofReader = findingsIn(repeated + "</dict>");
  ASSERT_EQ(ofReader.size(), 101U) << "the reader keeps 100 of 1234";
  EXPECT_EQ(ofReader.back(), "warning: and 1134 more warnings");
}

TEST(LintTest, LongTextsAreShortenedInTheMiddle) {
  // U+20AC has three bytes, which must stay together.
  std::string key = "begin";
  for (int i = 0; i < 1000; ++i) key += "\u20ac";
  const auto found = lint(
      propertylist::writeBinary(job({{key + "end", true}, {"ProcessType", std::string(9000, 'x')}})), smallMachine());
  ASSERT_EQ(found.size(), 1U);
  EXPECT_LE(found[0].keyPath.size(), 403U);
  EXPECT_TRUE(found[0].keyPath.starts_with("begin\u20ac\u20ac")) << found[0].keyPath;
  EXPECT_TRUE(found[0].keyPath.ends_with("\u20acend"));
  EXPECT_NE(found[0].keyPath.find("\u20ac...\u20ac"), std::string::npos);
}

constexpr const char* declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
constexpr const char* doctype =
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://www.apple.com/x.dtd\">\n";
constexpr const char* list = "<plist version=\"1.0\"><dict/></plist>";

TEST(PrologTest, DefectsThatOnlyMacOSToleratesAreReported) {
  const std::string good = std::string(declaration) + doctype + list;
  const std::string space = "white space before the XML declaration";
  const std::string late = "the XML declaration isn't at the start of the file";
  const std::string quotes = "typographic quotes instead of straight ones";
  const std::string identifiers = "the identifiers of the DOCTYPE aren't quoted";
  const struct {
    std::string text;
    std::string finding;
    std::size_t line = 0;
    std::size_t column = 0;
  } table[] = {
      {good, ""},
      {"\xEF\xBB\xBF" + good, ""},
      {std::string(doctype) + list, ""},
      {list, ""},
      {std::string("\n\n") + list, ""},
      {"\n" + good, space, 2, 1},
      {"<!-- a > b -->" + good, late, 1, 15},
      {std::string(declaration) + "<!-- “quoted” <!DOCTYPE x PUBLIC> -->" + doctype + list, ""},
      {std::string(declaration) + "<!DOCTYPE plist PUBLIC -//Apple http://www.apple.com/x.dtd>" + list, identifiers, 2,
       1},
      {std::string(declaration) + "<!DOCTYPE plist>" + list, ""},
      {std::string(declaration) + "<!DOCTYPE plist SYSTEM 'x'>" + list, ""},
      {std::string(declaration) + "<!DOCTYPE plist PUBLIC “a” “b”>" + list, quotes, 2, 24},
      {"<?xml version=”1.0\"?>" + std::string(list), quotes, 1, 15},
      {"<plist version=”1.0\"><string>a</string></plist>", quotes, 1, 16},
      {"<plist version=\"1.0\"><string a=“x”>a</string></plist>", ""},  // not the prolog
      {"<string>“quoted”</string>", ""},
  };
  for (const auto& row : table) {
    const propertylist::Positions positions;
    Findings findings(positions);
    checkProlog(row.text, findings);
    const auto found = std::move(findings).inOrder();
    ASSERT_EQ(found.size(), row.finding.empty() ? 0U : 1U) << row.text;
    if (found.empty()) continue;
    EXPECT_EQ(found[0].message, row.finding + "; macOS accepts this, other programs may not");
    EXPECT_EQ(found[0].line, row.line) << row.text;
    EXPECT_EQ(found[0].column, row.column) << row.text;
    EXPECT_EQ(found[0].severity, Severity::Warning);
  }
}

}  // namespace
}  // namespace mirvel::lint
