#include "core/editor/SectionRows.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "core/editor/SectionStack.h"
#include "core/session/Foundation.h"
#include "support/JobText.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

using jobfile::Plist;
using propertylist::Array;
using propertylist::Dictionary;
using Texts = std::vector<std::string>;

const Foundation& foundation() {
  static const Foundation english(Roots::below("/nowhere"), {}, {}, "en");
  return english;
}

Plist record(const Dictionary& keys) {
  auto read = Plist::readTolerantly(testdata::jobText("job", keys));
  if (!read) throw std::runtime_error(read.error().text());
  return std::move(*read);
}

std::vector<StackSection> sections(const std::vector<StackEntry>& stack) {
  std::vector<StackSection> result;
  for (const StackEntry& entry : stack) result.push_back(entry.section);
  return result;
}

bool isSectionShown(const Plist& plist, StackSection section) {
  const auto shown = sections(editStack(plist, foundation().localize));
  return std::find(shown.begin(), shown.end(), section) != shown.end();
}

/// "Key=text", "Key*=text" if it is secret, and a box as "Key[x]" or "Key[ ]".
Texts texts(const std::vector<KeyValueItem>& rows) {
  Texts result;
  for (const auto& [key, value, isSecret] : rows) {
    if (const auto* isOn = value.as<bool>()) {
      result.push_back(key + (*isOn ? "[x]" : "[ ]"));
    } else {
      const auto* text = value.as<std::string>();
      result.push_back(key + (isSecret ? "*=" : "=") + (text ? *text : "not a text"));
    }
  }
  return result;
}

/// Even if the value is false, 0 or empty. The other keys are in the tables below.
TEST(SectionRowsTest, KeysBringTheirSectionIntoTheDetails) {
  using S = StackSection;
  const struct {
    S section;
    const char* key;
    propertylist::Value value;
  } table[] = {
      {S::When, "RunAtLoad", false},
      {S::When, "KeepAlive", Dictionary{}},
      {S::When, "StartOnMount", false},
      {S::When, "StartInterval", 60},
      {S::When, "StartCalendarInterval", Dictionary{}},
      {S::Paths, "StandardErrorPath", ""},
      {S::Paths, "QueueDirectories", Array{}},
      {S::Limits, "Nice", 0},
      {S::Limits, "LimitLoadToSessionType", Array{"Aqua"}},
      {S::Root, "InitGroups", false},
      {S::Miscellaneous, "EnablePressuredExit", false},
      {S::Miscellaneous, "EnableTransactions", false},
      {S::Miscellaneous, "LegacyTimers", false},
      {S::Miscellaneous, "MaterializeDatalessFiles", false},
      {S::Miscellaneous, "SessionCreate", false},
      {S::Miscellaneous, "Umask", 0},
      {S::EnvironmentVariables, "EnvironmentVariables", Dictionary{{"A", ""}}},
      {S::LaunchEvents, "LaunchEvents", Dictionary{}},
      {S::MachServices, "MachServices", Dictionary{}},
      {S::Sockets, "Sockets", Dictionary{}},
      {S::Deprecated, "Debug", false},
      {S::Unknown, "Unheard", 1},
  };
  for (const auto& row : table) {
    SCOPED_TRACE(row.key);
    const Plist plist = record({{row.key, row.value}});
    const auto shown = displayStack(plist, foundation().localize);
    EXPECT_EQ(sections(shown), (std::vector<S>{S::General, row.section, S::Notes}));
    const bool isConditional = row.section == S::Deprecated || row.section == S::Unknown;
    EXPECT_EQ(editStack(plist, foundation().localize).size(), isConditional ? 12U : 11U);
  }
  const Plist empty = record({{"EnvironmentVariables", Dictionary{}}});
  EXPECT_EQ(sections(displayStack(empty, foundation().localize)), (std::vector<S>{S::General, S::Notes}));
}

TEST(SectionRowsTest, SectionsHaveTheirOrderAndTitles) {
  Texts titles;
  for (const StackEntry& entry : editStack(record({{"Debug", true}, {"Unheard", 1}}), foundation().localize)) {
    titles.push_back(entry.title.value_or("-"));
  }
  EXPECT_EQ(titles, (Texts{"-", "When", "Paths", "Limits", "root", "Miscellaneous", "EnvironmentVariables",
                           "LaunchEvents", "MachServices", "Sockets", "Deprecated", "Unknown", "Notes"}));
}

