#include "core/actions/MoveJournal.h"

#include <optional>

#include "core/actions/JobOnDisk.h"
#include "core/catalogue/JobFile.h"
#include "core/propertylist/Value.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

constexpr const char* rootsKey = "Root";
constexpr const char* labelKey = "Label";
constexpr const char* checksumKey = "Checksum";

std::optional<MoveJournal::Move> moveOf(const std::string& users, const propertylist::Value& value) {
  const auto* const fields = value.as<propertylist::Dictionary>();
  if (!fields) return std::nullopt;
  const auto* const roots = fields->get<std::string>(rootsKey);
  const auto* const label = fields->get<std::string>(labelKey);
  const auto* const checksum = fields->get<std::string>(checksumKey);
  if (!roots || !label || !checksum) return std::nullopt;
  return MoveJournal::Move{URL::file(users), URL::file(*roots), *label, *checksum};
}

}  // namespace

MoveJournal::MoveJournal(const fs::path& folder, StoreTroubles& troubles)
    : m_store(folder / "Moves.plist", &m_troubles) {
  m_troubles.setListener([&troubles](const StoreTrouble& trouble) {
    // `begin` and `end` return this one as an error, which their callers show.
    if (trouble.kind != StoreTrouble::Kind::Unwritten) troubles.report(trouble);
  });
}

Result<void> MoveJournal::begin(const Move& move) {
  const std::string key = move.users.text();
  auto noted = m_store.set(
      key,
      propertylist::Dictionary{{rootsKey, move.roots.text()}, {labelKey, move.label}, {checksumKey, move.checksum}});
  if (!noted) m_store.put(key, std::nullopt);  // otherwise the next successful write would record it
  return noted;
}

Result<void> MoveJournal::end(const URL& users) {
  m_store.put(users.text(), std::nullopt);
  // Without moves there is no file, so that a start has nothing to read.
  return m_store.contents().size() == 0 ? m_store.clear() : m_store.write();
}

std::vector<MoveJournal::Move> MoveJournal::unfinished() {
  std::vector<Move> result;
  for (const auto& [users, value] : m_store.contents()) {
    if (auto move = moveOf(users, value)) result.push_back(*std::move(move));
  }
  return result;
}

MoveRemedy remedyFor(const MoveJournal::Move& move) {
  const bool isRootsThere = jobLabel(move.roots) == move.label;
  if (isGone(move.users)) return isRootsThere ? MoveRemedy::LoadRoots : MoveRemedy::None;
  const auto users = jobBytes(move.users);
  if (!users || Checksum::ofFile(*users).text() != move.checksum) return MoveRemedy::None;
  return isRootsThere ? MoveRemedy::RemoveUsers : MoveRemedy::LoadUsers;
}

}  // namespace mirvel
