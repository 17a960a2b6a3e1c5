#pragma once

#include <sys/stat.h>

#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/Error.h"
#include "core/base/Result.h"
#include "core/files/URL.h"
#include "core/propertylist/Value.h"

namespace mirvel {

/// What went wrong with a file that the program keeps for itself.
struct StoreTrouble {
  enum class Kind {
    Damaged,    ///< it was moved to `rescue` and counts as empty
    Unread,     ///< it can't be read, or not be moved aside; it is left alone
    Unwritten,  ///< what should have been written is in memory only
  };

  Kind kind;
  Error error;  ///< names the file
  std::filesystem::path rescue = {};
};

/// Passes such troubles on to whoever tells the user. Those that occur before anybody listens wait. For the main
/// thread.
class StoreTroubles {
 public:
  using Listener = std::function<void(const StoreTrouble&)>;

  void report(StoreTrouble trouble);
  /// The listener hears of those that wait at once, and of every later one as it occurs. Null: nobody listens.
  void setListener(Listener listener);

 private:
  Listener m_listener;
  std::vector<StoreTrouble> m_waiting;
};

class FileCalls;

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

  /// Nothing needs to exist at the path yet. Without `troubles` nobody is told. Tests write by `calls` of their own.
  /// Both outlive the store.
  explicit Store(std::filesystem::path file, StoreTroubles* troubles = nullptr, Damaged damaged = Damaged::SetAside,
                 FileCalls* calls = nullptr)
      : m_path(std::move(file)), m_troubles(troubles), m_damaged(damaged), m_calls(calls) {}

  /// All keys, with the changes that aren't written yet. Valid until the next call.
  const propertylist::Dictionary& contents();
  /// The value of a key, or null. Valid until the next call.
  const propertylist::Value* find(std::string_view key) { return contents().find(key); }
  /// Likewise, null too if it is of another type.
  template <typename T>
  const T* get(std::string_view key) {
    return contents().get<T>(key);
  }

  /// Reads the file now. Why it can't be read; a damaged one is moved aside, which is no failure.
  Result<void> refresh();

  /// Changes one key in memory; without a value it is removed.
  void put(const std::string& key, std::optional<propertylist::Value> value);
  bool hasChanges() const { return !m_changes.empty(); }
  /// Brings the changes to the file, making it and its folders if they are missing. What is new is
  /// the user's alone.
  Result<void> write();
  /// Changes one key and writes.
  Result<void> set(const std::string& key, std::optional<propertylist::Value> value);
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
  FileCalls* m_calls;  ///< null: the system's own
  propertylist::Dictionary m_contents;
  std::map<std::string, std::optional<propertylist::Value>> m_changes;  ///< in `m_contents`, but not in the file
  std::optional<struct stat> m_loaded;  ///< of the file that `m_contents` was read from; none: read again
  std::string m_toldOfReading;          ///< the last trouble that was reported, until it has gone
  std::string m_toldOfWriting;
};

/// The key under which a store keeps something that belongs to a file: its path. Bytes that aren't UTF-8, which no
/// property list can hold, are given by their numbers.
std::string storeKey(const URL& url);

}  // namespace mirvel
