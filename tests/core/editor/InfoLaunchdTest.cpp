#include "core/editor/InfoLaunchd.h"

#include <gmock/gmock.h>

#include "core/catalogue/Launchd.h"
#include "core/propertylist/Encoding.h"
#include "support/ProgramFixture.h"
#include "support/RecordingShell.h"
#include "support/Untouched.h"

namespace mirvel {
namespace {

using propertylist::Array;
using propertylist::Dictionary;
using propertylist::Value;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

/// An XML list as the program writes it, with these lines in its dictionary.
std::string listOf(const std::string& lines) {
  return std::string(propertylist::xmlDeclaration) + std::string(propertylist::xmlDoctype) +
         "<plist version=\"1.0\">\n<dict>\n" + lines + "</dict>\n</plist>\n";
}

std::string replaced(std::string text, const std::string& part, const std::string& by) {
  const auto at = text.find(part);
  if (at == std::string::npos) throw std::runtime_error("no " + part);
  return text.replace(at, part.size(), by);
}

const std::string label = "\t<key>Label</key>\n\t<string>a</string>\n";
const std::string nice = "\t<key>Nice</key>\n\t<integer>5</integer>\n";

class InfoLaunchdTest : public testdata::ProgramFixture {
 protected:
  /// Selects the job of a file with this content, and opens the sheet.
  InfoLaunchd& open(const std::string& content, Kind kind = Kind::userAgent) {
    file = write(kind, "a.plist", content);
    scan();
    program().selection.select(jobNamed("a"));
    return reopen();
  }
  InfoLaunchd& reopen() {
    sheet = std::make_unique<InfoLaunchd>(program().session, program().saving, program().repairs,
                                          program().selection.launchd());
    return *sheet;
  }
  Launchd& job() { return *program().selection.launchd(); }
  bool hasChanges() { return program().editing.hasUnsavedChanges(); }
  std::string saved() {
    program().actions.save(program().selection.launchd());
    return helpers.requests.empty() ? "nothing" : helpers.requests.back().text("string");
  }

