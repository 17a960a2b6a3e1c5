#pragma once

#include <cstddef>
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

inline std::string job(const std::string& entries) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict><key>Label</key><string>a</string>"
         "<key>ProgramArguments</key><array><string>/bin/ls</string></array><key>RunAtLoad</key><true/>" +
         entries + "</dict></plist>";
}

inline std::string booleans(std::size_t size, const std::string& key = "") {
  std::string result;
  for (std::size_t i = 0; result.size() < size; ++i) result += "<key>" + key + std::to_string(i) + "</key><true/>";
  return result;
}

inline const HostileFile hostileFiles[] = {
    {"manyValuesBelowManyLongKeys",
     [](std::size_t size) {
       const std::size_t depth = 500;
       const std::string open = "<key>" + std::string(size / 2 / depth, 'k') + "</key><dict>";
       return job(repeated(open, depth) + booleans(size / 2) + repeated("</dict>", depth));
     }},
    {"manyValuesInDeepArrays",
     [](std::size_t size) {
       return job("<key>x</key>" + repeated("<array>", 500) + repeated("<true/>", size / 7) +
                  repeated("</array>", 500));
     }},
    {"manyErrorsBelowOneLongKey",
     [](std::size_t size) {
       return job("<key>LaunchEvents</key><dict><key>" + std::string(size / 2, 'k') + "</key><dict>" +
                  booleans(size / 2) + "</dict></dict>");
     }},
    {"manySocketsBelowOneLongKey",
     [](std::size_t size) {
       return job("<key>Sockets</key><dict><key>" + std::string(size / 2, 'k') + "</key><array>" +
                  repeated("<dict><key>SockPathName</key><string>~</string></dict>", size / 2 / 54) +
                  "</array></dict>");
     }},
    {"manyKeysWithReferences", [](std::size_t size) { return job(booleans(size, "a&amp;")); }},
    {"oneLongTagAboveManyValues",
     [](std::size_t size) {
       return job("<key " + std::string(size / 2, 'a') + ">x</key><array>" + repeated("<true/>", size / 2 / 7) +
                  "</array>");
     }},
    {"manyMisspeltKeys", [](std::size_t size) { return job(booleans(size, "ProgramArgumentz")); }},
    {"oneKeyRepeatedOften",
     [](std::size_t size) { return job(repeated("<key>Nice</key><integer>1</integer>", size / 35)); }},
    {"manyKeysRepeated", [](std::size_t size) { return job(booleans(size / 2) + booleans(size / 2)); }},
    {"manyTimesThatNeverCome",
     [](std::size_t size) {
       return job("<key>StartCalendarInterval</key><array>" +
                  repeated("<dict><key>Hour</key><integer>99</integer></dict>", size / 49) + "</array>");
     }},
    {"manyDoctypes", [](std::size_t size) { return repeated("<!DOCTYPE plist PUBLIC>", size / 23) + job(""); }},
    {"manyKeysOfTheWrongType",
     [](std::size_t size) {
       std::string keys;
       for (const char* const key : {"Disabled", "Program", "UserName", "GroupName", "InitGroups", "ExitTimeOut",
                                     "Nice", "StartInterval", "Debug", "SessionCreate", "OnDemand", "TimeOut"}) {
         keys += "<key>" + std::string(key) + "</key><dict/>";
       }
       return job(keys + "<key>x</key><array>" + repeated("<true/>", size / 7) + "</array>");
     }},
    {"manyLines", [](std::size_t size) { return job(repeated("\n<!---->", size / 8)); }},
};

}  // namespace hostile

using hostile::hostileFiles;

}  // namespace mirvel
