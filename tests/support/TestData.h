#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// Published job files and property-list cases, which aren't part of the repository.
namespace mirvel::testdata {

/// The folder that contains the data folders.
std::filesystem::path place();

/// The data folder of this name ("corpus" or "conformance"); nullopt if it is missing, in which case the test should be
/// skipped with a message.
std::optional<std::filesystem::path> folder(const std::string& name);

/// The files of a folder with this extension (such as ".plist"), sorted by name.
std::vector<std::filesystem::path> files(const std::filesystem::path& folder, const std::string& extension);

/// The folder of the program's translations; doesn't exist if they were built without msgfmt.
std::filesystem::path catalogues();

std::string bytes(const std::filesystem::path& file);

/// A new temporary folder, deleted by the destructor.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& path() const { return m_path; }
  /// Writes a file in the folder, creating parent folders as necessary.
  std::filesystem::path write(const std::filesystem::path& name, const std::string& content) const;

 private:
  std::filesystem::path m_path;
};

}  // namespace mirvel::testdata

/// Skips the test with a message if the data folder is missing.
#define MIRVEL_REQUIRE_TESTDATA(variable, name)                                                         \
  const auto variable##Found = mirvel::testdata::folder(name);                                          \
  if (!variable##Found) GTEST_SKIP() << "no folder " << name << " below " << mirvel::testdata::place(); \
  const std::filesystem::path& variable = *variable##Found
