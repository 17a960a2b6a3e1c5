#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/catalogue/Kind.h"
#include "core/creation/New.h"
#include "core/files/URL.h"
#include "core/propertylist/Value.h"

namespace mirvel {

class KindTexts;
class Launchd;
struct CreationContext;

/// State that outlives the single sheets that create jobs. Main thread only.
struct Creation {
  /// The last new job that couldn't be saved after its sheet had been dismissed. The next sheet starts with it, so that
  /// nothing has to be entered again.
  std::optional<New> unsaved = {};
  /// The files for the next import sheet, which moves them out.
  std::vector<URL> filesToImport = {};

  /// A copy that couldn't be saved after its sheet had been dismissed.
  struct Copy {
    URL source;        ///< the job file that was copied
    std::string name;  ///< as entered
  };
  /// The last such copy; its name is suggested the next time that the same job is duplicated.
  std::optional<Copy> unsavedCopy = {};

  /// Returns `unsaved`, and resets it.
  std::optional<New> takeUnsaved() { return std::exchange(unsaved, std::nullopt); }
};

/// A radio button that chooses for whom a new job runs. Its tag is the raw value of the kind.
struct KindChoice {
  Kind kind;
  std::string title;

  bool operator==(const KindChoice&) const = default;
};

/// The choices in the order of the buttons: the user, everyone, root.
std::vector<KindChoice> kindChoices(KindTexts& texts);
/// The kind of the button with this tag; nullopt if there is no such button, e.g. for the tag of a system kind.
std::optional<Kind> kindOfTag(int tag);

/// Creates a job from the content of a job file. `url` is provisional: `saveNewJob` gives the job a file of its own.
/// Null if the content isn't that of a job, or has the label of one of Mirvel's own helpers.
std::shared_ptr<Launchd> makeNewJob(const CreationContext& context, const propertylist::Dictionary& content,
                                    const URL& url, Kind kind);

/// Saves a job to a new file, which also loads it unless it is disabled, and selects it. It isn't selected if the save
/// fails before this function returns. `ended` is called once, possibly before this function returns, with whether
/// the file was written; a failure has been shown to the user.
void saveNewJob(const CreationContext& context, const std::shared_ptr<Launchd>& job,
                const std::function<void(bool isWritten)>& ended = {});

}  // namespace mirvel
