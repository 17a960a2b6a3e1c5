#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/catalogue/Kind.h"
#include "core/creation/New.h"
#include "core/creation/NewPages.h"
#include "core/creation/RunChoosers.h"
#include "core/jobfile/Plist.h"
#include "core/locale/Localize.h"

namespace mirvel {

/// What will come of a new job once it is saved, as one sentence: "“backup” runs as you every day at 9:00 PM, at
/// every login, and once when it is saved." The home folder's path reads "~".
std::string newJobSentence(Kind kind, const jobfile::Plist& plist, const Localize& localize, std::string_view home);

/// What the last page tells before the job is saved.
struct NewOutlook {
  std::string sentence;
  std::vector<std::string> nextRuns;  ///< the coming three of its schedule, such as "tomorrow 9:00 AM"
};

/// The sheet that makes a new job, page by page. Until the last page is confirmed nothing is written but scripts which
/// the user saves. For the main thread.
///
/// Whoever shows it draws it anew after each of its operations and when `changed` is called.
class NewController {
 public:
  /// A cell of the bar with all pages. The current one has a bold font and the mark of what is on.
  struct Cell {
    std::string text;
    bool isCurrent = false;

    bool operator==(const Cell&) const = default;
  };

  /// Begins with the last new job that couldn't be saved, if there is one. The context outlives it.
  explicit NewController(const CreationContext& context);
  NewController(const NewController&) = delete;
  NewController& operator=(const NewController&) = delete;

  New::Page currentPage() const { return m_page; }
  std::vector<Cell> pageBar() const;
  std::string nextTitle() const;
  bool isNextEnabled() const;
  bool isPreviousVisible() const { return m_page != New::Page::name; }

  /// Goes to the next page; on the last one it saves the job. True: the sheet is done and is to be dismissed. Nothing
  /// happens while the page may not be left.
  bool next();
  void previous();
  /// Begins with another job, on the first page. It stays for whom the user wants it, and keeps a name that was typed.
  void begin(New job);

  const New& job() const { return m_sheet.job; }
  /// What will come of the job as it is now.
  NewOutlook outlook() const;

  /// Called when something changes that is shown.
  void setChanged(std::function<void()> changed) { m_sheet.changed = std::move(changed); }
  /// Called before the job is saved: takes over what is being typed.
  std::function<void()> endEditing = {};

 private:
  NewSheet m_sheet;

 public:
  NewNamePage name{m_sheet};
  NewWhatPage what{m_sheet};
  NewRunPage run{m_sheet};
  NewWhenPage when{m_sheet};

 private:
  void show(New::Page page);
  std::string titleOf(New::Page page) const;
  bool save();
  std::optional<jobfile::Plist> finishedRecord();

  New::Page m_page = New::Page::name;
  std::string m_suggestedName;  ///< that of the job which was begun with
};

}  // namespace mirvel
