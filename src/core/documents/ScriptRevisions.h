#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "core/actions/RevisionHistory.h"
#include "core/actions/RevisionStore.h"

namespace mirvel {

/// Earlier texts of scripts: a `RevisionStore` for each script, so that a save writes only those of its own. Main
/// thread only.
class ScriptRevisions final : public RevisionHistory {
 public:
  /// In bytes. Larger texts aren't kept.
  static constexpr std::size_t largestText = std::size_t{512} << 10U;

  /// The key of a text, beside `RevisionStore::dateKey`.
  static constexpr const char* textKey = "Text";

  struct Revision {
    double date;       ///< when it was saved, in seconds since 1970
    std::string text;  ///< UTF-8
  };

  /// Uses the folder "ScriptRevisions" in `support`. The references must outlive this object. Failures to read or write
  /// are reported to `troubles`.
  ScriptRevisions(const std::filesystem::path& support, const Defaults& defaults, const Clock& clock,
                  StoreTroubles& troubles);

  /// Adds the text that was saved at a path, unless it is too large.
  void add(const std::filesystem::path& script, const std::string& text);
  /// The texts that were saved at a path, the newest first.
  std::vector<Revision> of(const std::filesystem::path& script) const;

  Result<Excess> countBeyond(std::int64_t number) const override;
  void removeBeyond(std::int64_t number) override;

 private:
  RevisionStore& store(const std::filesystem::path& file) const {
    return m_stores.try_emplace(file, file, m_defaults, m_clock, m_troubles).first->second;
  }
  std::filesystem::path fileOf(const std::string& key) const;
  std::vector<std::filesystem::path> files() const;

  const std::filesystem::path m_folder;
  const Defaults& m_defaults;
  const Clock& m_clock;
  StoreTroubles& m_troubles;
  mutable std::map<std::filesystem::path, RevisionStore> m_stores;  ///< keep what couldn't be written
};

}  // namespace mirvel
