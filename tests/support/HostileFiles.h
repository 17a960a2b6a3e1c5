#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace mirvel {

/// A job file of roughly a given size, designed to take a naive reader or check much longer than its size suggests.
struct HostileFile {
  const char* name;
  std::string (*make)(std::size_t size);
};

namespace hostile {

inline std::string repeated(std::string_view text, std::size_t times) {
  std::string result;
  for (std::size_t i = 0; i < times; ++i) result += text;
  return result;
}

inline std::string numbered(std::size_t size, const std::function<std::string(const std::string&)>& entry) {
  std::string result;
  for (std::size_t i = 0; result.size() < size; ++i) result += entry(std::to_string(i));
  return result;
}

inline std::string job(const std::string& entries) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict><key>Label</key><string>a</string>"
         "<key>ProgramArguments</key><array><string>/bin/ls</string></array><key>RunAtLoad</key><true/>" +
         entries + "</dict></plist>";
}

inline std::string booleans(std::size_t size) {
  return numbered(size, [](const std::string& i) { return "<key>" + i + "</key><true/>"; });
}

}  // namespace hostile

inline const HostileFile hostileFiles[] = {
    {"manyValuesBelowManyLongKeys",
     [](std::size_t size) {
       const std::size_t depth = 500;
       const std::string open = "<key>" + std::string(size / 2 / depth, 'k') + "</key><dict>";
       return hostile::job(hostile::repeated(open, depth) + hostile::booleans(size / 2) +
                           hostile::repeated("</dict>", depth));
     }},
    {"manyValuesInDeepArrays",
     [](std::size_t size) {
       return hostile::job("<key>x</key>" + hostile::repeated("<array>", 500) + hostile::repeated("<true/>", size / 7) +
                           hostile::repeated("</array>", 500));
     }},
    {"manyErrorsBelowOneLongKey",
     [](std::size_t size) {
       return hostile::job("<key>LaunchEvents</key><dict><key>" + std::string(size / 2, 'k') + "</key><dict>" +
                           hostile::booleans(size / 2) + "</dict></dict>");
     }},
    {"manySocketsBelowOneLongKey",
     [](std::size_t size) {
       return hostile::job("<key>Sockets</key><dict><key>" + std::string(size / 2, 'k') + "</key><array>" +
                           hostile::repeated("<dict><key>SockPathName</key><string>~</string></dict>", size / 2 / 54) +
                           "</array></dict>");
     }},
    {"manyKeysWithReferences",
     [](std::size_t size) {
       return hostile::job(
           hostile::numbered(size, [](const std::string& i) { return "<key>a&amp;" + i + "</key><true/>"; }));
     }},
    {"oneLongTagAboveManyValues",
     [](std::size_t size) {
       return hostile::job("<key " + std::string(size / 2, 'a') + ">x</key><array>" +
                           hostile::repeated("<true/>", size / 2 / 7) + "</array>");
     }},
    {"manyMisspeltKeys",
     [](std::size_t size) {
       return hostile::job(
           hostile::numbered(size, [](const std::string& i) { return "<key>ProgramArgumentz" + i + "</key><true/>"; }));
     }},
    {"oneKeyRepeatedOften",
     [](std::size_t size) {
       return hostile::job(hostile::repeated("<key>Nice</key><integer>1</integer>", size / 35));
     }},
    {"manyKeysRepeated",
     [](std::size_t size) { return hostile::job(hostile::booleans(size / 2) + hostile::booleans(size / 2)); }},
    {"manyTimesThatNeverCome",
     [](std::size_t size) {
       return hostile::job("<key>StartCalendarInterval</key><array>" +
                           hostile::repeated("<dict><key>Hour</key><integer>99</integer></dict>", size / 49) +
                           "</array>");
     }},
    {"manyDoctypes",
     [](std::size_t size) { return hostile::repeated("<!DOCTYPE plist PUBLIC>", size / 23) + hostile::job(""); }},
    {"manyKeysOfTheWrongType",
     [](std::size_t size) {
       std::string keys;
       for (const char* const key : {"Disabled", "Program", "UserName", "GroupName", "InitGroups", "ExitTimeOut",
                                     "Nice", "StartInterval", "Debug", "SessionCreate", "OnDemand", "TimeOut"}) {
         keys += "<key>" + std::string(key) + "</key><dict/>";
       }
       return hostile::job(keys + "<key>x</key><array>" + hostile::repeated("<true/>", size / 7) + "</array>");
     }},
    {"manyLines", [](std::size_t size) { return hostile::job(hostile::repeated("\n<!---->", size / 8)); }},
};

}  // namespace mirvel
