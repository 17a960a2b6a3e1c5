#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

namespace mirvel {

/// Where a job lives: a file or folder, or a made-up address that is nothing but an identity.
class URL {
 public:
  /// A file or folder. The path is kept as it stands, in bytes, which need not be UTF-8.
  static URL file(const std::filesystem::path& path) { return file(path.native()); }
  static URL file(std::string path) { return {std::move(path), true}; }
  static URL file(const char* path) { return file(std::string(path)); }
  /// An address without a file, of any text but an empty one.
  static URL address(std::string text) { return {std::move(text), false}; }

  bool isFile() const { return m_isFile; }
  /// The path; empty of an address.
  std::filesystem::path path() const { return m_isFile ? std::filesystem::path(m_text) : std::filesystem::path(); }
  /// The path or the address as text.
  const std::string& text() const { return m_text; }
  std::string lastPathComponent() const;
  /// What follows the last dot of the last component; empty if there is none.
  std::string pathExtension() const;
  URL appending(std::string_view component) const { return file(path() / component); }

  /// Whether both mean the same place after "." and "..", doubled and last slashes are taken out. Links aren't
  /// followed: nothing is asked of the disk.
  bool equalTo(const URL& other) const;

 private:
  URL(std::string text, bool isFile) : m_text(std::move(text)), m_isFile(isFile) {}

  // No path: that is taken apart when it is made, and there are tens of thousands of these.
  std::string m_text;
  bool m_isFile;
};

/// A path as its user sees it: "~/x" of what lies in the home folder.
std::string localizedDisplayPath(std::string_view path, std::string_view home);

}  // namespace mirvel
