#include <gmock/gmock.h>
#include <sys/stat.h>

#include "ctl/CommandFixture.h"
#include "ctl/Json.h"
#include "ctl/Printable.h"

namespace mirvel::ctl {
namespace {

using propertylist::Array;
using propertylist::Dictionary;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char* badJob = "<plist version=\"1.0\">\n<dict/>\n</plist>";

class CommandsTest : public CommandFixture {
 protected:
  const std::string goodJob =
      testdata::jobText("a.job", {{"ProgramArguments", Array{"/bin/ls", "-l"}},
                                  {"StartCalendarInterval", Dictionary{{"Hour", 9}, {"Minute", 0}}}});
};

TEST_F(CommandsTest, InvalidCommandLineIsAUsageError) {
  const struct {
    std::vector<std::string> arguments;
    std::string message;
  } table[] = {
      {{}, "mirvelctl: no command given; try mirvelctl --help\n"},
      {{"frob\x1b"}, "mirvelctl: unknown command frob\\x1b; try mirvelctl --help\n"},
      {{"lint"}, "mirvelctl lint: no file given\nusage: mirvelctl lint [--json] FILE...\n"},
      {{"lint", "--frob"}, "mirvelctl lint: unknown option --frob\nusage: mirvelctl lint [--json] FILE...\n"},
      {{"show", "a", "b"}, "mirvelctl show: expected one file\nusage: mirvelctl show [--json] FILE\n"},
      {{"list", "a"}, "mirvelctl list: expected no file\nusage: mirvelctl list [--system] [--json]\n"},
      {{"status", "a"}, "mirvelctl status: expected no file\nusage: mirvelctl status [--json]\n"},
      {{"list", "--json=1"},
       "mirvelctl list: option --json takes no value\nusage: mirvelctl list [--system] [--json]\n"},
      {{"convert", "a"},
       "mirvelctl convert: --to must be xml or binary\nusage: mirvelctl convert FILE --to xml|binary\n"},
      {{"convert", "a", "--to"},
       "mirvelctl convert: option --to requires a value\nusage: mirvelctl convert FILE --to xml|binary\n"},
      {{"help", "frob"}, "mirvelctl help: unknown command frob\nusage: mirvelctl help [COMMAND]\n"},
  };
  for (const auto& row : table) {
    const Outcome outcome = start(row.arguments);
    EXPECT_EQ(outcome.status, Usage) << row.message;
    EXPECT_EQ(outcome.err, row.message);
    EXPECT_EQ(outcome.out, "");
  }
}

TEST_F(CommandsTest, HelpCoversEveryCommand) {
  const Outcome all = start({"--help"});
  EXPECT_EQ(all.status, Success);
  for (const Subcommand& command : subcommands()) {
    const std::string name(command.name);
    EXPECT_THAT(all.out, HasSubstr("  " + name + ' '));
    const Outcome one = start({"help", name});
    EXPECT_THAT(one.out, StartsWith("usage: mirvelctl " + name + ' '));
    EXPECT_EQ(start({name, "--help"}).out, one.out);
  }
  EXPECT_THAT(start({"--version"}).out, testing::MatchesRegex("mirvelctl [0-9]+\\.[0-9]+\\.[0-9]+\n"));
  EXPECT_EQ(start({"lint", "--", "--help"}).status, Failed) << "a file of that name";
}

TEST_F(CommandsTest, LintReportsEachFileAndASummary) {
  const std::string good = file("good.plist", goodJob);
  const std::string bad = file("bad.plist", badJob);
  EXPECT_EQ(start({"lint", good}).out, good + ": ok\n");
  EXPECT_EQ(start({"lint", good}).status, Success);

  const Outcome both = start({"lint", good, bad});
  EXPECT_EQ(both.status, Failed);
  EXPECT_EQ(both.err, "");
  EXPECT_THAT(both.out, StartsWith(good + ": ok\n" + bad + ": error: Label not found\n" + bad +
                                   ": warning: line 2, column 1: the job has nothing to run"));
  EXPECT_THAT(both.out, testing::EndsWith("2 files: 1 ok, 0 with warnings, 1 with errors\n"));
}

TEST_F(CommandsTest, WarningsDoNotFailLint) {
  const Outcome warned = start({"lint", "-"}, "\n" + goodJob);
  EXPECT_EQ(warned.status, Success);
  EXPECT_THAT(warned.out, StartsWith("standard input: warning: line 2, column 1: "));

  const std::string open = file("open.plist", goodJob);
  ASSERT_EQ(::chmod(open.c_str(), 0666), 0);
  const Outcome outcome = start({"lint", open});
  EXPECT_EQ(outcome.status, Success);
  EXPECT_THAT(outcome.out, StartsWith(open + ": warning: can't be loaded: " + open + ": others may write to it"));
  EXPECT_THAT(outcome.out, HasSubstr("chmod go-w"));
}

TEST_F(CommandsTest, LintKnowsTheKindOfAJobByItsFolder) {
  const std::string expected = "UserName: only daemons can set UserName";
  const struct {
    const char* name;
    bool isAgent;
  } table[] = {
      {"user/LaunchAgents/a.plist", true},
      {"local/LaunchAgents/a.plist", true},
      {"local/LaunchDaemons/a.plist", false},
      {"user/LaunchAgents/old/a.plist", false},
      {"a.plist", false},
  };
  for (const auto& row : table) {
    const std::string path = job(row.name, "a", {{"UserName", "root"}, {"RunAtLoad", true}});
    EXPECT_EQ(start({"lint", path}).out.find(expected) != std::string::npos, row.isAgent) << row.name;
  }
}

TEST_F(CommandsTest, LintJsonHasOneObjectForEachFile) {
  const std::string good = file("good.plist", goodJob);
  const Outcome outcome = start({"lint", "--json", good, "-", "/nowhere"}, badJob);
  EXPECT_EQ(outcome.status, Failed);
  const Json json = Json::parse(outcome.out);
  ASSERT_EQ(json.size(), 3U);
  EXPECT_EQ(json[0], (Json{{"file", good}, {"ok", true}, {"findings", Json::array()}}));
  EXPECT_EQ(
      json[1]["findings"][0],
      (Json{{"severity", "error"}, {"message", "Label not found"}, {"line", 0}, {"column", 0}, {"key", "Label"}}));
  EXPECT_EQ(json[1]["findings"][1]["line"], 2);
  EXPECT_EQ(json[2]["ok"], false);
}

TEST_F(CommandsTest, UnreadableFilesAreReported) {
  const struct {
    std::string file;
    std::string message;
  } table[] = {
      {folder.path().string(), "can't read: Is a directory"},
      {"/nowhere/x", "can't read: No such file or directory"},
      {file("empty", ""), "the file is empty"},
      {file("text", "hello"), "line 1, column 1: "},
  };
  for (const auto& row : table) {
    EXPECT_THAT(start({"lint", row.file}).out, StartsWith(row.file + ": error: " + row.message));
    const Outcome shown = start({"show", row.file});
    EXPECT_EQ(shown.status, Failed);
    EXPECT_THAT(shown.err, StartsWith(row.file + ": " + row.message));
    const Outcome asJson = start({"show", "--json", row.file});
    EXPECT_EQ(asJson.status, Failed);
    EXPECT_EQ(Json::parse(asJson.out)["ok"], false);
    EXPECT_THAT(Json::parse(asJson.out)["error"].get<std::string>(), StartsWith(row.message));
    const Outcome converted = start({"convert", row.file, "--to", "xml"});
    EXPECT_EQ(converted.status, Failed);
    EXPECT_EQ(converted.out, "");
  }
}

TEST_F(CommandsTest, ShowDescribesAJob) {
  EXPECT_EQ(start({"show", "-"}, goodJob).out,
            "a.job\n"
            "  Command: /bin/ls -l\n"
            "  When: Every day at 09:00\n"
            "\n"
            "Label: \"a.job\"\n"
            "ProgramArguments:\n"
            "  - \"/bin/ls\"\n"
            "  - \"-l\"\n"
            "StartCalendarInterval:\n"
            "  Hour: 9\n"
            "  Minute: 0\n");
}

TEST_F(CommandsTest, ShowPrintsAnyPropertyList) {
  EXPECT_EQ(start({"show", "-"},
                  "<plist><array><data>AQID</data><array><real>1.5</real></array><dict/><array/>"
                  "<date>2001-01-01T00:00:00Z</date><true/></array></plist>")
                .out,
            "- 3 bytes: AQID\n"
            "-\n"
            "  - 1.5\n"
            "- (empty dictionary)\n"
            "- (empty array)\n"
            "- 2001-01-01T00:00:00Z\n"
            "- true\n");
  const Outcome refused = start({"show", "-"}, "<plist><dict><key>Label</key><integer>1</integer></dict></plist>");
  EXPECT_EQ(refused.status, Success);
  EXPECT_EQ(refused.out, "Label: 1\n\nnot a job: Label: holds 1, an integer, where a string belongs\n");
}

TEST_F(CommandsTest, ShowJsonHasTheJobAndItsRules) {
  const auto jobOf = [this](const Dictionary& keys) {
    return Json::parse(start({"show", "--json", "-"}, testdata::jobText("x", keys)).out)["job"];
  };
  EXPECT_EQ(jobOf({{"Program", "/bin/ls"}}), Json::parse(R"({"label": "x", "run": "/bin/ls",
            "iconPath": null, "scheduled": [], "unknownKeys": []})"));
  const Array calendar{Dictionary{{"Minute", 5}}, Dictionary{{"Hour", 9}, {"Minute", 5}},
                       Dictionary{{"Day", 1}, {"Hour", 9}}, Dictionary{{"Day", 29}, {"Month", 2}, {"Hour", 12}},
                       Dictionary{{"Weekday", 3}, {"Hour", 21}}};
  const Json job = jobOf({{"StartInterval", 7200}, {"Foo", true}, {"StartCalendarInterval", calendar}});
  EXPECT_EQ(job["scheduled"], Json::parse(R"([
            {"kind": "repeatInterval", "interval": 2, "unit": "hours"},
            {"kind": "everyHour", "minute": 5},
            {"kind": "everyDay", "time": "09:05"},
            {"kind": "dayOfMonth", "day": 0, "time": "09:00"},
            {"kind": "dayOfYear", "month": 1, "day": 28, "time": "12:00"},
            {"kind": "dayOfWeek", "day": 3, "time": "21:00"}])"));
  EXPECT_EQ(job["unknownKeys"], Json::array({"Foo"}));
  EXPECT_FALSE(Json::parse(start({"show", "--json", "-"}, "<plist><dict/></plist>").out).contains("job"));
}

TEST_F(CommandsTest, ConvertRoundTripsThroughBinary) {
  const Outcome binary = start({"convert", "-", "--to=binary"}, goodJob);
  EXPECT_THAT(binary.out, StartsWith("bplist00"));
  const Outcome xml = start({"convert", "--to", "xml", "-"}, binary.out);
  EXPECT_EQ(xml.out, start({"convert", "--to", "xml", "-"}, goodJob).out);
  EXPECT_THAT(xml.out, StartsWith("<?xml"));
}

TEST_F(CommandsTest, TerminalOutputHasColoursAndEscapedControlCharacters) {
  isTerminal = true;
  const std::string odd = start({"convert", "-", "--to", "xml"},
                                "<plist><string>\xC2\x9B"
                                "31m</string></plist>")
                              .out;
  EXPECT_THAT(odd, HasSubstr("<string>\\u009b31m</string>\n"));
  EXPECT_EQ(start({"convert", "-", "--to", "binary"}, goodJob).status, Usage);
  EXPECT_EQ(start({"lint", "-"}, goodJob).out, "standard input: \x1b[32mok\x1b[0m\n");
  EXPECT_THAT(start({"lint", "-"}, badJob).out, StartsWith("standard input: \x1b[31merror\x1b[0m: Label not found"));
  const Outcome shown =
      start({"show", "-"},
            "<plist><dict><key>Label</key><string>\xC2\x9Bx</string><key>\xC2\x9Bk</key><true/></dict></plist>");
  EXPECT_THAT(shown.out, Not(HasSubstr("\xC2\x9B")));
  EXPECT_THAT(start({"lint", "/tmp/\x1b[2J"}).out, Not(HasSubstr("\x1b[2J")));
  EXPECT_THAT(start({"show", "/tmp/\x1b[2J"}).err, StartsWith("/tmp/\\x1b[2J: can't read"));
}

TEST_F(CommandsTest, FailureToWriteTheOutputIsReported) {
  out.setstate(std::ios::badbit);
  const Outcome outcome = start({"--help"});
  EXPECT_EQ(outcome.status, Failed);
  EXPECT_EQ(outcome.err, "mirvelctl: can't write the output\n");
}

TEST(PrintableTest, ControlCharactersAreEscaped) {
  const struct {
    std::string text;
    std::string escaped;
  } table[] = {
      {"", ""},
      {"plain – ünïcödé 漢字 \U0001F600", "plain – ünïcödé 漢字 \U0001F600"},
      {"a\nb\tc\rd", "a\\nb\\tc\\rd"},
      {"\x1b[31mred\x1b[0m\a", "\\x1b[31mred\\x1b[0m\\x07"},
      {std::string("a\0b", 3), "a\\x00b"},
      {"\x7f", "\\u007f"},
      {"\xC2\x9B"
       "31m",
       "\\u009b31m"},  // ESC [ as one C1 character
      {"\xE2\x80\xAE"
       "txt",
       "\\u202etxt"},
      {"\xE2\x81\xA6", "\\u2066"},
      {"\xFF\xC3(", "\\xff\\xc3("},  // not UTF-8
      {"\xE2\x80", "\\xe2\\x80"},
      {"\xED\xA0\x80", "\\xed\\xa0\\x80"},  // a lone surrogate
  };
  for (const auto& row : table) EXPECT_EQ(printable(row.text), row.escaped);
  EXPECT_EQ(printable("a\n\tb\x1b", LineFeeds::Keep), "a\n\tb\\x1b");
}

TEST(PrintableTest, EscapingPreservesJsonValues) {
  const std::string odd = "\"quoted\" \\ \x1b \x7f \xC2\x9B \xE2\x80\xAE é";
  const std::string dumped = text(Json{{"v", odd}});
  EXPECT_EQ(printable(dumped), dumped) << "something in it isn't safe";
  EXPECT_EQ(Json::parse(dumped)["v"], odd);
}

}  // namespace
}  // namespace mirvel::ctl
