#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/Image.h"
#include "core/catalogue/Kind.h"
#include "core/files/URL.h"
#include "core/locale/Collator.h"
#include "core/locale/Localize.h"
#include "core/text/SharedText.h"

namespace mirvel {

namespace jobfile {
class Plist;
}

/// The name that a custom icon's file has for the job at a URL; none if it can't be made.
std::optional<std::string> iconStoreName(const URL& url);

/// An entry of the catalogue, whatever its origin. Complete before it is published, and for the main thread from then
/// on; jobs are shared by `std::shared_ptr`, and whoever only looks on holds a `std::weak_ptr`.
class Job {
 public:
  Job(Kind theKind, std::string theName, std::string theSummary, std::string theChecksum, URL theURL);
  virtual ~Job() = default;
  Job(const Job&) = delete;
  Job& operator=(const Job&) = delete;

  Kind kind;               ///< where the job belongs now
  Kind originalKind;       ///< where its file is: another kind than `kind` while a move isn't saved
  const std::string name;  ///< the label of a launchd job
  const std::string summary;
  const std::string checksum;  ///< of the bytes that the job was read from, in base64: its identity
  URL url;
  std::optional<Image> icon;
  std::optional<std::string> iconPath;          ///< what the icon was taken from
  std::optional<Image> customIcon;              ///< given by the user
  std::optional<std::string> customIconDigest;  ///< the name of its file in the store, without extension
  SharedText textContent;                       ///< what a search looks through
  bool isNewFile = false;                       ///< it has no file yet
  bool isEditable = true;

  /// The texts by which jobs can be sorted.
  enum class SortText { Name, Summary, Run };

  /// Requests that the next scan replaces this job by a new reading of its file, even if the bytes are the same: its
  /// record, its kind or its place aren't those of the file.
  void readAgain() { m_isToBeReadAgain = true; }
  bool isToBeReadAgain() const { return m_isToBeReadAgain; }

  /// Equal by their checksums. A job that is to be read again differs from what is read.
  bool operator==(const Job& other) const {
    return checksum == other.checksum && m_isToBeReadAgain == other.m_isToBeReadAgain;
  }

  /// What the job runs, as one text; empty if there is nothing.
  virtual std::string run() const { return {}; }
  /// The record of a launchd job; null of all others.
  virtual const jobfile::Plist* record() const { return nullptr; }
  /// Switched off by its own record.
  virtual bool isDisabled() const { return false; }

  /// The icon to draw: the user's own, else the mark of a disabled job, else the normal one.
  std::optional<Image> displayIcon(const Localize& localize) const;
  /// Sets `customIconDigest` from the URL's path, if there is a custom icon. To be called after each change of `url`.
  void updateCustomIconDigest();
  std::optional<std::string> iconStoreName() const { return mirvel::iconStoreName(url); }

  /// Whether the text occurs in the text content, the name or the path; `folded` is `String::fold` of what is looked
  /// for.
  bool contains(std::string_view folded) const;
  /// The key of a text for sorting, made once, with the program's one collator.
  const std::string& sortKey(SortText text, const Collator& collator) const;

 private:
  const std::string& searchText() const;

  bool m_isToBeReadAgain = false;
  mutable std::string m_searchText;  // made when first searched; each job is searched at every keystroke
  mutable std::array<std::string, 3> m_sortKeys;
  mutable std::string m_sortedRun;  // the text of the key: a record may be edited
};

using Jobs = std::vector<std::shared_ptr<Job>>;

/// Whether both are the same in the catalogue: of the same content, at the same place, for the same kind.
bool isUnchanged(const Job& a, const Job& b);
/// Equal in length and, one by one, unchanged.
bool areEqual(const Jobs& a, const Jobs& b);

/// The mark of a job or column: enabled or disabled.
Image statusImage(bool isEnabled, const Localize& localize);
/// That of a job that is enabled and doesn't run all the same.
Image notRunImage(const Localize& localize);

}  // namespace mirvel
