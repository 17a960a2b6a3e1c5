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

/// A launchd job: its property list, and the derived data for the catalogue.
class Launchd final : public Job {
 public:
  using Plist = jobfile::Plist;

  /// Decodes a job file. Null if it isn't one, which is logged to the console, or if it is an internal helper and those
  /// aren't shown. A value of the wrong type doesn't hide the job; see `Plist::decodeTolerantly`. Thread-safe.
  static std::shared_ptr<Launchd> read(std::string_view data, URL url, Kind kind, const ScanSettings& settings,
                                       Console& console);
  static std::shared_ptr<Launchd> read(JobFile file, URL url, Kind kind, const ScanSettings& settings,
                                       Console& console);

  /// The live record, which edits change in place.
  Plist& plist() { return *m_plist; }
  const Plist& plist() const { return *m_plist; }

  /// The command as one text; see core/jobfile/RunString.h.
  std::string run() const override { return m_plist->run; }
  const Plist* record() const override { return m_plist.get(); }
  bool isDisabled() const override { return m_plist->disabled.value_or(false); }

  /// The job file as XML: edited keys as in the record, everything else as it was read. Null if a value can't be
  /// written as XML.
  std::optional<std::string> plistData() const;
  /// The result of reading `plistData()`.
  std::optional<propertylist::Dictionary> plistDictionary() const;

 private:
  struct Pass {
    explicit Pass() = default;
  };

 public:
  Launchd(Pass, Kind kind, std::string summary, Checksum checksum, URL url, std::unique_ptr<Plist> record);

 private:
  std::unique_ptr<Plist> m_plist;  // never null
};

}  // namespace mirvel
