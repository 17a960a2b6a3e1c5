#include "helpers/host/LoadedJobs.h"

#include <fcntl.h>

#include <cerrno>
#include <cstdio>

#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"
#include "core/support/FileDescriptor.h"
#include "core/support/ReadFile.h"
#include "core/support/ReplaceFile.h"

namespace mirvel::host {

namespace {

constexpr std::size_t largest = std::size_t{64} << 20U;
constexpr std::string_view loadedKey = "Loaded";

Result<std::vector<std::filesystem::path>> pathsIn(const std::string& bytes) {
  const auto document = plist::read(bytes);
  if (!document) return document.error();
  const plist::Value value = document->value();
  const auto* const dictionary = value.as<plist::Dictionary>();
  const plist::Value* const loaded = dictionary ? dictionary->find(loadedKey) : nullptr;
  const auto* const paths = loaded ? loaded->as<plist::Array>() : nullptr;
  const Error noList{.code = Error::Code::WrongType, .message = "it is no list of jobs"};
  if (!paths) return noList;
  std::vector<std::filesystem::path> result;
  for (const plist::Value& path : *paths) {
    const auto* const text = path.as<std::string>();
    if (!text) return noList;
    result.emplace_back(*text);
  }
  return result;
}

}  // namespace

Result<std::vector<std::filesystem::path>> LoadedJobs::read() {
  const auto bytes = readFile(m_file, largest);
  m_mayWrite = bytes || bytes.error().code == Error::Code::NotFound;
  if (!bytes && m_mayWrite) return std::vector<std::filesystem::path>();
  if (!bytes) return bytes.error();
  auto paths = pathsIn(*bytes);
  if (paths) return paths;
  m_mayWrite = false;
  Error error = paths.error();
  error.file = m_file;
  const auto aside = moveAside();
  if (!aside) return error;
  m_mayWrite = true;
  error.message += "; it is kept as " + aside->string();
  return error;
}

std::optional<std::filesystem::path> LoadedJobs::moveAside() const {
  constexpr int mostRescues = 1000;
  for (int i = 1; i <= mostRescues; ++i) {
    std::filesystem::path aside = m_file;
    aside += ".damaged-" + std::to_string(i);
    // Takes the name first: only what was made here is replaced.
    const FileDescriptor place(::open(aside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (!place && errno == EEXIST) continue;
    if (place && ::rename(m_file.c_str(), aside.c_str()) == 0) return aside;
    return std::nullopt;
  }
  return std::nullopt;
}

Result<void> LoadedJobs::write(const std::vector<std::filesystem::path>& files) const {
  if (!m_mayWrite) {
    return Error{.code = Error::Code::Io, .message = "it couldn't be read, and isn't overwritten", .file = m_file};
  }
  plist::Array paths;
  for (const auto& file : files) paths.emplace_back(file.string());
  const auto text = plist::writeXml(plist::Dictionary{{std::string(loadedKey), std::move(paths)}});
  return text ? replaceFile(m_file, *text) : text.error();
}

}  // namespace mirvel::host
