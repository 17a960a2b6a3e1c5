#include "core/files/URL.h"

#include "core/text/Strings.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

/// Lexically normalized, without a slash at the end.
std::string normalized(const std::string& path) {
  std::string text = fs::path(path).lexically_normal().native();
  while (text.size() > 1 && text.back() == '/') text.pop_back();
  return text;
}

/// Whether a path is certainly normalized, as nearly all are; then comparing the strings is enough.
bool isPlain(const std::string& path) {
  return !path.empty() && path.back() != '/' && path.find("/.") == std::string::npos &&
         path.find("//") == std::string::npos && path.front() != '.';
}

}  // namespace

std::string URL::lastPathComponent() const {
  return std::string(String::lastPathComponent(text()));
}

bool URL::equalTo(const URL& other) const {
  if (isFile() != other.isFile()) return false;
  if (text() == other.text()) return true;
  if (!isFile() || (isPlain(text()) && isPlain(other.text()))) return false;
  return normalized(m_text) == normalized(other.m_text);
}

std::string localizedDisplayPath(std::string_view path, std::string_view home) {
  while (!home.empty() && home.back() == '/') home.remove_suffix(1);
  const bool isInside =
      !home.empty() && path.starts_with(home) && (path.size() == home.size() || path[home.size()] == '/');
  return isInside ? "~" + std::string(path.substr(home.size())) : std::string(path);
}

}  // namespace mirvel
