#include "core/actions/SavePlan.h"

#include <gtest/gtest.h>

#include <fstream>
#include <regex>

#include "core/actions/JobOnDisk.h"
#include "core/commands/RepairsFixture.h"
#include "core/editor/GeneralRules.h"
#include "core/jobfile/Plist.h"
#include "core/propertylist/Encoding.h"
#include "core/propertylist/Writer.h"

namespace mirvel::jobfile {
namespace {

namespace fs = std::filesystem;
using Arguments = std::optional<std::vector<std::string>>;

std::string repeated(const std::string& text, int count) {
  std::string result;
  for (int i = 0; i < count; ++i) result += text;
  return result;
}

struct SavePlanTest : RepairsFixture {
  Plist normalized(const std::string& run, const std::string& name = "label") {
    Plist plist;
    plist.run = run;
    plist.name = name;
    plist.program = "/before";
    plist.programArguments = {"before"};
    EXPECT_TRUE(normalizeForSave(plist, repairs));
    return plist;
  }
};

TEST_F(SavePlanTest, TheCommandIsRepairedAndSplit) {
  struct Row {
    std::string run, repaired;
    Arguments arguments;
  };
  const std::vector<Row> rows{
      {"perl '~/a b.pl' ~/c",
       "/usr/bin/perl '/Users/x/a b.pl' /Users/x/c",
       {{"/usr/bin/perl", "/Users/x/a b.pl", "/Users/x/c"}}},
      {"/bin/ls -l", "/bin/ls -l", {{"/bin/ls", "-l"}}},
      {"sudo launchctl list", "sudo launchctl list", {{"sudo", "launchctl", "list"}}},
      {"", "", std::nullopt},
      {"''", "''", std::nullopt},
      {"'' a", "'' a", {{"", "a"}}},
  };
  for (const auto& row : rows) {
    const Plist plist = normalized(row.run);
    EXPECT_EQ(plist.run, row.repaired);
    EXPECT_EQ(plist.program, std::nullopt);
    EXPECT_EQ(plist.programArguments, row.arguments) << row.run;
    EXPECT_EQ(plist.name, "label");
  }
}

TEST_F(SavePlanTest, TheLabelComesFromTheCommandAsItWasTyped) {
  EXPECT_EQ(normalized("~/my\\ tool.sh", "").name, "my tool");
  EXPECT_EQ(normalized("ls -l", "").name, "ls -l");
  EXPECT_EQ(normalized("ls", "").name.size(), 36U);
}

TEST_F(SavePlanTest, AComplexCommandBecomesAScriptIfTheUserAgrees) {
  interface.savePath = folder.path() / "a b.sh";
  const Plist plist = normalized("perl x | wc", "");
  EXPECT_EQ(plist.programArguments, (Arguments{{"/bin/sh", interface.savePath->string()}}));
  EXPECT_EQ(testdata::bytes(*interface.savePath), "#!/bin/sh\n\n/usr/bin/perl x | wc");
  EXPECT_EQ(interface.savePanels.at(0).name, plist.name);
}

TEST_F(SavePlanTest, CancellingChangesNothing) {
  interface.answer.button = Interface::otherButton;
  Plist plist;
  plist.run = "perl x | wc";
  const Plist before = plist.clone();
  EXPECT_FALSE(normalizeForSave(plist, repairs));
  EXPECT_EQ(plist, before);
  interface.answer.button = Interface::defaultButton;  // the panel that follows is cancelled
  EXPECT_FALSE(normalizeForSave(plist, repairs));
  EXPECT_EQ(plist, before);
}

TEST_F(SavePlanTest, ACommandThatWasNotEditedIsLeftAlone) {
  using List = propertylist::Array;
  const propertylist::Dictionary table[] = {
      {{"Program", "sh"}, {"ProgramArguments", List{"sh", "-c", "cp ~/a \"b  c\" > d"}}},
      {{"Program", "/usr/bin/env"}, {"ProgramArguments", List{"/usr/sbin/sshd", "-i"}}},
      {{"Program", "/my tool"}},
      {{"Program", List{"/bin/ls"}}, {"ProgramArguments", List{"ls"}}},
      {{"ProgramArguments", List{"perl", "", "a | b"}}},
      {{"ProgramArguments", List{}}},
  };
  for (propertylist::Dictionary file : table) {
    file.set("Label", "");
    Plist plist = *Plist::readTolerantly(propertylist::writeBinary(file));
    plist.nice = 5;
    EXPECT_TRUE(normalizeForSave(plist, repairs));
    file.set("Nice", 5);
    file.set("Label", plist.name);
    EXPECT_EQ(plist.encodeAll(), file) << plist.run;
    EXPECT_NE(plist.name, "");

    const std::string text = plist.run;
    plist.run = "/bin/other";
    EXPECT_TRUE(normalizeForSave(plist, repairs));
    EXPECT_NE(plist.encodeAll(), file);
    plist.run = GeneralRules::command(text, plist, repairs);
    EXPECT_TRUE(normalizeForSave(plist, repairs));
    EXPECT_EQ(plist.encodeAll(), file) << "typed back";
  }
  EXPECT_TRUE(interface.alerts.empty());
}

TEST_F(SavePlanTest, EveryJobNameHasAFileName) {
  const Roots roots = Roots::below(folder.path());
  const fs::path agents = *Kind(Kind::userAgent).folderURL(roots);
  const auto write = [&](const std::string& name) { std::ofstream(agents / name) << "x"; };
  fs::create_directories(agents);
  write("taken.plist");
  write(repeated("x", 249) + ".plist");
  const std::string emoji = "\U0001F469\u200D\U0001F680";
  const std::pair<std::string, std::string> table[] = {
      {"job", "job"},
      {"a/b", "a_b"},
      {"../../etc/x", ".._.._etc_x"},
      {"..", ".."},
      {" ", " "},
      {"it's \"quoted\"", "it's \"quoted\""},
      {emoji, emoji},
      {"\u0646\u0633\u062e", "\u0646\u0633\u062e"},
      {"taken", "taken#"},
      {"", "#"},
      {repeated("y", 249), repeated("y", 249)},
      {repeated("x", 249), repeated("x", 213) + '#'},
      {repeated("y", 250), repeated("y", 213) + '#'},
      {repeated("\u00e9", 300), repeated("\u00e9", 106) + '#'},
      {repeated("\U0001F680", 300), repeated("\U0001F680", 53) + '#'},
      {repeated("a/", 300), repeated("a_", 106) + "a#"},
  };
  const std::regex uuid("[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}");
  for (const auto& [name, fileName] : table) {
    const auto url = newFileURL(Kind::userAgent, name, roots);
    ASSERT_TRUE(url);
    EXPECT_EQ(url->path().parent_path(), agents) << name;
    EXPECT_EQ(std::regex_replace(url->lastPathComponent(), uuid, "#"), fileName + ".plist");
    EXPECT_LE(url->lastPathComponent().size(), 255U) << name;
    EXPECT_TRUE(propertylist::isUtf8(url->text())) << name;
    write(url->lastPathComponent());
    EXPECT_TRUE(fs::exists(url->path())) << name;
  }
}

}  // namespace
}  // namespace mirvel::jobfile