TEST(SectionRowsTest, EachSectionShowsItsKeysInItsOrderAndTreesByTheirNames) {
  const Dictionary socket = {{"SockType", "dgram"}, {"SockPassive", false}, {"SockServiceName", 8080}};
  const struct {
    StackSection section;
    Dictionary keys;
    Texts rows;
  } table[] = {
      {StackSection::Root,
       {{"GroupName", "wheel"}, {"UserName", "root"}, {"InitGroups", false}},
       {"InitGroups[ ]", "UserName=root", "GroupName=wheel"}},
      {StackSection::Root, {{"UserName", ""}, {"GroupName", ""}}, {}},
      {StackSection::Paths,
       {{"StandardErrorPath", "/nowhere/home/e"},
        {"StandardInPath", ""},
        {"StandardOutPath", "/o"},
        {"WorkingDirectory", "/w"}},
       {"StandardErrorPath=/nowhere/home/e", "StandardOutPath=/o", "WorkingDirectory=/w"}},
      {StackSection::Paths,
       {{"QueueDirectories", Array{"/nowhere/home/q", "", "relative"}}, {"WatchPaths", Array{"/nowhere/home", "/b"}}},
       {"QueueDirectories=~/q\nrelative", "WatchPaths=~\n/b"}},
      {StackSection::Paths, {{"QueueDirectories", Array{}}}, {}},
      {StackSection::Limits,
       {{"LowPriorityIO", true},
        {"LowPriorityBackgroundIO", false},
        {"LaunchOnlyOnce", true},
        {"Nice", -5},
        {"ThrottleInterval", 86400},
        {"ProcessType", "Odd"}},
       {"LowPriorityIO[x]", "LowPriorityBackgroundIO[ ]", "LaunchOnlyOnce[x]", "Nice=-5", "ThrottleInterval=86,400",
        "ProcessType=Odd"}},
      {StackSection::Limits,
       {{"LimitLoadToSessionType", Array{"Aqua", "Background"}},
        {"LimitLoadToHardware", Dictionary{{"model", Array{"A", "B"}}, {"machine", Array{"C"}}}},
        {"SoftResourceLimits", Dictionary{{"Stack", 0}, {"Core", 1024}}},
        {"HardResourceLimits", Dictionary{{"NumberOfFiles", 9}}}},
       {"LimitLoadToSessionType=Aqua\nBackground", "LimitLoadToHardware=C\nA\nB",
        "SoftResourceLimits=Core : 1,024\nStack : 0", "HardResourceLimits=NumberOfFiles : 9"}},
      {StackSection::Miscellaneous,
       {{"Umask", 18}, {"ExitTimeOut", 0}, {"WaitForDebugger", true}, {"AbandonProcessGroup", false}},
       {"AbandonProcessGroup[ ]", "WaitForDebugger[x]", "ExitTimeOut=0", "Umask=022"}},
      {StackSection::Miscellaneous, {{"Umask", 0}}, {"Umask=000"}},
      {StackSection::Miscellaneous, {{"Umask", "no number"}}, {}},
      {StackSection::EnvironmentVariables,
       {{"EnvironmentVariables", Dictionary{{"V10", "b"}, {"V2", "a"}, {"API_KEY", ""}, {"TOKEN", "x"}}}},
       {"API_KEY=", "TOKEN*=x", "V2=a", "V10=b"}},
      {StackSection::Deprecated,
       {{"inetdCompatibility", Dictionary{{"Wait", true}, {"Instances", 1000}}},
        {"LimitLoadToHosts", Array{"h", "i"}},
        {"RootDirectory", ""},
        {"OnDemand", false},
        {"TimeOut", 30},
        {"Debug", true}},
       {"Debug[x]", "OnDemand[ ]", "TimeOut=30", "RootDirectory=", "LimitLoadToHosts=h\ni",
        "inetdCompatibility=Instances : 1,000\nWait : On"}},
      {StackSection::General, {{"RunAtLoad", true}, {"Nice", 1}}, {}},
      {StackSection::MachServices,
       {{"MachServices", Dictionary{{"s10", true},
                                    {"s9", "text"},
                                    {"a", Dictionary{{"TaskSpecialPort", 1234},
                                                     {"HideUntilCheckIn", false},
                                                     {"ResetAtClose", true},
                                                     {"DrainMessagesOnCrash", "exit"},
                                                     {"ExceptionServer", Dictionary{{"k", "v"}, {"l", "w"}}}}}}}},
       {"a=ResetAtClose : On\nHideUntilCheckIn : Off\nDrainMessagesOnCrash : exit\n"
        "ExceptionServer : k = v, l = w\nTaskSpecialPort : 1,234",
        "s9=text", "s10=On"}},
      {StackSection::MachServices, {{"MachServices", Dictionary{}}}, {}},
      {StackSection::Sockets,
       {{"Sockets", Dictionary{{"one", socket},
                               {"many", Array{Dictionary{{"SockPathName", "/s"}, {"SockPathMode", 438}},
                                              Dictionary{{"Bonjour", Array{"x", "y"}}, {"SockServiceName", "ssh"}}}}}}},
       {"many=SockPathName : /s\nSockPathMode : 438\nSockServiceName : ssh\nBonjour : x, y",
        "one=SockType : dgram\nSockPassive : Off\nSockServiceName : 8080"}},
      {StackSection::Sockets,
       {{"Sockets", Dictionary{{"bare", Dictionary{}}, {"b", Dictionary{{"Bonjour", true}}}}}},
       {"b=Bonjour : On", "bare="}},
      {StackSection::LaunchEvents,
       {{"LaunchEvents",
         Dictionary{{"com.example.usb",
                     Dictionary{{"plugged",
                                 Dictionary{{"idVendor", 1452},
                                            {"Rate", 0.1},
                                            {"Match", true},
                                            {"Names", Array{"a", "b"}},
                                            {"Numbers", Array{1, 2}},
                                            {"Deep", Dictionary{{"Key", "v"}, {"Raw", propertylist::Data{"abc"}}}}}},
                                {"bare", Dictionary{}}}},
                    {"com.example.none", Dictionary{}}}}},
       {"com.example.none=",
        "com.example.usb=bare\nplugged / Deep / Key : v\nplugged / Deep / Raw : 3 bytes\nplugged / Match : On\n"
        "plugged / Names : a, b\nplugged / Numbers : 1, 2\nplugged / Rate : 0.1\nplugged / idVendor : 1,452"}},
  };
  for (const auto& row : table) {
    EXPECT_EQ(texts(sectionRows(row.section, record(row.keys), foundation())), row.rows)
        << static_cast<int>(row.section);
  }
}

