#pragma once

#include <sys/stat.h>

#include <filesystem>
#include <optional>
#include <string_view>

#include "core/propertylist/Value.h"
#include "core/support/Result.h"

namespace mirvel {

/// A dictionary kept in a property list that other programs may change at any time. Reading notices a changed file by
/// its identity, size and times; writing reads the file anew first, so that all keys but the one set keep what others
/// wrote. There is no lock: of two writes in the same instant one may be lost, never the file.
///
/// A file that is no property list, or no dictionary, is renamed to "<name>.damaged-1" (or the next free number) and
/// counts as empty; with `Damaged::Leave` it stays, and can't be written to. A file that can't be read also counts as
/// empty, but can't be written to either.
///
/// For one thread.
class PreferencesFile {
 public:
  /// What becomes of a damaged file.
  enum class Damaged { SetAside, Leave };

  /// Nothing needs to exist at the path yet.
  explicit PreferencesFile(std::filesystem::path path, Damaged damaged = Damaged::SetAside)
      : m_path(std::move(path)), m_damaged(damaged) {}

  /// The value of a key, or null. Valid until the next call.
  const plist::Value* find(std::string_view key);
  /// Sets one key, making the file and its folders if they are missing. On failure nothing has changed.
  Result<void> set(std::string_view key, plist::Value value);

  /// Where the last damaged file of this object's life went.
  const std::optional<std::filesystem::path>& setAside() const { return m_setAside; }

 private:
  Result<void> load();
  Result<void> takeDictionary(const std::string& bytes);
  Result<void> moveAside();

  std::filesystem::path m_path;
  Damaged m_damaged;
  plist::Dictionary m_dictionary;
  std::optional<struct stat> m_loaded;  ///< of the file that `m_dictionary` was read from; none: read again
  std::optional<std::filesystem::path> m_setAside;
};

}  // namespace mirvel
