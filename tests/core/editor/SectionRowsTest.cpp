#include "core/editor/SectionRows.h"

#include <gtest/gtest.h>

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

/// "Key=text", and a box as "Key[x]" or "Key[ ]".
Texts texts(const std::vector<KeyValueItem>& rows) {
  Texts result;
  for (const auto& [key, value] : rows) {
    if (const auto* isOn = value.as<bool>()) {
      result.push_back(key + (*isOn ? "[x]" : "[ ]"));
    } else {
      const auto* text = value.as<std::string>();
      result.push_back(key + "=" + (text ? *text : "not a text"));
    }
  }
  return result;
}

TEST(SectionRowsTest, EachSectionShowsItsKeysInItsOrder) {
  const struct {
    StackSection section;
    Dictionary keys;
    Texts rows;
  } table[] = {
      {StackSection::root,
       {{"GroupName", "wheel"}, {"UserName", "root"}, {"InitGroups", false}},
       {"InitGroups[ ]", "UserName=root", "GroupName=wheel"}},
      {StackSection::root, {{"UserName", ""}, {"GroupName", ""}}, {}},
      {StackSection::paths,
       {{"StandardErrorPath", "/nowhere/home/e"},
        {"StandardInPath", ""},
        {"StandardOutPath", "/o"},
        {"WorkingDirectory", "/w"}},
       {"StandardErrorPath=/nowhere/home/e", "StandardOutPath=/o", "WorkingDirectory=/w"}},
      {StackSection::paths,
       {{"QueueDirectories", Array{"/nowhere/home/q", "", "relative"}}, {"WatchPaths", Array{"/nowhere/home", "/b"}}},
       {"QueueDirectories=~/q\nrelative", "WatchPaths=~\n/b"}},
      {StackSection::paths, {{"QueueDirectories", Array{}}}, {}},
      {StackSection::limits,
       {{"LowPriorityIO", true},
        {"LowPriorityBackgroundIO", false},
        {"LaunchOnlyOnce", true},
        {"Nice", -5},
        {"ThrottleInterval", 86400},
        {"ProcessType", "Odd"}},
       {"LowPriorityIO[x]", "LowPriorityBackgroundIO[ ]", "LaunchOnlyOnce[x]", "Nice=-5", "ThrottleInterval=86,400",
        "ProcessType=Odd"}},
      {StackSection::limits,
       {{"LimitLoadToSessionType", Array{"Aqua", "Background"}},
        {"LimitLoadToHardware", Dictionary{{"model", Array{"A", "B"}}, {"machine", Array{"C"}}}},
        {"SoftResourceLimits", Dictionary{{"Stack", 0}, {"Core", 1024}}},
        {"HardResourceLimits", Dictionary{{"NumberOfFiles", 9}}}},
       {"LimitLoadToSessionType=Aqua\nBackground", "LimitLoadToHardware=C\nA\nB",
        "SoftResourceLimits=Core : 1,024\nStack : 0", "HardResourceLimits=NumberOfFiles : 9"}},
      {StackSection::miscellaneous,
       {{"Umask", 18}, {"ExitTimeOut", 0}, {"WaitForDebugger", true}, {"AbandonProcessGroup", false}},
       {"AbandonProcessGroup[ ]", "WaitForDebugger[x]", "ExitTimeOut=0", "Umask=022"}},
      {StackSection::miscellaneous, {{"Umask", 0}}, {"Umask=000"}},
      {StackSection::miscellaneous, {{"Umask", "no number"}}, {}},
      {StackSection::environmentVariables,
       {{"EnvironmentVariables", Dictionary{{"V10", "b"}, {"V2", "a"}, {"PATH", ""}}}},
       {"PATH=", "V2=a", "V10=b"}},
      {StackSection::deprecated,
       {{"inetdCompatibility", Dictionary{{"Wait", true}, {"Instances", 1000}}},
        {"LimitLoadToHosts", Array{"h", "i"}},
        {"RootDirectory", ""},
        {"OnDemand", false},
        {"TimeOut", 30},
        {"Debug", true}},
       {"Debug[x]", "OnDemand[ ]", "TimeOut=30", "RootDirectory=", "LimitLoadToHosts=h\ni",
        "inetdCompatibility=Instances : 1,000\nWait : On"}},
      {StackSection::general, {{"RunAtLoad", true}, {"Nice", 1}}, {}},
  };
  for (const auto& row : table) {
    EXPECT_EQ(texts(sectionRows(row.section, record(row.keys), foundation())), row.rows)
        << static_cast<int>(row.section);
  }
}

TEST(SectionRowsTest, TreesHaveARowForEachNameAndALineForEachValue) {
  const Dictionary socket = {{"SockType", "dgram"}, {"SockPassive", false}, {"SockServiceName", 8080}};
  const struct {
    StackSection section;
    Dictionary keys;
    Texts rows;
  } table[] = {
      {StackSection::machServices,
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
      {StackSection::machServices, {{"MachServices", Dictionary{}}}, {}},
      {StackSection::sockets,
       {{"Sockets", Dictionary{{"one", socket},
                               {"many", Array{Dictionary{{"SockPathName", "/s"}, {"SockPathMode", 438}},
                                              Dictionary{{"Bonjour", Array{"x", "y"}}, {"SockServiceName", "ssh"}}}}}}},
       {"many=SockPathName : /s\nSockPathMode : 438\nSockServiceName : ssh\nBonjour : x, y",
        "one=SockType : dgram\nSockPassive : Off\nSockServiceName : 8080"}},
      {StackSection::sockets,
       {{"Sockets", Dictionary{{"bare", Dictionary{}}, {"b", Dictionary{{"Bonjour", true}}}}}},
       {"b=Bonjour : On", "bare="}},
      {StackSection::launchEvents,
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
  const auto rows = sectionRows(StackSection::unknown, job, foundation());
  ASSERT_EQ(rows.size(), 3U);
  job.unknownKeys = Texts{"Beta", "Gone", "Zeta"};
  using Rows = std::vector<KeyValueItem>;
  EXPECT_EQ(sectionRows(StackSection::unknown, job, foundation()), (Rows{{"Beta", "b"}, {"Zeta", Array{1, 2}}}));
  job.dictionary.reset();
  EXPECT_EQ(sectionRows(StackSection::unknown, job, foundation()), Rows());
}

TEST(SectionRowsTest, WhatLiesBelowAKnownKeyAndIsNotUnderstoodIsShownWithItsPath) {
  const Plist job = record({{"Odd", 1}, {"Sockets", Dictionary{{"L", Dictionary{{"SockPathMode", "0666"}}}}}});
  EXPECT_EQ(sectionRows(StackSection::unknown, job, foundation()),
            (std::vector<KeyValueItem>{{"Odd", 1}, {"Sockets.L.SockPathMode", "0666"}}));
}

TEST(SectionRowsTest, KeysComeFirstInALanguageFromRightToLeft) {
  const Foundation arabic(Roots::below("/nowhere"), {}, testdata::catalogues(), "ar");
  if (!arabic.localize.isRightToLeft()) GTEST_SKIP() << "no msgfmt to compile catalogues with";
  const Plist job = record({{"SoftResourceLimits", Dictionary{{"Core", 1}}}});
  const std::string number = arabic.localize.int_(1);
  EXPECT_EQ(texts(sectionRows(StackSection::limits, job, arabic)),
            (Texts{"SoftResourceLimits=\u200F\u2068Core\u2069 : \u2068" + number + "\u2069"}));
}

}  // namespace
}  // namespace mirvel
