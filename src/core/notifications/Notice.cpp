#include "core/notifications/Notice.h"

#include <algorithm>
#include <set>
#include <utility>

#include "core/explain/Occasions.h"
#include "core/jobfile/Plist.h"
#include "core/locale/LocaleTexts.h"
#include "core/notifications/NoticeTexts.h"
#include "core/propertylist/Encoding.h"
#include "core/runs/RunTexts.h"
#include "core/runs/VisibleText.h"
#include "core/text/Strings.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t longestName = 100, longestCommand = 160, longestLine = 300;  // in characters

/// A text of a job in one line, made visible and cut off.
std::string shown(std::string_view text, std::size_t longest) {
  std::string line(String::trim(String::firstCharacters(text, longest), true));
  std::replace_if(
      line.begin(), line.end(), [](char c) { return c == '\n' || c == '\t'; }, ' ');
  if (String::characterCount(text) > longest) line += "…";
  return visibleText(line);
}

std::string shownPath(const fs::path& path, const fs::path& home) {
  return shown(localizedDisplayPath(path.native(), home.native()), longestCommand);
}

std::string timesOf(Kind kind, const jobfile::Plist& plist, const Localize& localize, const fs::path& home) {
  std::vector<std::string> times = explain::laterOccasions(plist, localize, explain::TimeForm::OfTheLocale);
  for (std::string& time : times) {
    time = shown(String::shortenHomeFolder(String::firstLowercased(time), home.native()), longestCommand);
  }
  const auto words = localize.lowercase();
  if (plist.runAtLoad == true) {
    times.insert(times.begin(), kind.isDaemon() ? words.atEverySystemStart() : words.atEveryLogin());
  }
  if (times.empty()) times.push_back(String::firstLowercased(localize.onlyWhenStartedManually()));
  return listText(times, localize.locale());
}

std::string descriptionOf(Kind kind, const jobfile::Plist& plist, const Localize& localize, const fs::path& home) {
  const NoticeTexts texts(localize);
  std::string command = shown(String::shortenHomeFolder(plist.run, home.native()), longestCommand);
  if (plist.disabled == true) return texts.isDisabled(command);
  if (command.empty()) command = texts.nothing();
  const std::string times = timesOf(kind, plist, localize, home);
  if (kind == Kind::userAgent) return texts.runsAsYou(command, times);
  if (!kind.isDaemon()) return texts.runsForEveryone(command, times);
  const auto& user = plist.userName;
  return user && !user->empty() && *user != "root" ? texts.runsAsUser(command, times, shown(*user, longestName))
                                                   : texts.runsAsRoot(command, times);
}

std::string descriptionOf(const JobChange& change, const Localize& localize, const fs::path& home) {
  const NoticeTexts texts(localize);
  const Kind kind = change.job.known.kind;
  const std::string path = shownPath(change.path, home);
  if (!change.job.isReadable) return texts.isUnreadable(path);
  if (!change.job.isValid) return texts.isNoJob(path);
  const auto* const plist = change.job.job ? change.job.job->record() : nullptr;
  if (plist) return descriptionOf(kind, *plist, localize, home);
  if (kind.isStartupItem()) return texts.isStartupItem(path);
  return kind == Kind::privilegedHelperTool ? texts.isHelperTool(path) : path;
}

Notice::What whatOf(JobChange::What what) {
  switch (what) {
    case JobChange::What::Added:
      return Notice::What::Added;
    case JobChange::What::Moved:
      return Notice::What::Moved;
    case JobChange::What::Removed:
      return Notice::What::Removed;
    case JobChange::What::Changed:
      break;
  }
  return Notice::What::Changed;
}

