#include "core/commands/CommandRepairs.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "core/commands/RepairsFixture.h"
#include "core/propertylist/Writer.h"
#include "core/text/Text.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;

struct CommandRepairsTest : RepairsFixture {
  fs::path file(const std::string& name, mode_t mode, const std::string& content = "") const {
    fs::path path = folder.write(name, content);
    EXPECT_EQ(::chmod(path.c_str(), mode), 0);
    return path;
  }
  /// A path of the folder in double quotes.
  std::string quoted(const std::string& name) const { return '"' + (folder.path() / name).string() + '"'; }
};

TEST_F(CommandRepairsTest, FilesRunDirectlyByThreeExactPermissionsElseByAnInterpreter) {
  struct Row {
    std::string name;
    mode_t mode;
    std::string interpreter;
    std::string content = {};
  };
  const std::vector<Row> rows{
      {"direct.sh", 0755, ""},
      {"direct.py", 0744, ""},
      {"odd", 0645, ""},
      {"mine.sh", 0700, "/bin/sh "},
      {"all.sh", 0777, "/bin/sh "},
      {"setuid.sh", 04755, "/bin/sh "},
      {"a b.sh", 0644, "/bin/sh "},
      {"a.BASH", 0644, "/bin/bash "},
      {"a.scpt", 0644, "/usr/bin/osascript "},
      {"a.workflow", 0644, "/usr/bin/automator "},
      {"a.automator", 0644, "/usr/bin/automator "},
      {"a.pl", 0644, "/usr/bin/perl "},
      {"a.php", 0644, "/usr/bin/php "},
      {"a.py", 0644, "/usr/bin/python3 "},
      {"a.rb", 0644, "/usr/bin/ruby "},
      {"a.txt", 0644, "/usr/bin/open ", "#!/bin/zsh\n"},
      {"script", 0644, "/usr/bin/env python3 -u ", "#! /usr/bin/env python3 -u \r\nprint()\n"},
      {"one line", 0644, "/bin/zsh ", "#!/bin/zsh"},
      {"long", 0644, "/bin/zsh ", "#!/bin/zsh\n" + std::string(100000, 'x')},
      {"bare", 0644, "/usr/bin/open ", "#!\n/bin/zsh"},
      {"plain", 0644, "/usr/bin/open ", " #!/bin/zsh"},
      {".profile", 0644, "/usr/bin/open "},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(repairs.commandForFile(file(row.name, row.mode, row.content)), row.interpreter + quoted(row.name));
  }
  EXPECT_EQ(repairs.commandForFile("/none/x.sh"), "/bin/sh \"/none/x.sh\"");
  EXPECT_EQ(repairs.commandForFile("/none/x"), "/usr/bin/open \"/none/x\"");
  EXPECT_EQ(repairs.commandForFile("/usr/bin"), "/usr/bin/open \"/usr/bin\"");
}

TEST_F(CommandRepairsTest, ApplicationsRunByTheirExecutable) {
  const struct {
    std::string bundle;
    std::optional<propertylist::Value> name;  ///< in the property list of the bundle
    std::string executable;
    std::string expected;
  } table[] = {
      {"Named.app", "The Tool", "Contents/MacOS/The Tool", "Named.app/Contents/MacOS/The Tool"},
      {"Slash.app/", "x", "Contents/MacOS/x", "Slash.app/Contents/MacOS/x"},
      {"Plain.app", {}, "Contents/MacOS/Plain", "Plain.app/Contents/MacOS/Plain"},
      {"Gone.app", "missing", "Contents/MacOS/Gone", "Gone.app"},
      {"Climbing.app", "../../x", "x", "Climbing.app"},
      {"Number.app", 3, "x", "Number.app"},
  };
  for (const auto& row : table) {
    if (row.name) {
      file(row.bundle + "/Contents/Info.plist", 0644,
           *propertylist::writeXml(propertylist::Dictionary{{"CFBundleExecutable", *row.name}}));
    }
    file(row.bundle + '/' + row.executable, 0755);
    EXPECT_EQ(repairs.commandForFile(folder.path() / row.bundle), quoted(row.expected));
  }
  file("Damaged.app/Contents/Info.plist", 0644, "<plist>");
  EXPECT_EQ(repairs.commandForFile(folder.path() / "Damaged.app"), quoted("Damaged.app"));
}

