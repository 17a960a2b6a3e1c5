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

namespace mirvel {

/// When and as whom a job will run once it is saved, as one sentence with "~" for the home folder:
///
///     “backup” runs as you every day at 9:00 PM, at every login, and once when it is saved.
std::string newJobSentence(Kind kind, const jobfile::Plist& plist, const Localize& localize, std::string_view home);

/// The preview on the last page.
struct NewOutlook {
  std::string sentence;
  std::vector<std::string> nextRuns;  ///< at most three, such as "tomorrow 9:00 AM"; empty without a schedule
};

/// The sheet that creates a new job, page by page. Until the user confirms the last page, nothing is written except
/// scripts that the user saves. Main thread only.
///
/// The view must be updated after each operation and when the function passed to `setChanged` is called.
class NewController {
 public:
  /// A cell of the bar that shows the titles of all pages, such as "1 Name".
  struct Cell {
    std::string text;
    bool isCurrent = false;

    bool operator==(const Cell&) const = default;
  };

  /// Starts with the last new job that couldn't be saved (`Creation::unsaved`), if there is one. The context must
  /// outlive the controller.
  explicit NewController(const CreationContext& context);
  NewController(const NewController&) = delete;
  NewController& operator=(const NewController&) = delete;

  /// Initially the first page.
  New::Page currentPage() const { return m_page; }
  /// One cell for each page, in their order. The third one says what is run as soon as that has been chosen: "3
  /// Script".
  std::vector<Cell> pageBar() const;
  /// "Next", or "Save" on the last page.
  std::string nextTitle() const;
  /// Whether the current page is complete. Always true on the last one, where `next` itself checks the rules.
  bool isNextEnabled() const;
  bool isPreviousVisible() const { return m_page != New::Page::Name; }

  /// Goes to the next page, or saves the job on the last one. Does nothing unless `isNextEnabled`.
  ///
  /// Returns true once a save has started and the sheet is to be dismissed; if it fails later, the job is stored in
  /// `Creation::unsaved`. Returns false if the user cancels a question, or after showing why the job can't be saved:
  /// a rule is invalid, or the label is reserved for Mirvel's own helpers.
  bool next();
  /// Goes to the previous page; does nothing on the first one. All input is kept.
  void previous();
  /// Replaces the job, and goes to the first page. The chosen kind is kept, as is a name that the user has entered.
  void begin(New job);

  const New& job() const { return m_sheet.job; }
  /// The preview of the job in its present state.
  NewOutlook outlook() const;

  /// Sets the function that is called when anything visible has changed; empty for none.
  void setChanged(std::function<void()> changed) { m_sheet.changed = std::move(changed); }
  /// Called before a scheduled job is saved, to commit the text in the field that has the focus.
  std::function<void()> endEditing = {};

 private:
  NewSheet m_sheet;  // first: the pages refer to it

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

  New::Page m_page = New::Page::Name;
  std::string m_suggestedName;  ///< the name of the starting point in use
};

}  // namespace mirvel
