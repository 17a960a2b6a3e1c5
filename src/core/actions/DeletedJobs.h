#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "core/base/Claims.h"
#include "core/base/Result.h"
#include "core/catalogue/Job.h"
#include "core/ports/Clock.h"
#include "core/settings/Store.h"

namespace mirvel {

/// A deleted job file.
struct DeletedJob {
  std::string id;  ///< unique, assigned by `DeletedJobs::keep`
  std::string name;
  URL url;  ///< the former path
  Kind kind;
  double deletedAt;              ///< in seconds since 1970
  std::string bytes;             ///< the content of the file
  std::optional<int> mode = {};  ///< see `restrictedMode`
};

/// Keeps deleted job files for 30 days, so that they can be restored. If the limits are exceeded the oldest are removed
/// earlier. Entries of other forms, which another version may have written, are ignored and kept. Main thread only.
class DeletedJobs {
 public:
  static constexpr int days = 30;
  struct Limits {
    std::size_t jobs = 200;
    std::size_t bytes = std::size_t{64} << 20U;  ///< in all files together
  };

  /// Uses the file "DeletedJobs.plist" in the folder. Clock and troubles must outlive this object. Failures to read or
  /// write are reported to `troubles`.
  DeletedJobs(const std::filesystem::path& folder, const Clock& clock, StoreTroubles& troubles);
  DeletedJobs(const std::filesystem::path& folder, const Clock& clock, StoreTroubles& troubles, Limits limits);

  /// Whether jobs of the kind can be kept: those that consist of their file alone.
  static bool canKeep(Kind kind) { return kind.canBeLoaded(); }
  /// The end of the 30 days for a job that is deleted at this time. Both in seconds since 1970.
  static double keptUntil(double deletedAt) { return deletedAt + days * 86400.0; }

  /// Keeps the present content of a job's file, and returns the ID of the copy. To be called before the job is deleted;
  /// on failure the deletion couldn't be undone.
  Result<std::string> keep(const Job& job);
  /// Removes the copy of a job that has been restored, or wasn't deleted after all. Does nothing for an unknown ID.
  void forget(const std::string& id);

  /// Hides the job from `jobs` and `job` while the claim is held, so that it isn't restored twice.
  Claims::Claim claim(const std::string& id) { return m_claimed.claim(id); }

  /// The jobs that can be restored, the most recently deleted first. Excludes those whose file still has the same
  /// content, since their deletion failed or is still in progress. Reads these files.
  std::vector<DeletedJob> jobs() const;
  /// The job with this ID. Nullopt if it isn't kept, or is being restored.
  std::optional<DeletedJob> job(const std::string& id) const;

 private:
  std::vector<DeletedJob> kept() const;
  void prune(const std::string& newest);

  mutable Store m_store;  // reading may have to read the file again
  const Clock& m_clock;
  const Limits m_limits;
  Claims m_claimed;
};

}  // namespace mirvel
