#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "core/catalogue/Job.h"
#include "core/catalogue/JobFile.h"
#include "core/catalogue/ScanSettings.h"
#include "core/jobfile/Plist.h"
#include "core/ports/Console.h"

namespace mirvel {

/// A job of launchd: one property list, and what the catalogue needs of it.
class Launchd final : public Job {
 public:
  using Plist = jobfile::Plist;

  /// The job that a file's bytes stand for. Null if they aren't a job file, which a line on the console tells, or if it
  /// is an internal helper that isn't to be shown. A value that doesn't fit its key hides no job; see
  /// `Plist::decodeTolerantly`. From any thread.
  static std::shared_ptr<Launchd> read(std::string_view data, URL url, Kind kind, const ScanSettings& settings,
                                       Console& console);
  static std::shared_ptr<Launchd> read(JobFile file, URL url, Kind kind, const ScanSettings& settings,
                                       Console& console);

  /// The live record: whoever edits the job changes it in place.
  Plist& plist() { return *m_plist; }
  const Plist& plist() const { return *m_plist; }

  std::string run() const override { return m_plist->run; }
  const Plist* record() const override { return m_plist.get(); }
  bool isDisabled() const override { return m_plist->disabled.value_or(false); }

  /// The bytes for the job file, in XML: what was edited as the record has it, and everything else as it was read. None
  /// if a value has no form in XML.
  std::optional<std::string> plistData() const;
  /// What a reader makes of these bytes.
  std::optional<propertylist::Dictionary> plistDictionary() const;

 private:
  struct Pass {
    explicit Pass() = default;
  };

 public:
  Launchd(Pass, Kind kind, std::string summary, std::string checksum, URL url, std::unique_ptr<Plist> record);

 private:
  std::unique_ptr<Plist> m_plist;  // never null
};

/// The second line of a job's display: its command with the tool's path cut short, and the home folder as "~".
std::string launchdSummary(const jobfile::Plist& plist, const std::filesystem::path& home);
/// Whose icon a job with a tool at this path has: the tool's, or that of the bundle around it.
std::optional<std::string> launchdIconPath(const std::optional<std::string>& tool, const ScanSettings& settings);

}  // namespace mirvel
