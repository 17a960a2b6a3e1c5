#pragma once

#include <memory>
#include <optional>
#include <string>

#include "core/plist/Plist.h"

namespace mirvel {

/// The job that one property list of launchd stands for.
class Launchd {
 public:
  using Plist = launchd::Plist;

  /// Takes the record; it is never null.
  explicit Launchd(std::unique_ptr<Plist> record);

  /// The live record: whoever edits the job changes it in place.
  Plist& plist() { return *m_plist; }
  const Plist& plist() const { return *m_plist; }

  /// The bytes for the job file, in XML: the known keys as the record has them, and the unknown ones as they were read.
  /// None if a value has no form in XML.
  std::optional<std::string> plistData() const;
  /// What a reader makes of these bytes.
  std::optional<plist::Dictionary> plistDictionary() const;

 private:
  std::unique_ptr<Plist> m_plist;
};

}  // namespace mirvel