  testdata::RecordingShell shell{program()};
  std::filesystem::path file;
  std::unique_ptr<InfoLaunchd> sheet;
};

TEST_F(InfoLaunchdTest, ShowsWhatASaveWouldWrite) {
  const Dictionary keys{{"Label", "a"}, {"Nice", 5}};
  const std::string plain = listOf(label + nice);
  const std::string asUtf16 = "\xFE\xFF" + propertylist::utf16BigEndian(replaced(plain, "UTF-8", "UTF-16"));
  const std::string rows[] = {plain, replaced(plain, "<dict>", "<dict><!-- mine -->"), asUtf16,
                              propertylist::writeBinary(keys),
                              "<dict><key>Nice</key><integer>0x5</integer>" + label + "</dict>"};
  for (const std::string& row : rows) {
    EXPECT_EQ(open(row).text(), plain) << row;
    EXPECT_TRUE(sheet->isEditable());
  }
  EXPECT_EQ(sheet->title(), "Info – a");
}

TEST_F(InfoLaunchdTest, ShowsUnsavedEditsAndLeavesThemAlone) {
  (void)open(listOf(label + "\t<key>Program</key>\n\t<string>/bin/ls</string>\n"));
  Launchd& edited = *program().editing.markJobChanged();
  edited.plist().nice = 5;
  edited.plist().run = "~/run x";
  const std::string home = roots.home;
  EXPECT_EQ(reopen().text(), listOf(label + nice + "\t<key>ProgramArguments</key>\n\t<array>\n\t\t<string>" + home +
                                    "/run</string>\n\t\t<string>x</string>\n\t</array>\n"))
      << "the command as a save repairs it";
  EXPECT_EQ(job().plist().run, "~/run x");
  EXPECT_EQ(job().plist().program, "/bin/ls");
  EXPECT_THAT(interface.alerts, IsEmpty());
}

TEST_F(InfoLaunchdTest, AJobThatCantBeEditedIsShownAsItIsInItsFile) {
  const std::string content = replaced(listOf(label), "<dict>", "<dict><!-- theirs -->");
  EXPECT_TRUE(foundation.defaults.setShowSystemJobs(true));
  EXPECT_EQ(open(content, Kind::systemDaemon).text(), content);
  EXPECT_FALSE(sheet->isEditable());
  EXPECT_THAT(sheet->notices(content), ElementsAre("This job can’t be edited."));
  EXPECT_TRUE(sheet->change(listOf(label)));
  EXPECT_FALSE(hasChanges());

  EXPECT_TRUE(foundation.defaults.set(Defaults::Key::editSystemJobs, true));
  EXPECT_TRUE(reopen().isEditable());
}

TEST_F(InfoLaunchdTest, AJobWithValuesThatXmlLacksCantBeShown) {
  (void)open(propertylist::writeBinary(Dictionary{{"Label", "a"}, {"Foo", propertylist::Set{{1}}}}));
  EXPECT_EQ(sheet->text(), "");
  EXPECT_FALSE(sheet->isEditable());
  EXPECT_THAT(sheet->notices(""), SizeIs(1));
}

TEST_F(InfoLaunchdTest, ATextThatIsNoJobIsRefusedWhereItsFaultIs) {
  const std::string shown = open(listOf(label + nice)).text();
  const struct {
    const char* part;
    const char* by;
    const char* at;  ///< the point of the problem in the text; null for none
    const char* reason;
  } table[] = {
      {"<integer>5", "<integer>5m", "<integer>5m", "Line 8: <integer> contains `5m`"},
      {"</string>\n", "</strin>\n", "</strin>", "Line 6: "},
      {"</plist>\n", "", nullptr, "Line 10: "},
      {"<?xml", "<xml", "<xml", "Line 1: "},
      {"</dict>", "<key>Nice</key><integer>6</integer></dict>", "<key>Nice</key><integer>6", "Line 9: "},
      {"</plist>\n", "</plist>\nmore", "more", "Line 11: data after the end"},
      {"Label", "Name", "<dict>", "Line 4: “Label” is missing"},
      {"<string>a</string>", "<integer>1</integer>", "<integer>1", "Line 6: “Label” isn’t a string"},
      {"<string>a</string>", "<array/>", "<array/>", "Line 6: “Label” isn’t a string"},
  };
  for (const auto& row : table) {
    const std::string text = replaced(shown, row.part, row.by);
    const auto problem = sheet->change(text);
    ASSERT_TRUE(problem) << row.by;
    EXPECT_THAT(problem->reason, HasSubstr(row.reason)) << row.by;
    if (row.at) {
      EXPECT_EQ(problem->point, text.find(row.at)) << problem->reason;
    }
  }
  EXPECT_EQ(sheet->change("<array/>")->reason, "Line 1: The property list isn’t a dictionary");
  EXPECT_TRUE(sheet->change(""));
  EXPECT_TRUE(sheet->change("bplist00"));
  EXPECT_FALSE(hasChanges());
  EXPECT_EQ(shell.count("showEdit"), 0U);
}

TEST_F(InfoLaunchdTest, AChangedTextIsOneEditThatIsNotSavedYet) {
  const std::string nested =
      "\t<key>Foo</key>\n\t<array>\n\t\t<dict>\n\t\t\t<key>b</key>\n\t\t\t<real>1</real>\n"
      "\t\t</dict>\n\t\t<data>\n\t\tAAA=\n\t\t</data>\n\t</array>\n"
      "\t<key>KeepAlive</key>\n\t<dict>\n\t\t<key>Unknown</key>\n\t\t<array/>\n\t</dict>\n";
  const std::string before = open(listOf(label + nice)).text();
  job().kind = Kind::localAgent;
  const std::string typed = listOf(nested + label + nice);
  EXPECT_EQ(sheet->change(typed), std::nullopt);
  EXPECT_TRUE(hasChanges());
  EXPECT_EQ(shell.count("showEdit"), 1U);
  EXPECT_EQ(job().plistData(), typed);
  EXPECT_EQ(job().kind, Kind::localAgent);
  EXPECT_EQ(job().originalKind, Kind::userAgent);
  EXPECT_EQ(testdata::bytes(file), before);
  EXPECT_THAT(helpers.requests, IsEmpty());

  program().editing.undo();
  EXPECT_FALSE(hasChanges());
  EXPECT_EQ(job().plistData(), before);
  program().editing.redo();
  EXPECT_EQ(job().plistData(), typed);
}

TEST_F(InfoLaunchdTest, TheSavedFileIsTheTypedOne) {
  const std::string foo = "\t<key>Foo</key>\n\t<dict>\n\t\t<key>b</key>\n\t\t<true/>\n\t</dict>\n";
  const std::string rows[] = {
      listOf(label),                                                                   // keys are removed, known or not
      listOf(foo + label + replaced(nice, "<integer>5</integer>", "<real>5</real>")),  // the same number as a real
      listOf(label + "\t<key>Program</key>\n\t<string>/bin/ls</string>\n"),            // commands keep their form
      listOf(replaced(foo, "<true/>", "<false/>") + label + nice),
      listOf(replaced(foo, "\t\t<key>b</key>\n\t\t<true/>\n", "\t\t<key>c</key>\n\t\t<string></string>\n") + label),
      listOf(label + replaced(nice, "<integer>5</integer>", "<string>ä &lt; b</string>")),
  };
  for (const std::string& row : rows) {
    (void)open(listOf(foo + label + nice));
    ASSERT_EQ(sheet->change(row), std::nullopt);
    EXPECT_EQ(saved(), row);
    (void)write(Kind::userAgent, "a.plist", row);
    helpers.requests.back().reply({});
    settle();
  }
}

/// The judge of the result is another reader, that of Python.
TEST_F(InfoLaunchdTest, AKeyTypedIntoAnyPublishedJobIsTheOnlyChange) {
  MIRVEL_REQUIRE_TESTDATA(corpus, "corpus");
  for (const auto& published : testdata::files(corpus, ".plist")) {
    (void)write(Kind::userAgent, published.filename(), testdata::bytes(published));
  }
  testdata::Untouched untouched;
  for (const auto& job : Jobs(scan())) {
    program().selection.select(job);
    const std::string shown = reopen().text();
    EXPECT_EQ(sheet->change(replaced(shown, "<dict>", "<dict><key>Typed</key><true/>")), std::nullopt) << job->name;
    untouched.add(job->url.text(), "Typed", testdata::bytes(job->url.path()), *this->job().plistData());
    program().editing.undo();
    EXPECT_EQ(this->job().plistData(), shown) << job->name;
    EXPECT_FALSE(hasChanges());
  }
  EXPECT_GT(untouched.count(), 100U);
  untouched.expectNoComplaints();
}

TEST_F(InfoLaunchdTest, TheDeclaredEncodingOfATypedTextIsIgnored) {
  const std::string shown = open(listOf(label)).text();
  for (const char* encoding : {"UTF-16", "ISO-8859-1", "no such"}) {
    const std::string typed = replaced(replaced(shown, ">a<", ">ä<"), "UTF-8", encoding);
    ASSERT_EQ(sheet->change(typed), std::nullopt) << encoding;
    EXPECT_EQ(job().plist().name, "ä") << encoding;
    program().editing.undo();
  }
}

TEST_F(InfoLaunchdTest, AnUnchangedTextChangesNothing) {
  const std::string shown = open(replaced(listOf(label), "<dict>", "<dict><!-- mine -->")).text();
  EXPECT_EQ(sheet->change(shown), std::nullopt);
  EXPECT_FALSE(hasChanges());
  EXPECT_EQ(shell.count("showEdit"), 0U);
}

TEST_F(InfoLaunchdTest, AChangeGoesToTheJobOfTheSheetOrNowhere) {
  writeJob(Kind::userAgent, "b");
  (void)open(listOf(label));
  const std::string typed = listOf(label + nice);
  const auto first = program().selection.job();

  program().selection.select(jobNamed("b"));
  EXPECT_THAT(sheet->change(typed)->reason, HasSubstr("“a” is no longer selected"));
  EXPECT_FALSE(hasChanges());
  program().selection.select(nullptr);
  EXPECT_TRUE(sheet->change(typed));

  program().selection.select(first);
  first->readAgain();
  scan();
  ASSERT_NE(program().selection.job(), first) << "a scan has replaced the object";
  EXPECT_EQ(sheet->change(typed), std::nullopt);
  EXPECT_EQ(job().plist().nice, 5);
  EXPECT_TRUE(program().editing.expectsInFile(Checksum::ofFile(testdata::bytes(file)).text()));
}

TEST_F(InfoLaunchdTest, AChangeOfTheFileMeanwhileIsAConflictWhenItIsSaved) {
  (void)open(listOf(label));
  (void)write(Kind::userAgent, "a.plist", listOf(label + "\t<key>Theirs</key>\n\t<true/>\n"));
  scan();
  EXPECT_EQ(sheet->change(listOf(label + nice)), std::nullopt);
  EXPECT_FALSE(program().editing.expectsInFile(Checksum::ofFile(testdata::bytes(file)).text()));
}

TEST_F(InfoLaunchdTest, NothingChangesWhileTheJobIsBeingSaved) {
  (void)open(listOf(label));
  {
    const auto saving = program().saving.begin();
    EXPECT_THAT(sheet->change(listOf(label + nice))->reason, HasSubstr("is being saved"));
  }
  EXPECT_FALSE(hasChanges());
  EXPECT_EQ(sheet->change(listOf(label + nice)), std::nullopt);
}

TEST_F(InfoLaunchdTest, InvalidInputOfOtherKeysStaysInItsFields) {
  (void)open(listOf(label + nice));
  (void)program().editing.markJobChanged();
  program().editing.unfinished() = {.tables = {{"EnvironmentVariables", {{.cells = {"", "x"}}}}, {"PathState", {{}}}},
                                    .texts = {{"Nice", "5m"}, {"TimeOut", "x"}},
                                    .trees = {{"Sockets", {{.name = "", .content = std::int64_t{5}}}}}};
  EXPECT_THAT(reopen().notices(sheet->text()),
              ElementsAre("Input in the editor that can’t be saved yet isn’t part of this text."));
  ASSERT_EQ(sheet->change(listOf(label + "\t<key>KeepAlive</key>\n\t<true/>\n")), std::nullopt);
  const Unfinished& input = program().editing.unfinished();
  EXPECT_THAT(input.texts, ElementsAre(std::pair(std::string("TimeOut"), std::string("x"))));
  EXPECT_THAT(input.tables, SizeIs(1));
  EXPECT_TRUE(input.tables.contains("EnvironmentVariables"));
  EXPECT_TRUE(input.trees.contains("Sockets"));
  program().editing.undo();
  EXPECT_THAT(program().editing.unfinished().texts, SizeIs(2));
}

TEST_F(InfoLaunchdTest, WhatWouldBeLostOrIsUnusedIsAnnounced) {
  const std::string comment = "Comments in this text won’t be saved.";
  const std::string inFile = "The comments in the job’s file aren’t shown here. Saving the job removes them.";
  const struct {
    std::string file;
    std::string text;
    std::vector<std::string> notices;
  } table[] = {
      {listOf(label), listOf(label + nice), {}},
      {listOf(label), listOf(label + "<!-- x -->"), {comment}},
      {listOf("<!-- x -->" + label), listOf(label), {inFile}},
      {listOf("<!-- x -->" + label), listOf("<!-- x -->" + label), {comment}},
      {listOf(label), listOf(label) + "<", {}},
      {listOf(label),
       listOf(label + "<key>Nice</key><string>5</string><key>Foo</key><true/>"),
       {"Kept as typed, but unknown or of the wrong type: Nice"}},
      {listOf(label),
       listOf(label + "<key>KeepAlive</key><dict><key>Crashed</key><integer>2</integer></dict>"),
       {"Kept as typed, but unknown or of the wrong type: KeepAlive.Crashed"}},
  };
  for (const auto& row : table) EXPECT_EQ(open(row.file).notices(row.text), row.notices) << row.text;
}

TEST_F(InfoLaunchdTest, ClosingAsksOnlyIfTextWouldBeLost) {
  (void)open(listOf(label));
  EXPECT_TRUE(sheet->mayClose(sheet->text()));
  EXPECT_THAT(interface.alerts, IsEmpty());
  for (const bool isDiscarded : {false, true}) {
    interface.answer.button = isDiscarded ? Interface::defaultButton : Interface::alternateButton;
    EXPECT_EQ(sheet->mayClose("x"), isDiscarded);
    EXPECT_EQ(interface.alerts.back().returnAnswer(), Interface::alternateButton) << "Return and Escape cancel";
    EXPECT_EQ(interface.alerts.back().escapeAnswer(), Interface::alternateButton);
  }
}

}  // namespace
}  // namespace mirvel
