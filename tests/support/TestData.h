#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// Published job files and property-list cases, which lie outside the repository.
namespace mirvel::testdata {

/// Where these folders are looked for.
std::filesystem::path place();

/// The folder of that name ("corpus", "conformance"), or none: the test should then be skipped, saying so.
std::optional<std::filesystem::path> folder(const std::string& name);

/// All files of a folder with that extension (".plist"), by name.
std::vector<std::filesystem::path> files(const std::filesystem::path& folder, const std::string& extension);

/// The program's own translations; isn't there if no msgfmt made them.
std::filesystem::path catalogues();

std::string bytes(const std::filesystem::path& file);

/// A fresh folder below the system's temporary folder, removed at the end of its life.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& path() const { return m_path; }
  /// Writes a file in it, making the folders on the way.
  std::filesystem::path write(const std::filesystem::path& name, const std::string& content) const;

 private:
  std::filesystem::path m_path;
};

}  // namespace mirvel::testdata

/// Leaves the test when the data folder isn't there, saying so.
#define MIRVEL_REQUIRE_TESTDATA(variable, name)                                                         \
  const auto variable##Found = mirvel::testdata::folder(name);                                          \
  if (!variable##Found) GTEST_SKIP() << "no folder " << name << " below " << mirvel::testdata::place(); \
  const std::filesystem::path& variable = *variable##Found