TEST(SectionRowsTest, UnknownKeysKeepTheirValuesWhileTheyAreToBeKept) {
  Plist job = record({{"Zeta", Array{1, 2}}, {"Alpha", propertylist::Date{0}}, {"Beta", "b"}, {"Nice", 1}});
  const auto rows = sectionRows(StackSection::Unknown, job, foundation());
  ASSERT_EQ(rows.size(), 3U);
  job.unknownKeys = Texts{"Beta", "Gone", "Zeta"};
  using Rows = std::vector<KeyValueItem>;
  EXPECT_EQ(sectionRows(StackSection::Unknown, job, foundation()), (Rows{{"Beta", "b"}, {"Zeta", Array{1, 2}}}));
  job.dictionary.reset();
  EXPECT_EQ(sectionRows(StackSection::Unknown, job, foundation()), Rows());
  const Plist opaque = record({{"Odd", 1}, {"Sockets", Dictionary{{"L", Dictionary{{"SockPathMode", "0666"}}}}}});
  EXPECT_EQ(sectionRows(StackSection::Unknown, opaque, foundation()),
            (Rows{{"Odd", 1}, {"Sockets.L.SockPathMode", "0666"}}));
  const Dictionary events = {{"stream", Dictionary{{"event", Dictionary{{"Data", propertylist::Data{"x"}}}}}}};
  const Plist inBrowser = record({{"LaunchEvents", events}});
  EXPECT_FALSE(isSectionShown(inBrowser, StackSection::Unknown)) << "the browser of LaunchEvents shows them";
  EXPECT_EQ(sectionRows(StackSection::Unknown, inBrowser, foundation()), Rows());
  const Plist within = record({{"KeepAlive", Dictionary{{"Crashed", true}, {"Odd", 1}}}});
  EXPECT_TRUE(isSectionShown(within, StackSection::Unknown));
}

