#include "core/documents/ScriptRevisions.h"

#include <system_error>

#include "core/files/URL.h"
#include "core/text/Bytes.h"

namespace mirvel {

namespace fs = std::filesystem;

ScriptRevisions::ScriptRevisions(const fs::path& support, const Defaults& defaults, const Clock& clock,
                                 StoreTroubles& troubles)
    : m_folder(support / "ScriptRevisions"), m_defaults(defaults), m_clock(clock), m_troubles(troubles) {}

/// Named by the checksum, as the key of a path may be too long for a name.
fs::path ScriptRevisions::fileOf(const std::string& key) const {
  return m_folder / (toHex(sha256(key).value_or(key)) + ".plist");
}

void ScriptRevisions::add(const fs::path& script, const std::string& text) {
  if (text.size() > largestText) return;
  const std::string key = storeKey(URL::file(script));
  store(fileOf(key)).add(key, propertylist::Dictionary{{textKey, propertylist::Data{text}}});
}

std::vector<ScriptRevisions::Revision> ScriptRevisions::of(const fs::path& script) const {
  std::vector<Revision> result;
  const std::string key = storeKey(URL::file(script));
  for (const propertylist::Value& entry : store(fileOf(key)).revisionsOf(key)) {
    const auto* const revision = entry.as<propertylist::Dictionary>();
    const auto* const date = revision->get<double>(RevisionStore::dateKey);
    const auto* const text = revision->get<propertylist::Data>(textKey);
    if (date && text) result.push_back({*date, text->bytes});
  }
  return result;
}

std::vector<fs::path> ScriptRevisions::files() const {
  std::vector<fs::path> result;
  std::error_code failure;
  fs::directory_iterator entry(m_folder, failure);
  for (; !failure && entry != fs::directory_iterator(); entry.increment(failure)) {
    if (entry->path().extension() == ".plist") result.push_back(entry->path());
  }
  return result;
}

Result<RevisionHistory::Excess> ScriptRevisions::countBeyond(std::int64_t number) const {
  Excess sum;
  for (const fs::path& file : files()) {
    const auto excess = store(file).countBeyond(number);
    if (!excess) return excess.error();
    sum += *excess;
  }
  return sum;
}

void ScriptRevisions::removeBeyond(std::int64_t number) {
  for (const fs::path& file : files()) store(file).removeBeyond(number);
}

}  // namespace mirvel
