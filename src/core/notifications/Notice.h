#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "core/catalogue/Kind.h"
#include "core/locale/Localize.h"
#include "core/messages/JobReport.h"
#include "core/notifications/JobChanges.h"
#include "core/propertylist/Value.h"
#include "core/settings/Store.h"

namespace mirvel {

/// Something that the background agent tells the user.
struct Notice {
  enum class What { Added, Changed, Moved, Removed, Failed, WorksAgain, Trouble };
  static constexpr What last = What::Trouble;

  What what = What::Changed;
  Kind kind = Kind::userAgent;  ///< of the job
  std::string name = {};        ///< of the job; empty: it is about none
  std::filesystem::path path = {};
  std::string text = {};    ///< a sentence
  std::string title = {};   ///< only of a trouble; the others have that of their kind
  bool isDisabled = false;  ///< the job was disabled when this was noticed

  bool isChange() const { return what <= What::Removed; }
  bool isRun() const { return what == What::Failed || what == What::WorksAgain; }
  bool operator==(const Notice&) const = default;

  /// The stored form; nullopt for any other value.
  propertylist::Dictionary write() const;
  static std::optional<Notice> read(const propertylist::Value& value);
};

/// What the user can do about a notice. The names are sent to the notification service; they must not change.
namespace NoticeAction {
inline constexpr std::string_view show = "show";  ///< also the click on the notification itself
inline constexpr std::string_view showLog = "log";
inline constexpr std::string_view disable = "disable";
inline constexpr std::string_view dontTellAgain = "quiet";
}  // namespace NoticeAction

/// A notification as it is displayed: plain text, no markup.
struct Notification {
  struct Action {
    std::string name;
    std::string title;
    bool operator==(const Action&) const = default;
  };

  std::string title;
  std::string body;
  std::vector<Action> actions = {};  ///< the most important first
  bool isUrgent = false;
  std::vector<Notice> notices = {};  ///< those that it tells
  std::int64_t omitted = 0;          ///< the number of changes that it counts without a notice
};

/// The notice of a change. Names and commands are made visible (`visibleText`) and shortened.
Notice noticeOf(const JobChange& change, const Localize& localize, const std::filesystem::path& home);
/// The notice of a failed run of an agent. `line` is the last one of its output; empty if it isn't known.
Notice noticeOfFailure(const std::string& label, const std::filesystem::path& path, const RunEnd& end,
                       const std::string& line, const Localize& localize);
Notice noticeOfSuccess(const std::string& label, const std::filesystem::path& path, const Localize& localize);
Notice noticeOf(const StoreTrouble& trouble, const Localize& localize);

/// The notifications for what hasn't been told, in order: one for each notice, except that more than `mostApart`
/// changes are told by one summary, and so are more than `mostApart` jobs that have failed or work again. `omitted` is
/// the number of changes that are counted there without a notice.
inline constexpr std::size_t mostApart = 3;
std::vector<Notification> notificationsFor(const std::vector<Notice>& notices, std::int64_t omitted,
                                           const Localize& localize);

}  // namespace mirvel
