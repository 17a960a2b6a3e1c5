#include <gtest/gtest.h>

#include "core/actions/SavePlan.h"
#include "core/commands/RepairsFixture.h"
#include "core/editor/GeneralRules.h"
#include "core/jobfile/Plist.h"
#include "core/propertylist/Writer.h"

namespace mirvel::jobfile {
namespace {

using Arguments = std::optional<std::vector<std::string>>;

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

}  // namespace
}  // namespace mirvel::jobfile
