#pragma once

#include <sys/stat.h>

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "core/propertylist/Value.h"
#include "core/support/Result.h"
#include "core/support/StoreTroubles.h"
#include "core/support/URL.h"

namespace mirvel {

/// What a dictionary has under that key, if it is of that type; null otherwise.
template <typename T>
const T* entry(const plist::Dictionary& dictionary, std::string_view key) {
  const plist::Value* const value = dictionary.find(key);
  return value ? value->as<T>() : nullptr;
}

/// A property list that the program keeps for itself: a dictionary that other programs may change at any time. Reading
/// notices a changed file by its identity, size and times; writing reads the file anew first, so that all keys but the
/// changed ones keep what others wrote. There is no lock: of two writes in the same instant one may be lost, never the
/// file.
///
/// - A file that isn't there is empty.
/// - A damaged one, which is no property list or no dictionary, is renamed to "<name>.damaged-1" (or the next free
///   number) and counts as empty.
/// - One that can't be read for another reason counts as empty, is left alone, and can't be written to.
/// - What can't be written stays in memory and goes out with the next write that succeeds.
///
/// Each trouble is reported once, and again only after it had gone. For one thread.
class Store {
 public:
  /// What becomes of a damaged file. One that is left can't be written to.
  enum class Damaged { SetAside, Leave };
  /// In bytes. A larger file is neither read nor written.
  static constexpr std::size_t largestFile = std::size_t{256} << 20U;

  /// Nothing needs to exist at the path yet. Without `troubles`, which outlives the store, nobody is told.
  explicit Store(std::filesystem::path file, StoreTroubles* troubles = nullptr, Damaged damaged = Damaged::SetAside)
      : m_path(std::move(file)), m_troubles(troubles), m_damaged(damaged) {}

  /// All keys, with the changes that aren't written yet. Valid until the next call.
  const plist::Dictionary& contents();
  /// The value of a key, or null. Valid until the next call.
  const plist::Value* find(std::string_view key) { return contents().find(key); }

  /// Reads the file now. Why it can't be read; a damaged one is moved aside, which is no failure.
  Result<void> refresh();

  /// Changes one key in memory; without a value it is removed.
  void put(const std::string& key, std::optional<plist::Value> value);
  bool hasChanges() const { return !m_changes.empty(); }
  /// Brings the changes to the file, making it and its folders if they are missing. What is new is
  /// the user's alone.
  Result<void> write();
  /// Changes one key and writes.
  Result<void> set(const std::string& key, std::optional<plist::Value> value);
  /// Moves the file aside as a damaged one: it holds what its owner can't make sense of.
  Result<void> setAside(const Error& damage);
  /// Removes the file with all that it holds, and forgets the changes.
  Result<void> clear();

 private:
  Result<void> read();
  Result<void> takeDictionary(const std::string& bytes);
  bool applyChanges();
  Result<void> replace();
  void report(StoreTrouble::Kind kind, const Error& error, std::string& told) const;

  std::filesystem::path m_path;
  StoreTroubles* m_troubles;
  Damaged m_damaged;
  plist::Dictionary m_contents;
  std::map<std::string, std::optional<plist::Value>> m_changes;  ///< in `m_contents`, but not in the file
  std::optional<struct stat> m_loaded;  ///< of the file that `m_contents` was read from; none: read again
  std::string m_toldOfReading;          ///< the last trouble that was reported, until it has gone
  std::string m_toldOfWriting;
};

/// The key under which a store keeps something that belongs to a file: its path. Bytes that aren't UTF-8, which no
/// property list can hold, are given by their numbers.
std::string storeKey(const URL& url);

}  // namespace mirvel
