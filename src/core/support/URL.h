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
  static URL file(std::filesystem::path path) { return URL(std::move(path), {}); }
  /// An address without a file, of any text but an empty one.
  static URL address(std::string text) { return URL({}, std::move(text)); }

  bool isFile() const { return m_address.empty(); }
  /// The path; empty of an address.
  const std::filesystem::path& path() const { return m_path; }
  /// The path or the address as text.
  const std::string& text() const { return isFile() ? m_path.native() : m_address; }
  std::string lastPathComponent() const;
  /// What follows the last dot of the last component; empty if there is none.
  std::string pathExtension() const;
  URL appending(std::string_view component) const { return file(m_path / component); }

  /// Whether both mean the same place after "." and "..", doubled and last slashes are taken out. Links aren't
  /// followed: nothing is asked of the disk.
  bool equalTo(const URL& other) const;

 private:
  URL(std::filesystem::path path, std::string address) : m_path(std::move(path)), m_address(std::move(address)) {}

  std::filesystem::path m_path;
  std::string m_address;
};

}  // namespace mirvel
