#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace mirvel {

/// Where a job lives: a file or folder, or a made-up address that is nothing but an identity.
class URL {
 public:
  /// A file or folder. The path is kept as it stands, in bytes, which need not be UTF-8.
  static URL file(std::filesystem::path path) { return URL(std::move(path), {}); }
  /// An address without a file; what isn't allowed in the host of a URL (RFC 3986) is percent-encoded. None of an empty
  /// text.
  static std::optional<URL> address(std::string_view text);

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
