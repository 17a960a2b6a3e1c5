#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/Image.h"
#include "core/catalogue/Checksum.h"
#include "core/catalogue/Kind.h"
#include "core/files/URL.h"
#include "core/locale/Collator.h"
#include "core/locale/Localize.h"
#include "core/text/SharedText.h"

namespace mirvel {

namespace jobfile {
class Plist;
}

/// The name of the custom icon's file for the job at a URL, without extension; null if hashing fails.
std::optional<std::string> iconStoreName(const URL& url);

/// An entry of the catalogue, of any kind. Fully initialised before it is published, and used on the main thread only
/// from then on. Jobs are owned by `std::shared_ptr`; observers hold `std::weak_ptr`.
class Job {
 public:
  Job(Kind theKind, std::string theName, std::string theSummary, Checksum theChecksum, URL theURL);
  virtual ~Job() = default;
  Job(const Job&) = delete;
  Job& operator=(const Job&) = delete;

  Kind kind;               ///< the current kind
  Kind originalKind;       ///< the kind of its file; differs from `kind` while a move isn't saved
  const std::string name;  ///< of a launchd job, its label
  const std::string summary;
  const Checksum checksum;
  URL url;
  std::optional<Image> icon;
  std::optional<std::string> iconPath;          ///< the file that the icon belongs to
  std::optional<Image> customIcon;              ///< chosen by the user
  std::optional<std::string> customIconDigest;  ///< the name of its file in the store, without extension
  std::vector<std::string> linkedFrom;          ///< the links to the file in job folders; only for `Kind::extraFolder`
  SharedText textContent;                       ///< searched together with name and path
  bool isNewFile = false;                       ///< has no file yet
  bool isEditable = true;

  /// The texts that jobs can be sorted by.
  enum class SortText { Name, Summary, Run };

  /// Makes the next scan read the file again and replace this job, even if the content is the same: the record, kind or
  /// URL differ from those of the file.
  void readAgain() { m_isToBeReadAgain = true; }
  bool isToBeReadAgain() const { return m_isToBeReadAgain; }

  /// Compares checksums. A job that is to be read again differs from a newly read one.
  bool operator==(const Job& other) const {
    return checksum == other.checksum && m_isToBeReadAgain == other.m_isToBeReadAgain;
  }

  /// The job's command as one text; empty if there is none.
  virtual std::string run() const { return {}; }
  /// The record of a launchd job; null for other kinds.
  virtual const jobfile::Plist* record() const { return nullptr; }
  /// Whether the record disables the job.
  virtual bool isDisabled() const { return false; }

  /// The icon to display: the custom icon, else the status image if the job is disabled, else `icon`.
  std::optional<Image> displayIcon(const Localize& localize) const;
  /// Updates `customIconDigest` if there is a custom icon. Must be called after each change of `url`.
  void updateCustomIconDigest();
  std::optional<std::string> iconStoreName() const { return mirvel::iconStoreName(url); }

  /// Whether the text content, the name or the path contains the text. `folded` must be the result of `String::fold`.
  bool contains(std::string_view folded) const;
  /// The sort key of a text, cached. All calls must pass the same collator. The reference is valid until the next call.
  const std::string& sortKey(SortText text, const Collator& collator) const;

 private:
  const std::string& searchText() const;

  bool m_isToBeReadAgain = false;
  mutable std::string m_searchText;  // cached on first use, since each keystroke in the search field searches all jobs
  mutable std::array<std::string, 3> m_sortKeys;
  mutable std::string m_sortedRun;  // the text that its key was made from, since records can be edited
};

using Jobs = std::vector<std::shared_ptr<Job>>;

/// Whether both lists have the same length and pairwise the same content, URL, kind and links.
bool areEqual(const Jobs& a, const Jobs& b);

/// The image for an enabled or disabled job, with a description for accessibility.
Image statusImage(bool isEnabled, const Localize& localize);
/// The image for a job that is enabled but isn't run by any host.
Image notRunImage(const Localize& localize);

}  // namespace mirvel
