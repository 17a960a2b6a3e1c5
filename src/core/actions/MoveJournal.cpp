#include "core/actions/MoveJournal.h"

#include <optional>
#include <system_error>

#include "core/actions/JobOnDisk.h"
#include "core/catalogue/JobFile.h"
#include "core/propertylist/Reader.h"
#include "core/propertylist/Value.h"
#include "core/propertylist/Writer.h"
#include "core/support/ReadFile.h"
#include "core/support/ReplaceFile.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t largestJournal = std::size_t{1} << 20U;
constexpr const char* rootsKey = "Root";
constexpr const char* labelKey = "Label";
constexpr const char* checksumKey = "Checksum";

/// By the path of the user's file.
plist::Dictionary readMoves(const fs::path& file) {
  const auto bytes = readFile(file, largestJournal);
  const auto document = bytes ? plist::read(*bytes) : Result<plist::Document>(bytes.error());
  if (!document) return {};
  plist::Value value = document->value();
  auto* dictionary = value.as<plist::Dictionary>();
  return dictionary ? std::move(*dictionary) : plist::Dictionary();
}

Result<void> writeMoves(const fs::path& file, const plist::Dictionary& moves) {
  std::error_code failure;
  if (moves.size() == 0) {
    fs::remove(file, failure);
    return failure ? Result<void>(systemError(failure.value(), "delete", file.string())) : Result<void>();
  }
  const auto text = plist::writeXml(moves);
  if (!text) return text.error();
  fs::create_directories(file.parent_path(), failure);
  return replaceFile(file, *text);
}

std::optional<MoveJournal::Move> moveOf(const std::string& users, const plist::Value& value) {
  const auto* entry = value.as<plist::Dictionary>();
  if (!entry) return std::nullopt;
  const auto text = [entry](const char* key) {
    const plist::Value* const found = entry->find(key);
    return found ? found->as<std::string>() : nullptr;
  };
  const std::string* const roots = text(rootsKey);
  const std::string* const label = text(labelKey);
  const std::string* const checksum = text(checksumKey);
  if (!roots || !label || !checksum) return std::nullopt;
  return MoveJournal::Move{URL::file(users), URL::file(*roots), *label, *checksum};
}

}  // namespace

Result<void> MoveJournal::begin(const Move& move) {
  plist::Dictionary moves = readMoves(m_file);
  moves.set(move.users.text(),
            plist::Dictionary{{rootsKey, move.roots.text()}, {labelKey, move.label}, {checksumKey, move.checksum}});
  return writeMoves(m_file, moves);
}

Result<void> MoveJournal::end(const URL& users) {
  plist::Dictionary moves = readMoves(m_file);
  if (!moves.find(users.text())) return {};
  moves.remove(users.text());
  return writeMoves(m_file, moves);
}

std::vector<MoveJournal::Move> MoveJournal::unfinished() const {
  std::vector<Move> result;
  for (const auto& [users, value] : readMoves(m_file)) {
    if (auto move = moveOf(users, value)) result.push_back(*std::move(move));
  }
  return result;
}

MoveRemedy remedyFor(const MoveJournal::Move& move) {
  const bool isRootsThere = jobLabel(move.roots) == move.label;
  if (isGone(move.users)) return isRootsThere ? MoveRemedy::LoadRoots : MoveRemedy::None;
  const auto users = jobBytes(move.users);
  if (!users || JobFile::checksumOf(*users) != move.checksum) return MoveRemedy::None;
  return isRootsThere ? MoveRemedy::RemoveUsers : MoveRemedy::LoadUsers;
}

}  // namespace mirvel
