#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

namespace mirvel {

/// The identity of a job: the path of a file or folder, or an address that is made up and refers to no file. A value
/// type; nothing here accesses the file system.
class URL {
 public:
  /// A file or folder. The bytes of the path are kept as they are; they needn't be UTF-8 or normalized.
  static URL file(const std::filesystem::path& path) { return file(path.native()); }
  static URL file(std::string path) { return {std::move(path), true}; }
  static URL file(const char* path) { return file(std::string(path)); }
  /// An address that isn't a file. `text` must not be empty.
  static URL address(std::string text) { return {std::move(text), false}; }

  bool isFile() const { return m_isFile; }
  /// The path; empty for an address.
  std::filesystem::path path() const { return m_isFile ? std::filesystem::path(m_text) : std::filesystem::path(); }
  /// The path or the address.
  const std::string& text() const { return m_text; }
  /// Of the path or address; slashes at the end are ignored: "b" of "/a/b/".
  std::string lastPathComponent() const;
  /// A file in this folder.
  URL appending(std::string_view component) const { return file(path() / component); }

  /// Whether both are the same path after lexical normalization of ".", "..", repeated and trailing slashes, or the
  /// same address. Symbolic links aren't resolved. Case-sensitive.
  bool equalTo(const URL& other) const;

 private:
  URL(std::string text, bool isFile) : m_text(std::move(text)), m_isFile(isFile) {}

  // Not a std::filesystem::path, whose constructor splits the path into components: there are tens of thousands of
  // URLs.
  std::string m_text;
  bool m_isFile;
};

/// A path for display: "~/x" if it is in the home folder. An empty home or "/" changes nothing.
std::string localizedDisplayPath(std::string_view path, std::string_view home);

}  // namespace mirvel
