#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "core/jobfile/JobFile.h"
#include "core/lint/Lint.h"

namespace mirvel::lint {

using jobfile::Dict;
using jobfile::List;

/// A machine with three programs, a file and a few folders, two users and two groups, and a known home folder. Nothing
/// is known of what is in /unknown.
inline TargetMachine smallMachine() {
  using FileType = TargetMachine::FileType;
  const std::set<std::string> files{"/bin/ls", "/bin/sh", "/bin/a b", "/open/tool", "/Users/me/file"};
  const std::set<std::string> folders{"/", "/bin", "/open", "/Users", "/Users/me", "/tmp"};
  return {.fileType =
              [=](const std::string& path) {
                if (path.starts_with("/unknown")) return FileType::Unknown;
                if (folders.count(path) != 0) return FileType::Folder;
                return files.count(path) != 0 ? FileType::Other : FileType::Missing;
              },
          .isOpenToAll = [](const std::string& path) { return path.starts_with("/open/"); },
          .hasUser = [](const std::string& name) -> std::optional<bool> { return name == "root" || name == "me"; },
          .hasGroup =
              [](const std::string& name) {
                return name.starts_with("remote") ? std::nullopt : std::optional(name == "wheel" || name == "staff");
              },
          .homeFolder = "/Users/me"};
}

/// Removes a key from the file of `job`.
inline const propertylist::Value absent = propertylist::Uid{0};
/// A job file without findings, with these entries added or replaced.
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

/// The findings of a job file as text.
inline std::vector<std::string> findingsIn(const std::string& bytes) {
  std::vector<std::string> result;
  for (const Finding& finding : lint(bytes, smallMachine())) result.push_back(finding.text());
  return result;
}
inline std::vector<std::string> findingsOf(const propertylist::Value& file) {
  return findingsIn(propertylist::writeBinary(file));
}

struct Row {
  std::vector<std::pair<std::string, propertylist::Value>> entries;  ///< of `job`
  std::vector<std::string> findings;                                 ///< all of them
};

inline void expectFindings(const std::vector<Row>& table) {
  for (const Row& row : table) {
    const Dict file = job(row.entries);
    EXPECT_EQ(findingsOf(file), row.findings) << testing::PrintToString(propertylist::Value(file));
  }
}

}  // namespace mirvel::lint
