#include "core/catalogue/Launchd.h"

#include <gtest/gtest.h>

#include "core/propertylist/Reader.h"
#include "core/text/Bytes.h"
#include "support/JobText.h"
#include "support/RecordingConsole.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

using propertylist::Array;
using propertylist::Dictionary;
using testdata::jobText;

class LaunchdReaderTest : public testing::Test {
 protected:
  std::shared_ptr<Launchd> read(const std::string& data, Kind kind = Kind::userAgent) {
    return Launchd::read(data, URL::file(file), kind, settings, console);
  }

  ScanSettings settings{
      .roots = Roots::ofMac("/Users/x"), .osascript = "/usr/bin/osascript", .scriptEditor = "/Editor"};
  testdata::RecordingConsole console;
  std::string file = "/jobs/a.plist";
};

TEST_F(LaunchdReaderTest, TheSummaryIsTheCommandWithAShortTool) {
  const struct {
    Dictionary keys;
    const char* summary;
  } table[] = {
      {{}, ""},
      {{{"Program", "/usr/bin/rsync"}, {"ProgramArguments", Array{"rsync", "-a", "/Users/x/a"}}}, "rsync -a ~/a"},
      {{{"Program", "/bin/sh"}, {"ProgramArguments", Array{"sh"}}}, "sh"},
      {{{"Program", "/bin/sh"}, {"ProgramArguments", Array{"/bin/sh"}}}, "sh /bin/sh"},
      {{{"Program", "/bin/sh"}}, "sh"},
      {{{"Program", "/bin/sh"}, {"ProgramArguments", Array{}}}, "sh"},
      {{{"ProgramArguments", Array{"/bin/sh", "/bin/ls", "/bin/sh"}}}, "sh /bin/ls /bin/sh"},
      {{{"ProgramArguments", Array{"", "/opt/tool", "/opt/x"}}}, "tool /opt/x"},
      {{{"ProgramArguments", Array{"/Users/x"}}}, "x"},
      {{{"ProgramArguments", Array{"/bin/ls", "/Users/x", "/Users/xy"}}}, "ls ~ /Users/xy"},
  };
  for (const auto& row : table) EXPECT_EQ(read(jobText("a", row.keys))->summary, row.summary);
}

TEST_F(LaunchdReaderTest, TheIconIsThatOfTheToolOrItsBundle) {
  const std::pair<const char*, std::optional<std::string>> table[] = {
      {"/usr/bin/rsync", "/usr/bin/rsync"},
      {"rsync", std::nullopt},
      {"./rsync.sh", std::nullopt},
      {"/usr/bin/osascript", "/Editor"},
      {"/Applications/Foo.app/Contents/MacOS/foo", "/Applications/Foo.app"},
      {"/Applications/Foo.app/Contents/Bar.app/bar", "/Applications/Foo.app/Contents/Bar.app"},
      {"/opt/tool.sh", "/opt/tool.sh"},
      {"/opt/v1.2/tool", "/opt/v1.2"},
      {"/Users/x/.local/bin/tool", std::nullopt},
      {"/opt/tool.", std::nullopt},
      {"/.", std::nullopt},
      {"//./..", std::nullopt},
      {"//opt/x.d//tool", "//opt/x.d"},
      {"/", "/"},
  };
  for (const auto& [tool, icon] : table) {
    EXPECT_EQ(read(jobText("a", {{"ProgramArguments", Array{tool}}}))->iconPath, icon) << tool;
  }
  EXPECT_EQ(read(jobText("a"))->iconPath, std::nullopt);

  const auto script = read(jobText("a", {{"ProgramArguments", Array{"/usr/bin/osascript", "-e", "beep"}}}));
  EXPECT_EQ(script->icon, Image::iconOfPath("/Editor"));
  settings.scriptEditor.reset();
  const auto plain = read(jobText("a", {{"ProgramArguments", Array{"/usr/bin/osascript", "-e", "beep"}}}));
  EXPECT_FALSE(plain->iconPath);
  EXPECT_EQ(plain->icon, Image::iconOfPath(file)) << "falls back to the job file";
}

TEST_F(LaunchdReaderTest, ChecksumAndTextAreThoseOfTheBytes) {
  const std::string text = jobText("Ünï");
  const std::string binary = propertylist::writeBinary(Dictionary{{"Label", "a"}});
  for (const std::string& data : {text, binary, text + "\n"}) {
    const auto job = read(data);
    ASSERT_TRUE(job);
    EXPECT_EQ(job->checksum, toBase64(*sha256(data)));
    EXPECT_EQ(job->textContent, data == binary ? "" : data);
  }
  EXPECT_TRUE(console.printed.empty());
}