TEST(SectionRowsTest, KeysComeFirstInALanguageFromRightToLeft) {
  const Foundation arabic(Roots::below("/nowhere"), {}, testdata::catalogues(), "ar");
  if (!arabic.localize.isRightToLeft()) GTEST_SKIP() << "no msgfmt to compile catalogues with";
  const Plist job = record({{"SoftResourceLimits", Dictionary{{"Core", 1}}}});
  const std::string number = arabic.localize.int_(1);
  EXPECT_EQ(texts(sectionRows(StackSection::Limits, job, arabic)),
            (Texts{"SoftResourceLimits=\u200F\u2068Core\u2069 : \u2068" + number + "\u2069"}));
}

TEST(SectionRowsTest, EachDeprecatedKeyIsShownAndGoesByItsName) {
  const std::pair<const char*, propertylist::Value> table[] = {
      {"Debug", false},
      {"EnableGlobbing", true},
      {"OnDemand", false},
      {"ServiceIPC", true},
      {"TimeOut", 0},
      {"HopefullyExitsFirst", false},
      {"HopefullyExitsLast", false},
      {"RootDirectory", ""},
      {"LimitLoadFromHosts", Array{}},
      {"LimitLoadToHosts", Array{"h"}},
      {"inetdCompatibility", Dictionary{}},
  };
  const Plist bare = record({{"Nice", 1}, {"WatchPaths", Array{"/a"}}});
  for (const auto& [key, value] : table) {
    Plist job = record({{"Nice", 1}, {"WatchPaths", Array{"/a"}}, {key, value}});
    EXPECT_TRUE(isSectionShown(job, StackSection::Deprecated)) << key;
    const auto rows = sectionRows(StackSection::Deprecated, job, foundation());
    ASSERT_EQ(rows.size(), 1U) << key;
    EXPECT_EQ(rows.front().key, key);
    EXPECT_TRUE(deleteDeprecated(job, key)) << key;
    EXPECT_EQ(job.encode(), bare.encode()) << key << ": and nothing else";
    EXPECT_FALSE(isSectionShown(job, StackSection::Deprecated)) << key;
    EXPECT_FALSE(deleteDeprecated(job, key)) << key;
  }
}

TEST(SectionRowsTest, OnlyUnknownKeysAndValuesAreDeletedAndNotWrittenBack) {
  Plist job = record({{"Debug", true}, {"Odd", 1}, {"KeepAlive", Dictionary{{"Crashed", true}, {"Strange", 1}}}});
  for (const char* key : {"Label", "debug", "InetdCompatibility", "Odd", ""}) EXPECT_FALSE(deleteDeprecated(job, key));
  for (const char* key : {"Label", "Debug", "odd", "KeepAlive.Crashed", ""}) EXPECT_FALSE(deleteUnknown(job, key));
  for (const char* key : {"Odd", "KeepAlive.Strange"}) {
    EXPECT_TRUE(deleteUnknown(job, key)) << key;
    EXPECT_FALSE(deleteUnknown(job, key)) << key;
  }
  const Dictionary kept{{"Label", "job"}, {"Debug", true}, {"KeepAlive", Dictionary{{"Crashed", true}}}};
  EXPECT_EQ(job.encodeAll(), kept);
  EXPECT_TRUE(isSectionShown(job, StackSection::Unknown)) << "the title stays until the editor is refilled";
}

TEST(SectionRowsTest, TheEditorShowsWhatNeitherABrowserNorAFieldShows) {
  Plist plist = record({{"Sockets", Dictionary{{"Listener", Dictionary{{"Odd", "1"}}}, {"Text", "2"}}},
                        {"MachServices", "3"},
                        {"LaunchEvents", Dictionary{{"stream", "4"}}},
                        {"KeepAlive", Dictionary{{"Odd", "5"}}},
                        {"Unheard", "6"}});
  EXPECT_EQ(texts(editorRows(StackSection::Unknown, plist, foundation())),
            (Texts{"MachServices=3", "Unheard=6", "KeepAlive.Odd=5"}));
  EXPECT_EQ(texts(sectionRows(StackSection::Unknown, plist, foundation())),
            (Texts{"MachServices=3", "Unheard=6", "KeepAlive.Odd=5", "Sockets.Listener.Odd=1", "Sockets.Text=2"}));
}

}  // namespace
}  // namespace mirvel
