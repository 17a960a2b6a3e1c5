#include "core/notifications/Notice.h"

#include <algorithm>
#include <set>
#include <system_error>
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

std::string descriptionOf(const Error& failure, const std::string& path, const NoticeTexts& texts) {
  if (failure.code == Error::Code::NotPermitted) return texts.isUnreadable(path);
  return texts.cantBeRead(
      path, failure.systemCode == 0 ? failure.message : std::generic_category().message(failure.systemCode));
}

std::string descriptionOf(const JobChange& change, const Localize& localize, const fs::path& home) {
  const NoticeTexts texts(localize);
  const Kind kind = change.job.known.kind;
  const std::string path = shownPath(change.path, home);
  if (change.job.failure) return descriptionOf(*change.job.failure, path, texts);
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
  return isThere && !notice.isDisabled && notice.kind.isLaunchd() && !notice.kind.isSystem();
}

std::vector<Notification::Action> actionsFor(const Notice& notice, const NoticeTexts& texts) {
  using What = Notice::What;
  if (notice.what == What::Trouble) return {};
  std::vector<Notification::Action> actions;
  if (notice.isRun()) actions.push_back({std::string(NoticeAction::showLog), texts.showLog()});
  if (notice.isChange() && notice.what != What::Removed)
    actions.push_back({std::string(NoticeAction::show), texts.show()});
  if (canBeDisabled(notice)) actions.push_back({std::string(NoticeAction::disable), texts.disable()});
  actions.push_back({std::string(NoticeAction::dontTellAgain), texts.dontTellAgain()});
  return actions;
}

bool isFailure(const Notice& notice) {
  return notice.what == Notice::What::Failed;
}

/// How many notices there are of each kind.
std::string countsOf(const std::vector<Notice>& notices, std::int64_t omitted, const Localize& localize) {
  using What = Notice::What;
  const NoticeTexts texts(localize);
  const auto count = [&](What what) {
    return std::count_if(notices.begin(), notices.end(), [&](const Notice& notice) { return notice.what == what; });
  };
  std::vector<std::string> counts;
  if (const auto added = count(What::Added)) counts.push_back(texts.added(texts.number(added)));
  if (const auto changed = count(What::Changed) + count(What::Moved) + omitted)
    counts.push_back(texts.changed(texts.number(changed)));
  if (const auto removed = count(What::Removed)) counts.push_back(texts.removed(texts.number(removed)));
  if (const auto failed = count(What::Failed)) counts.push_back(texts.failed(texts.number(failed)));
  if (const auto working = count(What::WorksAgain)) counts.push_back(texts.workAgain(texts.number(working)));
  return listText(counts, localize.locale());
}

/// The names of the first jobs.
std::string namesOf(const std::vector<Notice>& notices, std::int64_t omitted, const Localize& localize) {
  constexpr std::size_t mostNames = 8;
  std::vector<std::string> names;
  std::set<std::string> known;
  for (const Notice& notice : notices) {
    if (known.insert(notice.name).second) names.push_back(shown(notice.name, longestName));
  }
  if (names.size() > mostNames || omitted > 0) {
    names.resize(std::min(names.size(), mostNames));
    names.push_back(NoticeTexts(localize).others());
  }
  return listText(names, localize.locale());
}

Notification summaryOf(std::string title, std::vector<Notice> notices, std::int64_t omitted, const Localize& localize) {
  const bool hasFailures = std::any_of(notices.begin(), notices.end(), isFailure);
  std::string body = countsOf(notices, omitted, localize) + "\n" + namesOf(notices, omitted, localize);
  return {.title = std::move(title),
          .body = std::move(body),
          .actions = {{std::string(NoticeAction::show), NoticeTexts(localize).show()}},
          .isUrgent = hasFailures,
          .notices = std::move(notices),
          .omitted = omitted};
}

Notification summaryOfRuns(std::vector<Notice> notices, const Localize& localize) {
  const NoticeTexts texts(localize);
  const bool hasFailures = std::any_of(notices.begin(), notices.end(), isFailure);
  return summaryOf(hasFailures ? texts.jobsFailed() : texts.jobsWorkAgain(), std::move(notices), 0, localize);
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
          {"Title", title},
          {"Disabled", isDisabled}};
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
  const auto* const isDisabled = entry->get<bool>("Disabled");
  const auto what = number("What"), rawKind = number("Kind");
  const auto kind = rawKind < 0 || rawKind > 99 ? std::nullopt : Kind::fromRawValue(static_cast<int>(rawKind));
  if (!name || !path || !text || !title || !isDisabled || !kind || what < 0 || what > static_cast<int>(last))
    return std::nullopt;
  return Notice{.what = static_cast<What>(what),
                .kind = *kind,
                .name = *name,
                .path = path->bytes,
                .text = *text,
                .title = *title,
                .isDisabled = *isDisabled};
}

Notice noticeOf(const JobChange& change, const Localize& localize, const fs::path& home) {
  const NoticeTexts texts(localize);
  const KnownJob& job = change.job.known;
  const std::string name = shown(job.name, longestName);
  Notice notice{.what = whatOf(change.what),
                .kind = job.kind,
                .name = job.name,
                .path = change.path,
                .isDisabled = change.job.job && change.job.job->isDisabled()};
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
  std::vector<Notice> changes, runs;
  for (const Notice& notice : notices) {
    if (notice.isChange()) changes.push_back(notice);
    if (notice.isRun()) runs.push_back(notice);
  }
  std::vector<Notification> result;
  const bool areChangesSummed = changes.size() > mostApart || omitted > 0, areRunsSummed = runs.size() > mostApart;
  if (areChangesSummed) result.push_back(summaryOf(texts.jobsChanged(), std::move(changes), omitted, localize));
  if (areRunsSummed) result.push_back(summaryOfRuns(std::move(runs), localize));
  for (const Notice& notice : notices) {
    if ((areChangesSummed && notice.isChange()) || (areRunsSummed && notice.isRun())) continue;
    result.push_back({.title = titleOf(notice, texts),
                      .body = notice.text,
                      .actions = actionsFor(notice, texts),
                      .isUrgent = isFailure(notice),
                      .notices = {notice}});
  }
  return result;
}

}  // namespace mirvel
