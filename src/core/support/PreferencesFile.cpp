#include "core/support/PreferencesFile.h"

#include <fcntl.h>

#include <cerrno>
#include <string>

#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"
#include "core/support/FileDescriptor.h"
#include "core/support/ReadFile.h"
#include "core/support/ReplaceFile.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t largestFile = std::size_t{16} << 20U;

/// All zero where there is no file.
struct stat statusOf(const fs::path& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return {};
  return status;
}

auto times(const struct stat& status) {
#ifdef __APPLE__
  return std::pair(status.st_mtimespec, status.st_ctimespec);
#else
  return std::pair(status.st_mtim, status.st_ctim);
#endif
}

bool sameTime(const timespec& a, const timespec& b) {
  return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

bool sameVersion(const struct stat& a, const struct stat& b) {
  const auto [modifiedA, changedA] = times(a);
  const auto [modifiedB, changedB] = times(b);
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino && a.st_size == b.st_size && sameTime(modifiedA, modifiedB) &&
         sameTime(changedA, changedB);
}

/// Takes a free name by making an empty file of that name, so that nothing that lies there is overwritten.
Result<fs::path> reserveName(const fs::path& path) {
  constexpr int mostNames = 10000;
  for (int number = 1; number < mostNames; ++number) {
    fs::path name = path;
    name += ".damaged-" + std::to_string(number);
    const FileDescriptor file(::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (file) return name;
    if (errno != EEXIST) return systemError(errno, "set the damaged file aside", path.string());
  }
  return systemError(EEXIST, "set the damaged file aside", path.string());
}

}  // namespace

const plist::Value* PreferencesFile::find(std::string_view key) {
  if (!m_loaded || !sameVersion(*m_loaded, statusOf(m_path))) (void)load();  // a file that can't be read is empty
  return m_dictionary.find(key);
}

Result<void> PreferencesFile::set(std::string_view key, plist::Value value) {
  if (auto loaded = load(); !loaded) return loaded;
  const plist::Value* old = m_dictionary.find(key);
  if (old && *old == value) return {};

  plist::Dictionary changed = m_dictionary;
  changed.set(std::string(key), std::move(value));
  const auto bytes = plist::writeXml(changed);
  if (!bytes) return bytes.error();
  std::error_code failure;
  fs::create_directories(m_path.parent_path(), failure);
  if (failure) return systemError(failure.value(), "make the folder", m_path.parent_path().string());
  m_loaded.reset();
  return replaceFile(m_path, *bytes);
}

Result<void> PreferencesFile::load() {
  m_dictionary = {};
  m_loaded = statusOf(m_path);  // before reading: a change in between is then seen as one
  const auto bytes = readFile(m_path, largestFile);
  if (bytes) return takeDictionary(*bytes);
  return bytes.error().code == Error::Code::NotFound ? Result<void>() : bytes.error();
}

Result<void> PreferencesFile::takeDictionary(const std::string& bytes) {
  const auto document = plist::read(bytes);
  if (document) {
    plist::Value value = document->value();
    if (auto* dictionary = value.as<plist::Dictionary>()) {
      m_dictionary = std::move(*dictionary);
      return {};
    }
  }
  if (m_damaged == Damaged::SetAside) return moveAside();
  return Error{.code = Error::Code::Malformed, .message = "it holds no settings", .file = m_path.string()};
}

Result<void> PreferencesFile::moveAside() {
  const auto name = reserveName(m_path);
  if (!name) return name.error();
  std::error_code failure;
  fs::rename(m_path, *name, failure);
  if (failure) {
    std::error_code ignored;
    fs::remove(*name, ignored);
    return systemError(failure.value(), "set the damaged file aside", m_path.string());
  }
  m_setAside = *name;
  m_loaded.reset();
  return {};
}

}  // namespace mirvel