TEST_F(CommandRepairsTest, ToolsGetTheirFullPath) {
  const std::vector<std::pair<std::string, std::string>> rows{
      {"perl x.pl", "/usr/bin/perl x.pl"},
      {"python", "/usr/bin/python"},
      {"zsh -c ls", "/bin/zsh -c ls"},
      {"perlx y", "perlx y"},
      {"ls -l", "/bin/ls -l"},
      {"ls", "ls"},  // two characters
      {"l\u00e4", "l\u00e4"},
      {"./x", "./x"},
      {"/bin/ls", "/bin/ls"},
      {"'ls' -l", "'ls' -l"},
      {"\"ls\" -l", "\"ls\" -l"},
      {"l's' -l", "/bin/l's' -l"},
      {"bin x", "/opt/bin/bin x"},
      {"unknown x", "unknown x"},
      {"odd( x", "odd( x"},
      {"-x y", "-x y"},
      {"ll x", "ll x"},
      {"bin/x y", "bin/x y"},
      {"broken x", "broken x"},
      {"vi\\m x", "vi\\m x"},
      {" ls x", " ls x"},
      {"~/tool", "/Users/x/tool"},
      {"~/tool ~/a", "/Users/x/tool ~/a"},
      {"$HOME/tool  'a b'", "/Users/x/tool  'a b'"},
      {"~/other x", "~/other x"},
  };
  for (const auto& [typed, repaired] : rows) EXPECT_EQ(repairs.repairCommand(typed), repaired);
}

TEST_F(CommandRepairsTest, KnownToolsAndPathsAskNobody) {
  for (const char* text : {"perl x", "sh x", "/bin/ls", "ab", ".x y"}) (void)repairs.repairCommand(text);
  EXPECT_TRUE(which.words.empty());
  (void)repairs.repairCommand("g'r'e\"p\" x");
  EXPECT_EQ(which.words, std::vector<std::string>{"grep"});
}

TEST_F(CommandRepairsTest, TildesThatMeanTheHomeFolderAreExpanded) {
  const std::vector<std::pair<std::string, std::string>> rows{
      {"~", "/Users/x"},
      {"~/a ~/b", "/Users/x/a /Users/x/b"},
      {"~bob", "/Users/xbob"},
      {"ls ~", "ls /Users/x"},
      {"ls '~/a'", "ls '/Users/x/a'"},
      {"a~ b~c", "a~ b~c"},
      {"~~", "/Users/x~"},
      {"", ""},
  };
  for (const auto& [typed, expanded] : rows) EXPECT_EQ(repairs.expandTilde(typed), expanded);
  CommandRepairs odd(defaults, commands, interface, which, localize, "/~ ~");
  EXPECT_EQ(odd.expandTilde("~/a"), "/~ ~/a");
}

TEST_F(CommandRepairsTest, SudoIsStrippedUnlessAnOptionFollows) {
  const std::vector<std::pair<std::string, std::string>> rows{
      {"sudo launchctl list", "launchctl list"},
      {"SUDO /bin/Ls", "/bin/Ls"},
      {"/usr/bin/sudo ls", "ls"},
      {"/usr/bin/sudo -u x ls", "/usr/bin/sudo -u x ls"},
      {"sudo -u x ls", "sudo -u x ls"},
      {"sudo a", "a"},
      {"sudo ", "sudo "},
      {"sudoku x", "sudoku x"},
      {"ls sudo x", "ls sudo x"},
  };
  for (const auto& [run, stripped] : rows) EXPECT_EQ(repairs.stripSudo(run), stripped);
}

TEST_F(CommandRepairsTest, WithoutHelpNothingIsRepaired) {
  ASSERT_TRUE(defaults.setAutomaticHelp(false));
  EXPECT_EQ(repairs.commandForFile("/none/x.sh"), std::nullopt);
  EXPECT_EQ(repairs.repairCommand("perl x.pl"), "perl x.pl");
  EXPECT_EQ(repairs.expandTilde("~/a"), "~/a");
  EXPECT_EQ(repairs.stripSudo("sudo ls -l"), "sudo ls -l");
  interface.answer.button = Interface::alternateButton;
  EXPECT_EQ(repairs.checkComplexCommand("echo hi > /tmp/x", "job"), "echo hi > /tmp/x");
  EXPECT_EQ(interface.alerts.size(), 1U);
}

