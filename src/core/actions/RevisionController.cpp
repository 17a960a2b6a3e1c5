#include "core/actions/RevisionController.h"

#include <algorithm>
#include <system_error>

#include "core/catalogue/Launchd.h"
#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"
#include "core/support/ReadFile.h"
#include "core/support/ReplaceFile.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

plist::Dictionary readStore(const fs::path& file) {
  constexpr std::size_t largest = std::size_t{256} << 20U;
  const auto bytes = readFile(file, largest);
  if (!bytes) return {};
  const auto document = plist::read(*bytes);
  if (!document) return {};
  plist::Value value = document->value();
  auto* dictionary = value.as<plist::Dictionary>();
  return dictionary ? std::move(*dictionary) : plist::Dictionary();
}

/// The value as an array of dictionaries; empty if it is anything else.
plist::Array revisionsIn(const plist::Value* value) {
  const auto* array = value ? value->as<plist::Array>() : nullptr;
  const auto isRevision = [](const plist::Value& entry) { return entry.as<plist::Dictionary>() != nullptr; };
  return array && std::all_of(array->begin(), array->end(), isRevision) ? *array : plist::Array();
}

}  // namespace

RevisionController::RevisionController(const fs::path& folder, const Defaults& defaults, const Clock& clock)
    : m_file(folder / "Revisions.plist"), m_defaults(defaults), m_clock(clock) {}

plist::Dictionary& RevisionController::store() const {
  if (!m_revisions) m_revisions = readStore(m_file);
  return *m_revisions;
}

const plist::Dictionary& RevisionController::revisions() const {
  return store();
}

void RevisionController::saveRevision(const Launchd& job) {
  const std::string& path = job.url.text();
  plist::Array kept = revisionsIn(store().find(path));
  if (auto content = job.plistDictionary()) {
    plist::Dictionary revision{{dateKey, m_clock.secondsSince1970()}, {plistKey, *std::move(content)}};
    kept.insert(kept.begin(), std::move(revision));
  }
  const auto limit = static_cast<std::size_t>(std::max<std::int64_t>(m_defaults.numberOfSavedRevisions(), 0));
  if (kept.size() > limit) kept.resize(limit);
  store().set(path, std::move(kept));
  write();
}

void RevisionController::write() const {
  const auto text = plist::writeXml(store());
  if (!text) return;
  std::error_code failure;
  fs::create_directories(m_file.parent_path(), failure);
  (void)replaceFile(m_file, *text);  // what can't be written is kept in memory
}

void RevisionController::clearRevisions() {
  std::error_code failure;
  fs::remove(m_file, failure);
  m_revisions = plist::Dictionary();
}

}  // namespace mirvel
