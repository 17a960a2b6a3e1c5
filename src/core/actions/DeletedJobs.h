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

/// A job file that was deleted, as it was.
struct DeletedJob {
  std::string id;
  std::string name;
  URL url;
  Kind kind;
  double deletedAt;              ///< in seconds since 1970
  std::string bytes;             ///< of the file
  std::optional<int> mode = {};  ///< of a file that not everybody could read
};

/// Keeps deleted job files for 30 days, so that they can be brought back. Beyond its limits the oldest go. For the main
/// thread.
class DeletedJobs {
 public:
  static constexpr int days = 30;
  struct Limits {
    std::size_t jobs = 200;
    std::size_t bytes = std::size_t{64} << 20U;  ///< of all files together
  };

  /// "DeletedJobs.plist" lies in the folder. The references outlive it.
  DeletedJobs(const std::filesystem::path& folder, const Clock& clock, StoreTroubles& troubles);
  DeletedJobs(const std::filesystem::path& folder, const Clock& clock, StoreTroubles& troubles, Limits limits);

  /// Whether a job of the kind can be kept: its file is all that there is to it.
  static bool canKeep(Kind kind) { return kind.isLaunchd(); }
  /// Until when a job stays that is deleted at this moment, in seconds since 1970.
  static double keptUntil(double deletedAt) { return deletedAt + days * 86400.0; }

  /// To be called before a job is deleted. The id under which its file is now kept, or why it isn't.
  Result<std::string> keep(const Job& job);
  /// Of a job that was brought back, or wasn't deleted after all.
  void forget(const std::string& id);

  /// Held while the job is brought back, so that it isn't a second time.
  Claims::Claim claim(const std::string& id) { return m_claimed.claim(id); }

  /// What can be brought back, the newest first. A job whose file still stands as it was isn't deleted.
  std::vector<DeletedJob> jobs() const;
  /// None too while it is brought back.
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