TEST_F(CommandRepairsTest, OnlyShellSyntaxIsAskedAbout) {
  interface.answer.button = Interface::alternateButton;
  const std::vector<std::pair<std::string, std::string>> rows{
      {"echo hi > /tmp/x", ">"},
      {"exec ls", "exec"},
      {"ls | wc", "|"},
      {"cat < x | wc", "<"},
      {"ls; ls", ";"},
      {"say it\u2019s", "\u2019"},
      {"a > bc", ">"},
      {"/bin/sh -c date >> x", ">"},
      {"grep 'a|b' f > x", ">"},
      {"it\u2019s", ""},
      {"a>b", ""},
      {"a > b", ""},
      {"executable x", ""},
      {"/bin/ls -l '$a' & b", ""},
      {"/bin/sh -c \"date >> x\"", ""},
      {"/bin/sh -c 'exec a; b | c'", ""},
      {"python3 -c 'import os; os.nice(1)'", ""},
      {"find . -exec rm {} \\;", ""},
  };
  for (const auto& [run, sign] : rows) {
    interface.alerts.clear();
    EXPECT_EQ(repairs.checkComplexCommand(run, "job"), run);
    ASSERT_EQ(interface.alerts.size(), sign.empty() ? 0U : 1U) << run;
    if (sign.empty()) continue;
    EXPECT_EQ(interface.alerts[0].informativeText, "The command runs without a shell, so the program would get \u201c" +
                                                       sign + "\u201d as an ordinary argument.");
  }
  EXPECT_TRUE(interface.savePanels.empty());
}

TEST_F(CommandRepairsTest, OnlyADecisionGivesACommandAndSuppressesTheQuestion) {
  const struct {
    int answer;
    std::optional<fs::path> script;
    bool isDecision;
  } rows[] = {{Interface::otherButton, {}, false},
              {Interface::defaultButton, {}, false},  // the save panel was cancelled
              {Interface::defaultButton, folder.path() / "a.sh", true},
              {Interface::alternateButton, {}, true}};
  for (const auto& row : rows) {
    ASSERT_TRUE(defaults.set(Defaults::Key::suppressAlertComplexRun, false));
    interface.alerts.clear();
    interface.savePanels.clear();
    interface.answer = {.button = row.answer, .isSuppressed = true};
    interface.savePath = row.script;
    EXPECT_EQ(repairs.checkComplexCommand("ls | wc", "job").has_value(), row.isDecision);
    (void)repairs.checkComplexCommand("ls | wc", "job");
    EXPECT_EQ(interface.alerts.size(), row.isDecision ? 1U : 2U) << row.answer;
    EXPECT_EQ(interface.savePanels.empty(), row.answer != Interface::defaultButton);
    EXPECT_EQ(interface.alerts.front().returnAnswer(), Interface::defaultButton);
    EXPECT_EQ(interface.alerts.front().escapeAnswer(), Interface::otherButton);
  }
  EXPECT_TRUE(interface.errors.empty());
}

TEST_F(CommandRepairsTest, AComplexCommandBecomesAScript) {
  const std::string run = "ls | wc -l \u2019x";
  for (const char* name : {"job.sh", "two words.sh", "it's.sh"}) {
    interface.savePath = folder.path() / name;
    const std::string command = repairs.checkComplexCommand(run, "com.x.job").value_or("");
    EXPECT_EQ(Text::separateCommand(command), (std::vector<std::string>{"/bin/sh", interface.savePath->string()}));
    EXPECT_EQ(testdata::bytes(*interface.savePath), "#!/bin/sh\n\n" + run);
  }
  interface.savePath = folder.path() / "job.sh";
  EXPECT_EQ(repairs.checkComplexCommand(run, "job"), "/bin/sh '" + interface.savePath->string() + "'");
  EXPECT_EQ(interface.savePanels.at(0).name, "com.x.job");
}

TEST_F(CommandRepairsTest, AScriptThatCantBeWrittenGivesNoCommand) {
  interface.savePath = folder.path() / "missing" / "job.sh";
  EXPECT_EQ(repairs.checkComplexCommand("ls | wc", "job"), std::nullopt);
  EXPECT_EQ(interface.errors.size(), 1U);
}

TEST_F(CommandRepairsTest, FileArgumentsAreTheAbsoluteOnes) {
  EXPECT_EQ(repairs.fileArguments("/bin/cp \"/a b\" ~/c d --to=/e '/f'"),
            (std::vector<fs::path>{"/bin/cp", "/a b", "/Users/x/c", "/f"}));
  EXPECT_TRUE(repairs.fileArguments("").empty());
}

}  // namespace
}  // namespace mirvel