std::string titleOf(const Notice& notice, const NoticeTexts& texts) {
  switch (notice.what) {
    case Notice::What::Added:
      return texts.jobAdded();
    case Notice::What::Changed:
      return texts.jobChanged();
    case Notice::What::Moved:
      return texts.jobMoved();
    case Notice::What::Removed:
      return texts.jobRemoved();
    case Notice::What::Failed:
      return texts.jobFailed();
    case Notice::What::WorksAgain:
      return texts.jobWorksAgain();
    case Notice::What::Trouble:
      break;
  }
  return notice.title;
}

/// A job of the system isn't disabled by a click, and only launchd's jobs can be.
bool canBeDisabled(const Notice& notice) {
  const bool isThere = notice.what != Notice::What::Removed && notice.what != Notice::What::WorksAgain;
  return isThere && notice.kind.isLaunchd() && !notice.kind.isSystem();
}

std::vector<Notification::Action> actionsFor(const Notice& notice, const NoticeTexts& texts) {
  using What = Notice::What;
  if (notice.what == What::Trouble) return {};
  std::vector<Notification::Action> actions;
  const bool isRun = !notice.isChange();
  if (isRun) actions.push_back({std::string(NoticeAction::showLog), texts.showLog()});
  if (!isRun && notice.what != What::Removed) actions.push_back({std::string(NoticeAction::show), texts.show()});
  if (canBeDisabled(notice)) actions.push_back({std::string(NoticeAction::disable), texts.disable()});
  actions.push_back({std::string(NoticeAction::dontTellAgain), texts.dontTellAgain()});
  return actions;
}

/// Names of the changed jobs, one line for each kind of change.
std::string linesOf(const std::vector<Notice>& notices, std::int64_t omitted, const Localize& localize) {
  const NoticeTexts texts(localize);
  constexpr std::size_t mostNames = 8;
  const auto count = [&](std::initializer_list<Notice::What> kinds) {
    return std::count_if(notices.begin(), notices.end(), [&](const Notice& notice) {
      return std::find(kinds.begin(), kinds.end(), notice.what) != kinds.end();
    });
  };
  std::vector<std::string> counts;
  if (const auto added = count({Notice::What::Added})) counts.push_back(texts.added(texts.number(added)));
  if (const auto changed = count({Notice::What::Changed, Notice::What::Moved}) + omitted)
    counts.push_back(texts.changed(texts.number(changed)));
  if (const auto removed = count({Notice::What::Removed})) counts.push_back(texts.removed(texts.number(removed)));
  std::vector<std::string> names;
  std::set<std::string> known;
  for (const Notice& notice : notices) {
    if (known.insert(notice.name).second) names.push_back(shown(notice.name, longestName));
  }
  if (names.size() > mostNames || omitted > 0) {
    names.resize(std::min(names.size(), mostNames));
    names.push_back(texts.others());
  }
  return listText(counts, localize.locale()) + "\n" + listText(names, localize.locale());
}

Notification summaryOf(std::vector<Notice> notices, std::int64_t omitted, const Localize& localize) {
  const NoticeTexts texts(localize);
  std::string body = linesOf(notices, omitted, localize);
  return {.title = texts.jobsChanged(),
          .body = std::move(body),
          .actions = {{std::string(NoticeAction::show), texts.show()}},
          .notices = std::move(notices),
          .omitted = omitted};
}

std::string withFullStop(std::string sentence) {
  if (!sentence.ends_with('.') && !sentence.ends_with("…")) sentence += '.';
  return sentence;
}

}  // namespace

propertylist::Dictionary Notice::write() const {
  return {{"What", static_cast<int>(what)},
          {"Kind", kind.rawValue()},
          {"Name", name},
          {"Path", propertylist::Data{path.native()}},
          {"Text", text},
          {"Title", title}};
}

