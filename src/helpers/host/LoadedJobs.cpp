#include "helpers/host/LoadedJobs.h"

#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"
#include "core/support/ReadFile.h"
#include "core/support/ReplaceFile.h"

namespace mirvel::host {

namespace {

constexpr std::size_t largest = std::size_t{64} << 20U;
constexpr std::string_view loadedKey = "Loaded";

}  // namespace

Result<std::vector<std::filesystem::path>> LoadedJobs::read() const {
  const auto bytes = readFile(m_file, largest);
  if (!bytes && bytes.error().code == Error::Code::NotFound) return std::vector<std::filesystem::path>();
  if (!bytes) return bytes.error();
  const auto document = plist::read(*bytes);
  if (!document) return document.error();
  const plist::Value value = document->value();
  const auto* const dictionary = value.as<plist::Dictionary>();
  const plist::Value* const loaded = dictionary ? dictionary->find(loadedKey) : nullptr;
  const auto* const paths = loaded ? loaded->as<plist::Array>() : nullptr;
  if (!paths) return Error{.code = Error::Code::WrongType, .message = "it is no list of jobs", .file = m_file};
  std::vector<std::filesystem::path> result;
  for (const plist::Value& path : *paths) {
    if (const auto* const text = path.as<std::string>()) result.emplace_back(*text);
  }
  return result;
}

Result<void> LoadedJobs::write(const std::vector<std::filesystem::path>& files) const {
  plist::Array paths;
  for (const auto& file : files) paths.emplace_back(file.string());
  const auto text = plist::writeXml(plist::Dictionary{{std::string(loadedKey), std::move(paths)}});
  return text ? replaceFile(m_file, *text) : text.error();
}

}  // namespace mirvel::host
