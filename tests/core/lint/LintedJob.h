#pragma once

#include <string>
#include <utility>
#include <vector>

#include "core/jobfile/JobFile.h"
#include "core/lint/Lint.h"

namespace mirvel::lint {

using jobfile::Dict;
using jobfile::List;

/// A machine on which a few programs exist, and a user with a home.
inline Surroundings smallMachine() {
  return {
      .exists = [](const std::string& path) { return path == "/bin/ls" || path == "/bin/sh" || path == "/bin/a b"; },
      .homeFolder = "/Users/me"};
}

/// A job that nobody could find fault with, save for what the entries make of it. An entry that holds `absent` is left
/// out of the file.
inline const propertylist::Value absent = propertylist::Uid{0};
inline Dict job(const std::vector<std::pair<std::string, propertylist::Value>>& entries) {
  Dict file{{"Label", "job"}, {"ProgramArguments", List{"/bin/ls"}}, {"RunAtLoad", true}};
  for (const auto& [key, value] : entries) {
    if (value == absent) {
      file.remove(key);
    } else {
      file.set(key, value);
    }
  }
  return file;
}

/// The findings on that file, in words.
inline std::vector<std::string> remarks(const propertylist::Value& file) {
  std::vector<std::string> result;
  for (const Finding& finding : lint(propertylist::writeBinary(file), smallMachine())) result.push_back(finding.text());
  return result;
}

/// What each row is a table of: the entries of a job, and all that is said of it.
struct Row {
  std::vector<std::pair<std::string, propertylist::Value>> entries;
  std::vector<std::string> remarks;
};

}  // namespace mirvel::lint