TEST_F(LaunchdReaderTest, InvalidFilesAreLoggedAndYieldNoJob) {
  const struct {
    std::string data;
    const char* line;
  } table[] = {
      {"", "Error in: /jobs/a.plist\n"},
      {"no list", "Error in: /jobs/a.plist\n"},
      {jobText("a").substr(0, 120), "Error in: /jobs/a.plist\nline "},
      {*propertylist::writeXml(Array{"Label", "a"}), "Error in: /jobs/a.plist\n"},
      {*propertylist::writeXml(Dictionary{{"Program", "/bin/ls"}}), "Error in: /jobs/a.plist\nLabel not found"},
      {*propertylist::writeXml(Dictionary{{"Label", 1}}), "Error in: /jobs/a.plist\nLabel: holds 1"},
  };
  for (const auto& row : table) {
    console.printed.clear();
    EXPECT_FALSE(read(row.data)) << row.line;
    ASSERT_EQ(console.printed.size(), 1U) << row.line;
    EXPECT_TRUE(console.printed[0].starts_with(row.line)) << console.printed[0];
  }
  EXPECT_TRUE(console.logged.empty());
}

TEST_F(LaunchdReaderTest, InternalHelpersAreHiddenOrReadOnlyAsSystemJobsAre) {
  EXPECT_FALSE(read(jobText("app.mirvel.helper")));
  EXPECT_TRUE(console.printed.empty());
  EXPECT_TRUE(read(jobText("app.mirvelous"))->isEditable) << "of another vendor";
  settings.showInternalHelpers = true;
  EXPECT_FALSE(read(jobText("app.mirvel.helper"))->isEditable);
  EXPECT_FALSE(read(jobText("a"), Kind::systemAgent)->isEditable);
  settings.editSystemJobs = true;
  EXPECT_TRUE(read(jobText("a"), Kind::systemAgent)->isEditable);
}

TEST_F(LaunchdReaderTest, OnlyADisabledJobHasTheStatusIcon) {
  const Localize english("en");
  const Image unavailable = statusImage(false, english);
  EXPECT_EQ(unavailable.accessibilityDescription, "Disabled");
  const std::pair<Dictionary, Image> table[] = {
      {{{"ProgramArguments", Array{"/bin/ls"}}}, Image::iconOfPath("/bin/ls")},
      {{{"ProgramArguments", Array{"/bin/ls"}}, {"Disabled", false}}, Image::iconOfPath("/bin/ls")},
      {{{"ProgramArguments", Array{"/bin/ls"}}, {"Disabled", true}}, unavailable},
  };
  for (const auto& [keys, icon] : table) {
    const auto job = read(jobText("a", keys));
    EXPECT_EQ(job->displayIcon(english), icon);
    job->customIcon = Image::named("star");
    EXPECT_EQ(job->displayIcon(english), Image::named("star"));
  }
}

TEST_F(LaunchdReaderTest, UnknownKeysComeFromTheBytesAndNotFromTheExistingFile) {
  testdata::TemporaryFolder folder;
  file = folder.write("a.plist", jobText("existing", {{"Odd", "existing"}}));
  const Dictionary imported{{"Label", "imported"}, {"Odd", "imported"}, {"Even", "imported"}};
  EXPECT_EQ(read(jobText("imported", imported))->plistDictionary(), imported);
}

TEST_F(LaunchdReaderTest, TheFileContainsKnownAndUnknownKeysAsXml) {
  Dictionary file{{"Label", "job"}, {"Zebra", propertylist::Date{0}}, {"Alpha", propertylist::Data{"x"}}};
  const auto job = read(propertylist::writeBinary(file));
  job->plist().nice = 5;
  file.set("Nice", 5);
  EXPECT_EQ(job->plistData(), *propertylist::writeXml(file));
  EXPECT_EQ(job->plistDictionary(), file);
}

TEST_F(LaunchdReaderTest, AValueWithoutXmlFormYieldsNoFile) {
  const auto job = read(propertylist::writeBinary(Dictionary{{"Label", "job"}, {"Odd", propertylist::Set{}}}));
  EXPECT_FALSE(job->plistData());
  EXPECT_FALSE(job->plistDictionary());
}

}  // namespace
}  // namespace mirvel
