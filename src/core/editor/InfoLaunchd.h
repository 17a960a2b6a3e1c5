#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/session/SessionContext.h"

namespace mirvel {

class Busy;
class CommandRepairs;
class Launchd;
class Localize;

/// The property list of a launchd job as text, and the edit that a changed text becomes. It belongs to one job,
/// whatever is selected later. For the main thread.
class InfoLaunchd {
 public:
  /// Why a text was refused.
  struct Problem {
    std::string reason;                     ///< localized; names the line if there is one
    std::optional<std::size_t> point = {};  ///< where the cause is, in bytes from the start of the text

    bool operator==(const Problem&) const = default;
  };

  /// The selected job, `job`, with its unsaved edits. The references must outlive this object.
  InfoLaunchd(const SessionContext& session, const Busy& saving, const CommandRepairs& repairs,
              std::shared_ptr<Launchd> job);

  const Launchd& job() const { return *m_job; }
  /// "Info – backup"
  std::string title() const;
  /// XML in UTF-8: what a save would write now, whatever the format of the file. Of a job that can't be edited the file
  /// itself, with its comments, if it is in UTF-8. Empty if the job has values that XML can't represent.
  const std::string& text() const { return m_text; }
  bool isEditable() const { return m_isEditable && !m_text.empty(); }

  /// What the user should know about a text before changing the job, in sentences: what a save would lose, and which
  /// values the program keeps without knowing what to do with them. Takes time linear in the size of the text.
  std::vector<std::string> notices(const std::string& text) const;
  /// Why a text isn't that of a job; null if it is. A list that the reader accepts with a warning, such as one with a
  /// repeated key, is refused, too, since it wouldn't be saved as it was typed.
  static std::optional<Problem> check(const std::string& text, const Localize& localize);
  /// Replaces the record of the job by the text, as one edit that can be undone and isn't saved yet, and opens the
  /// editor. Does nothing if the text is the one that was shown. Returns why the text was refused; the job is unchanged
  /// then. Besides for the reasons of `check`, a text is refused while the job is being saved, and if the job isn't
  /// selected any more.
  ///
  /// If another program has changed the file since the text was shown, the next save reports a conflict.
  std::optional<Problem> change(const std::string& text);
  /// Asks whether to discard a changed text. True if it wasn't changed.
  bool mayClose(const std::string& text) const;

 private:
  std::string shownText(const CommandRepairs& repairs) const;
  std::optional<Problem> refusal() const;
  std::shared_ptr<Launchd> selectedJob() const;

  const SessionContext m_session;
  const Busy& m_saving;
  const std::shared_ptr<Launchd> m_job;
  const bool m_isEditable;
  const std::string m_text;
  const std::string m_fileChecksum;  ///< of the file's content on which the text is based; empty if unknown
  const bool m_fileHasComments;
};

}  // namespace mirvel
