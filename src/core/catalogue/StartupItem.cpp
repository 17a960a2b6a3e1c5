#include "core/catalogue/StartupItem.h"

#include <optional>

#include "core/catalogue/JobFolder.h"
#include "core/propertylist/Encoding.h"
#include "core/propertylist/Reader.h"
#include "core/text/Digest.h"

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
std::optional<std::string> firstString(const propertylist::Node& list) {
  const auto entries = list.array();
  if (!entries || entries->empty()) return std::nullopt;
  for (const auto& entry : *entries) {
    if (!entry.string()) return std::nullopt;
  }
  return std::string(*entries->front().string());
}

std::optional<Parameters> readParameters(const std::string& bytes) {
  const auto document = propertylist::read(bytes);
  if (!document) return std::nullopt;
  const auto members = document->root().dictionary();
  if (!members) return std::nullopt;
  const propertylist::Node* description = members->find("Description");
  const propertylist::Node* provides = members->find("Provides");
  const auto firstProvided = provides ? firstString(*provides) : std::nullopt;
  if (!description || !description->string() || !firstProvided) return std::nullopt;
  return Parameters{.description = std::string(*description->string()), .firstProvided = *firstProvided};
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

  const std::shared_ptr<StartupItem> job(new StartupItem(kind, parameters->description, parameters->firstProvided,
                                                         String::toBase64(parameters->description + *script), url));
  job->path = url.appending(url.lastPathComponent()).text();
  job->textContent = *std::move(script);
  job->icon = Image::iconOfPath(url.text());
  return job;
}

}  // namespace mirvel