std::optional<Notice> Notice::read(const propertylist::Value& value) {
  const auto* const entry = value.as<propertylist::Dictionary>();
  if (!entry) return std::nullopt;
  const auto number = [&](const char* key) -> std::int64_t {
    const auto* const found = entry->get<propertylist::Integer>(key);
    return found ? found->toInt64().value_or(-1) : -1;
  };
  const auto* const name = entry->get<std::string>("Name");
  const auto* const path = entry->get<propertylist::Data>("Path");
  const auto* const text = entry->get<std::string>("Text");
  const auto* const title = entry->get<std::string>("Title");
  const auto what = number("What"), rawKind = number("Kind");
  const auto kind = rawKind < 0 || rawKind > 99 ? std::nullopt : Kind::fromRawValue(static_cast<int>(rawKind));
  if (!name || !path || !text || !title || !kind || what < 0 || what > static_cast<int>(last)) return std::nullopt;
  return Notice{.what = static_cast<What>(what),
                .kind = *kind,
                .name = *name,
                .path = path->bytes,
                .text = *text,
                .title = *title};
}

Notice noticeOf(const JobChange& change, const Localize& localize, const fs::path& home) {
  const NoticeTexts texts(localize);
  const KnownJob& job = change.job.known;
  const std::string name = shown(job.name, longestName);
  Notice notice{.what = whatOf(change.what), .kind = job.kind, .name = job.name, .path = change.path};
  switch (change.what) {
    case JobChange::What::Added:
      notice.text = texts.wasAdded(name, descriptionOf(change, localize, home));
      break;
    case JobChange::What::Changed:
      notice.text = texts.wasChanged(name, descriptionOf(change, localize, home));
      break;
    case JobChange::What::Moved:
      notice.text = texts.wasMoved(name, shownPath(change.from, home), descriptionOf(change, localize, home));
      break;
    case JobChange::What::Removed:
      notice.text = texts.wasRemoved(name, shownPath(change.path, home));
      break;
  }
  notice.text = withFullStop(std::move(notice.text));
  return notice;
}

Notice noticeOfFailure(const std::string& label, const fs::path& path, const RunEnd& end, const std::string& line,
                       const Localize& localize) {
  const NoticeTexts texts(localize);
  const std::string name = shown(label, longestName), ending = RunTexts(localize).ending(end);
  const std::string output = propertylist::isUtf8(line) ? shown(line, longestLine) : std::string();
  return {
      .what = Notice::What::Failed,
      .name = label,
      .path = path,
      .text = output.empty() ? withFullStop(texts.failed(name, ending)) : texts.failedWithOutput(name, ending, output)};
}

Notice noticeOfSuccess(const std::string& label, const fs::path& path, const Localize& localize) {
  return {.what = Notice::What::WorksAgain,
          .name = label,
          .path = path,
          .text = NoticeTexts(localize).worksAgain(shown(label, longestName))};
}

Notice noticeOf(const StoreTrouble& trouble, const Localize& localize) {
  const NoticeTexts texts(localize);
  const std::string reason = trouble.error.text();
  const bool isDamaged = trouble.kind == StoreTrouble::Kind::Damaged;
  return {.what = Notice::What::Trouble,
          .text = isDamaged ? texts.fileWasDamaged(reason, trouble.rescue.string()) : texts.fileCantBeUsed(reason),
          .title = texts.ownFileTrouble()};
}

std::vector<Notification> notificationsFor(const std::vector<Notice>& notices, std::int64_t omitted,
                                           const Localize& localize) {
  const NoticeTexts texts(localize);
  std::vector<Notice> changes;
  std::copy_if(notices.begin(), notices.end(), std::back_inserter(changes),
               [](const Notice& notice) { return notice.isChange(); });
  std::vector<Notification> result;
  const bool isSummed = changes.size() > mostApart || omitted > 0;
  if (isSummed) result.push_back(summaryOf(changes, omitted, localize));
  for (const Notice& notice : notices) {
    if (isSummed && notice.isChange()) continue;
    result.push_back({.title = titleOf(notice, texts),
                      .body = notice.text,
                      .actions = actionsFor(notice, texts),
                      .isUrgent = notice.what == Notice::What::Failed,
                      .notices = {notice}});
  }
  return result;
}

}  // namespace mirvel
