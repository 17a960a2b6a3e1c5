#include "core/catalogue/StartupItem.h"

#include <algorithm>
#include <optional>

#include "core/catalogue/JobFolder.h"
#include "core/files/ReadFile.h"
#include "core/files/RegularFile.h"
#include "core/propertylist/Encoding.h"
#include "core/propertylist/Reader.h"
#include "core/text/Bytes.h"

namespace mirvel {

namespace {

struct Parameters {
  std::string description;
  std::string firstProvided;
};

std::optional<std::string> readFileIn(const JobFolder& folder, const std::string& name) {
  const auto stamp = folder.stamp(name);
  if (!stamp) return std::nullopt;
  auto bytes = folder.read(name, *stamp);
  return bytes ? std::optional(*std::move(bytes)) : std::nullopt;
}

/// The first element of an array of strings; null if it is empty or has an element of another type.
std::optional<std::string> firstString(const propertylist::Array& entries) {
  const auto isText = [](const propertylist::Value& entry) { return entry.as<std::string>() != nullptr; };
  if (entries.empty() || !std::all_of(entries.begin(), entries.end(), isText)) return std::nullopt;
  return *entries.front().as<std::string>();
}

std::optional<Parameters> readParameters(const std::string& bytes) {
  const auto list = propertylist::readDictionary(bytes);
  if (!list) return std::nullopt;
  const auto* const description = list->get<std::string>("Description");
  const auto* const provides = list->get<propertylist::Array>("Provides");
  const auto firstProvided = provides ? firstString(*provides) : std::nullopt;
  if (!description || !firstProvided) return std::nullopt;
  return Parameters{.description = *description, .firstProvided = *firstProvided};
}

}  // namespace

std::shared_ptr<StartupItem> StartupItem::read(const URL& url, Kind kind) {
  const auto folder = JobFolder::open(url.path());
  if (!folder) return nullptr;
  const auto list = readFileIn(*folder, "StartupParameter.plist");
  const auto parameters = list ? readParameters(*list) : std::nullopt;
  if (!parameters || parameters->description.empty()) return nullptr;
  auto script = readFileIn(*folder, url.lastPathComponent());
  if (!script || !propertylist::isUtf8(*script)) return nullptr;

  std::shared_ptr<StartupItem> job(new StartupItem(kind, parameters->description, parameters->firstProvided,
                                                   toBase64(parameters->description + *script), url));
  job->path = url.appending(url.lastPathComponent()).text();
  job->textContent = *std::move(script);
  job->icon = Image::iconOfPath(url.text());
  return job;
}

Result<std::string> StartupItem::script() const {
  const auto file = RegularFile::open(path);
  if (!file) return file.error();
  auto text = readFile(file->descriptor.number(), JobFolder::largestFile, path);
  if (text && !propertylist::isUtf8(*text)) {
    return Error{.code = Error::Code::UnsupportedEncoding, .message = "it isn't text in UTF-8", .file = path};
  }
  return text;
}

}  // namespace mirvel
