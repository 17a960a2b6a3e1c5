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

/// A problem with one of the program's own files.
struct StoreTrouble {
  enum class Kind {
    Damaged,    ///< it was moved to `rescue`; the store is empty
    Unread,     ///< it can't be read, or not be moved aside; it is left as it is
    Unwritten,  ///< changes couldn't be written and are only in memory
  };

  Kind kind;
  Error error;                        ///< has the path of the file
  std::filesystem::path rescue = {};  ///< where a damaged file is now
};

/// Forwards problems of all stores to one listener, which shows them to the user. Problems that occur before there is a
/// listener are kept for it. For the main thread.
class StoreTroubles {
 public:
  using Listener = std::function<void(const StoreTrouble&)>;

  void report(StoreTrouble trouble);
  /// Calls the listener immediately for problems that were kept, then for each new one. Null removes it; problems are
  /// kept again.
  void setListener(Listener listener);

 private:
  Listener m_listener;
  std::vector<StoreTrouble> m_waiting;  ///< until there is a listener
};

/// One of the program's own property lists: a dictionary in a file that other programs may change at any time. Reading
/// detects such changes by the identity, size and times of the file. Writing reads the file again first and replaces
/// only the changed keys, so that changes by others are kept; with `update`, also changes of the same key. While it
/// writes, it locks the folder against other stores (`lockFolder`); without the lock, one of two changes at the same
/// moment may be lost, but the file is never damaged.
///
/// - A missing file is empty.
/// - A damaged file, which isn't a property list or not a dictionary, is renamed to "<name>.damaged-1" (or the next
///   free number), and the store is empty.
/// - If a file can't be read for any other reason, the store is empty and refuses to write, and the file is left as it
///   is.
/// - Changes that can't be written stay in memory and are written by the next call of `write` that succeeds.
///
/// A persistent problem is reported once, and again only if it was gone in between. For one thread.
///
///     Store notes(roots.applicationSupport / "Notes.plist", &troubles);
///     notes.set("/jobs/a.plist", "runs too often");  // Result<void>, written at once
class Store {
 public:
  /// What to do with a damaged file. With `Leave`, it is treated like one that can't be read.
  enum class Damaged { SetAside, Leave };
  /// In bytes. A larger file is neither read nor written: `LimitExceeded`.
  static constexpr std::size_t largestFile = std::size_t{256} << 20U;

  /// Doesn't access the file, which needn't exist. Without `troubles`, which must outlive the store, problems aren't
  /// reported.
  explicit Store(std::filesystem::path file, StoreTroubles* troubles = nullptr, Damaged damaged = Damaged::SetAside)
      : m_path(std::move(file)), m_troubles(troubles), m_damaged(damaged) {}

  /// All keys, including changes that haven't been written. Reads the file if it has changed. The reference is valid
  /// until the next call of any member function; the same holds for `find` and `get`.
  const propertylist::Dictionary& contents();
  /// The value of a key, or null.
  const propertylist::Value* find(std::string_view key) { return contents().find(key); }
  /// The value of a key as a `T`; also null if it has another type.
  template <typename T>
  const T* get(std::string_view key) {
    return contents().get<T>(key);
  }

  /// Reads the file now. Returns why it can't be read; moving a damaged file aside counts as success.
  Result<void> refresh();

  /// Computes the new value of a key from the present one, which is null if there is none. nullopt removes the key.
  using Edit = std::function<std::optional<propertylist::Value>(const propertylist::Value* present)>;

  /// Changes a key in memory only, by an edit of its present value. Until it has been written, the edit is applied anew
  /// whenever another program has changed the file, so that no change of the same key is lost.
  void update(const std::string& key, Edit edit);
  /// Changes a key in memory only; nullopt removes it.
  void put(const std::string& key, std::optional<propertylist::Value> value);
  /// Whether there are changes that haven't been written.
  bool hasChanges() const { return !m_changes.empty(); }
  /// Writes all changes, or does nothing if they make no difference. Creates the file and its folders if they are
  /// missing, accessible to the user only. On failure, the changes stay in memory.
  Result<void> write();
  /// `put`, then `write`.
  Result<void> set(const std::string& key, std::optional<propertylist::Value> value);
  /// Moves the file aside like a damaged one and reports it, for a user of the store that finds its content invalid,
  /// and writes the keys of `kept` in its place. Changes that haven't been written are kept, too. False, without
  /// effect, if another program has changed the file since it was read.
  Result<bool> setAside(const Error& damage, const propertylist::Dictionary& kept = {});
  /// Deletes the file and discards changes that haven't been written. Fails if the file can't be read.
  Result<void> clear();

 private:
  /// Whether this store has locked the folder; locking it again would wait.
  enum class Lock { Free, Held };

  Result<void> read(Lock lock = Lock::Free);
  Result<void> load(const std::string& bytes, Lock lock);
  Result<bool> moveAside(const Error& damage, Lock lock);
  Result<void> writeLocked();
  bool applyChanges();
  bool apply(const std::string& key, const Edit& edit);
  Result<void> replace();
  void report(StoreTrouble::Kind kind, const Error& error, std::string& reported) const;

  std::filesystem::path m_path;
  StoreTroubles* m_troubles;
  Damaged m_damaged;
  propertylist::Dictionary m_contents;
  std::map<std::string, std::vector<Edit>> m_changes;  ///< not in the file; `m_contents` has them
  std::optional<struct stat> m_loaded;                 ///< when `m_contents` was read; nullopt: must be read again
  std::string m_reportedReading;                       ///< the message that was reported last; empty after a success
  std::string m_reportedWriting;
};

/// The key for data about a file in a store: its path. In a path that isn't UTF-8, which a property list can't contain,
/// all bytes above 0x7F are written as `\xff`.
std::string storeKey(const URL& url);

}  // namespace mirvel
