#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "core/base/Error.h"
#include "core/catalogue/EmbeddedList.h"
#include "core/catalogue/Job.h"
#include "core/catalogue/JobFolder.h"
#include "core/catalogue/Kind.h"
#include "core/catalogue/ScanSettings.h"
#include "core/ports/Console.h"

namespace mirvel {

/// What is remembered of a job to notice its changes.
struct KnownJob {
  Kind kind = Kind::userAgent;
  std::string name;      ///< as the catalogue names it; of a file that can't be read, the name of the file
  std::string checksum;  ///< of the content; of a file that can't be read, of its size and times

  bool operator==(const KnownJob&) const = default;
};

/// Known jobs by the paths of their files or folders.
using KnownJobs = std::map<std::filesystem::path, KnownJob>;

/// A job as it was found in its folder.
struct FoundJob {
  KnownJob known;
  std::shared_ptr<const Job> job = {};  ///< null if the file isn't readable, or no job file any more
  std::optional<Error> failure = {};    ///< why the file can't be read
  bool isValid = true;                  ///< whether it is a job; false only for a file that was one before
};
using FoundJobs = std::map<std::filesystem::path, FoundJob>;

/// Reads the folders whose jobs are watched. Remembers what it has read, so that only changed files are read again. For
/// one thread; blocks.
class JobInventory {
 public:
  /// All must outlive the inventory. Internal helpers are included whatever the settings say: a job could call itself
  /// so to remain unnoticed.
  JobInventory(const Roots& roots, const EmbeddedList& embeddedList, Console& console);

  /// The jobs in the folder of a kind; empty if there is no such folder. Nullopt if it can't be listed, so that nothing
  /// is known of it. `known` are the jobs known so far: of a file that is no job any more, the name is taken from
  /// there.
  std::optional<FoundJobs> jobsOf(Kind kind, const KnownJobs& known);

 private:
  struct Read {
    JobFolder::Stamp stamp;
    std::optional<FoundJob> found;  ///< none: it isn't a job
  };

  std::optional<FoundJob> fileOf(Kind kind, const JobFolder& folder, const std::string& name, const KnownJobs& known);
  std::optional<FoundJob> read(Kind kind, const JobFolder& folder, const std::string& name,
                               const JobFolder::Stamp& stamp, const KnownJobs& known);
  std::optional<FoundJob> startupItem(Kind kind, const URL& url) const;
  std::optional<FoundJob> tool(const URL& url, const JobFolder::Stamp& stamp) const;

  ScanSettings m_settings;
  const EmbeddedList& m_embeddedList;
  Console& m_console;
  std::map<std::filesystem::path, Read> m_read;
};

}  // namespace mirvel
