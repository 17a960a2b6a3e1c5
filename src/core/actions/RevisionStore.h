#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "core/actions/RevisionHistory.h"
#include "core/ports/Clock.h"
#include "core/propertylist/Value.h"
#include "core/settings/Defaults.h"
#include "core/settings/Store.h"

namespace mirvel {

/// Earlier contents of files, by their keys (`storeKey`), in a property list of the program. Main thread only.
///
/// A list in which any entry isn't a dictionary counts as empty, and is replaced by the next `add`.
class RevisionStore final : public RevisionHistory {
 public:
  /// The time of a revision as a real, in seconds since 1970.
  static constexpr const char* dateKey = "Date";

  /// The references must outlive the store. Failures to read or write are reported to `troubles`.
  RevisionStore(const std::filesystem::path& file, const Defaults& defaults, const Clock& clock,
                StoreTroubles& troubles);

  /// An array of revisions for each key, the newest first. Invalidated by the next call.
  const propertylist::Dictionary& contents() const { return m_store.contents(); }
  /// The revisions of a key; empty if any of them isn't a dictionary.
  propertylist::Array revisionsOf(const std::string& key) const;
  /// Adds a revision, to which the present time is added, and removes the oldest beyond
  /// `Defaults::numberOfSavedRevisions`. A null revision adds nothing but still removes those. If the file can't be
  /// written the revision is kept in memory. If it can't be read, no revision is added.
  void add(const std::string& key, std::optional<propertylist::Dictionary> revision);
  void clear(const std::string& key);
  void clear();
  Result<Excess> countBeyond(std::int64_t number) const override;
  void removeBeyond(std::int64_t number) override;
  /// Moves the revisions of one key to another. Those which that key already has are kept, sorted by date.
  void move(const std::string& from, const std::string& to);

 private:
  mutable Store m_store;  // reading may have to read the file again
  const Defaults& m_defaults;
  const Clock& m_clock;
};

}  // namespace mirvel
