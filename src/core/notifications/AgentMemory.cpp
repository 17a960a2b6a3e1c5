#include "core/notifications/AgentMemory.h"

#include <algorithm>
#include <utility>

namespace mirvel {

using propertylist::Array;
using propertylist::Data;
using propertylist::Dictionary;
using propertylist::Value;

namespace {

struct Key {
  static constexpr const char* kinds = "Kinds";
  static constexpr const char* jobs = "Jobs";
  static constexpr const char* usedNotes = "UsedNotes";
  static constexpr const char* runs = "Runs";
  static constexpr const char* unsent = "Unsent";
  static constexpr const char* omitted = "Omitted";
  // Of a job or a note; paths can have any bytes, so they aren't keys.
  static constexpr const char* path = "Path";
  static constexpr const char* kind = "Kind";
  static constexpr const char* name = "Name";
  static constexpr const char* checksum = "Checksum";
  static constexpr const char* number = "Number";
};

std::optional<Kind> kindOf(std::optional<std::int64_t> number) {
  return number && *number >= 0 && *number <= 9 ? Kind::fromRawValue(static_cast<int>(*number)) : std::nullopt;
}

std::optional<std::int64_t> numberIn(const Dictionary& entry, const char* key) {
  const auto* const number = entry.get<propertylist::Integer>(key);
  return number ? number->toInt64() : std::nullopt;
}

/// Calls `use` for each dictionary with a path in an array.
template <typename Use>
void forEach(const Array* array, const Use& use) {
  if (!array) return;
  for (const Value& element : *array) {
    const auto* const entry = element.as<Dictionary>();
    const auto* const path = entry ? entry->get<Data>(Key::path) : nullptr;
    if (path) use(*entry, std::filesystem::path(path->bytes));
  }
}

}  // namespace

AgentMemory::AgentMemory(std::filesystem::path file, StoreTroubles& troubles) : m_store(std::move(file), &troubles) {
  m_isNewToRuns = !m_store.get<Dictionary>(Key::runs);
  readKinds();
  readJobs();
  readUsedNotes();
  failures = FailureSeries::read(m_store.get<Dictionary>(Key::runs));
  readUnsent();
}

void AgentMemory::readKinds() {
  const auto* const stored = m_store.get<Array>(Key::kinds);
  if (!stored) return;
  for (const Value& value : *stored) {
    const auto* const number = value.as<propertylist::Integer>();
    if (const auto kind = kindOf(number ? number->toInt64() : std::nullopt)) kinds.insert(*kind);
  }
}

void AgentMemory::readJobs() {
  forEach(m_store.get<Array>(Key::jobs), [this](const Dictionary& entry, const std::filesystem::path& path) {
    const auto kind = kindOf(numberIn(entry, Key::kind));
    const auto* const name = entry.get<std::string>(Key::name);
    const auto* const checksum = entry.get<std::string>(Key::checksum);
    if (kind && name && checksum) jobs[path] = {.kind = *kind, .name = *name, .checksum = *checksum};
  });
}

void AgentMemory::readUsedNotes() {
  forEach(m_store.get<Array>(Key::usedNotes), [this](const Dictionary& entry, const std::filesystem::path& path) {
    if (const auto number = numberIn(entry, Key::number)) usedNotes[path] = *number;
  });
}

void AgentMemory::readUnsent() {
  if (const auto* const stored = m_store.get<Array>(Key::unsent)) {
    for (const Value& value : *stored) {
      if (auto notice = Notice::read(value)) unsent.push_back(*std::move(notice));
    }
  }
  omitted =
      std::clamp(numberIn(m_store.contents(), Key::omitted).value_or(0), std::int64_t{0}, std::int64_t{1'000'000});
}

void AgentMemory::add(Notice notice) {
  if (unsent.size() >= mostUnsent) {
    const auto change = std::find_if(unsent.begin(), unsent.end(), [](const Notice& each) { return each.isChange(); });
    if (change != unsent.end()) ++omitted;
    unsent.erase(change != unsent.end() ? change : unsent.begin());
  }
  unsent.push_back(std::move(notice));
}

void AgentMemory::write() {
  Array scanned, known, used, notices;
  for (const Kind kind : kinds) scanned.emplace_back(kind.rawValue());
  for (const auto& [path, job] : jobs) {
    known.emplace_back(Dictionary{{Key::path, Data{path.native()}},
                                  {Key::kind, job.kind.rawValue()},
                                  {Key::name, job.name},
                                  {Key::checksum, job.checksum}});
  }
  for (const auto& [path, number] : usedNotes) {
    used.emplace_back(Dictionary{{Key::path, Data{path.native()}}, {Key::number, number}});
  }
  for (const Notice& notice : unsent) notices.emplace_back(notice.write());
  m_store.put(Key::kinds, std::move(scanned));
  m_store.put(Key::jobs, std::move(known));
  m_store.put(Key::usedNotes, std::move(used));
  if (!m_isNewToRuns) m_store.put(Key::runs, failures.write());
  m_store.put(Key::unsent, std::move(notices));
  m_store.put(Key::omitted, omitted);
  (void)m_store.write();  // the store reports a failure, and keeps the changes
}

}  // namespace mirvel
