#include "core/lint/Lint.h"

#include <gtest/gtest.h>

#include "core/lint/LintedJob.h"

namespace mirvel::lint {
namespace {

std::vector<std::string> findingsOn(const std::string& bytes) {
  std::vector<std::string> result;
  for (const Finding& finding : lint(bytes, smallMachine())) result.push_back(finding.text());
  return result;
}

TEST(LintTest, FindingsHaveTheirLocationsAndAreInFileOrder) {
  const std::string file =
      "<plist version=\"1.0\">\n"
      "<dict>\n"
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
  EXPECT_EQ(findingsOn(file), (std::vector<std::string>{
                                  "error: Label not found",
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
  for (const auto& row : table) EXPECT_EQ(findingsOn(row.bytes), row.findings) << row.bytes;
}

TEST(LintTest, AllErrorsAreReportedAtOnceAndTheOtherKeysAreChecked) {
  EXPECT_EQ(findingsOf(Dict{{"Label", 1},
                            {"ProgramArguments", List{"/bin/ls"}},
                            {"RunAtLoad", true},
                            {"Nice", "x"},
                            {"StartCalendarInterval", Dict{{"Hour", "3"}}},
                            {"Umask", "x"}}),
            (std::vector<std::string>{
                "error: Label: holds 1, an integer, where a string belongs",
                "error: StartCalendarInterval.Hour: Start calendar interval type error: \"3\", a string, where an "
                "integer belongs",
                "error: Nice: holds \"x\", a string, where an integer belongs",
                "warning: Umask: the value doesn't fit its key",
            }));
}

TEST(LintTest, WarningsOfTheReaderAreReported) {
  const std::string file =
      "<plist><dict><key>Label</key><string>a</string><key>Label</key><string>b</string>"
      "<key>Program</key><string>/bin/ls</string><key>RunAtLoad</key><true/></dict></plist>";
  const auto found = lint(file, smallMachine());
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].severity, Severity::Warning);
  EXPECT_NE(found[0].message.find("Label"), std::string::npos) << found[0].text();
  EXPECT_EQ(found[0].line, 1U);
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
  const auto ofReader = findingsOn(repeated + "</dict>");
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

TEST(LintTest, EveryPrefixOfAGoodFileIsAnError) {
  const auto whole = propertylist::writeXml(job({{"StartCalendarInterval", Dict{{"Hour", 3}, {"Minute", 0}}}}));
  ASSERT_TRUE(whole);
  ASSERT_TRUE(lint(*whole, smallMachine()).empty());
  const std::size_t end = whole->find("</plist>");
  for (std::size_t size = 0; size < end; ++size) {
    EXPECT_TRUE(hasErrors(lint(whole->substr(0, size), smallMachine()))) << size;
  }
}

}  // namespace
}  // namespace mirvel::lint
