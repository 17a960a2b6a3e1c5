#include "core/creation/NewController.h"

#include <array>

#include "core/actions/SavePlan.h"
#include "core/base/Const.h"
#include "core/catalogue/Launchd.h"
#include "core/commands/CommandRepairs.h"
#include "core/creation/Creation.h"
#include "core/creation/CreationContext.h"
#include "core/creation/CreationTexts.h"
#include "core/explain/NextRuns.h"
#include "core/explain/Occasions.h"
#include "core/locale/LocaleTexts.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "core/text/Bidirectional.h"
#include "core/text/Strings.h"

namespace mirvel {

namespace {

using Page = New::Page;

constexpr std::array pages{Page::Name, Page::What, Page::Run, Page::When};

Page neighbour(Page page, int step) {
  return static_cast<Page>(static_cast<int>(page) + step);
}

}  // namespace

NewController::NewController(const CreationContext& context)
    : m_sheet{.context = context, .job = context.creation.takeUnsaved().value_or(New())} {}

std::vector<NewController::Cell> NewController::pageBar() const {
  const Localize& localize = m_sheet.context.foundation.localize;
  std::vector<Cell> cells;
  for (const Page page : pages) {
    const std::string number = localize.int_(static_cast<int>(page) + 1);
    cells.push_back({.text = bidirectionalString({number, titleOf(page)}, " ", localize.isRightToLeft()),
                     .isCurrent = page == m_page});
  }
  return cells;
}

std::string NewController::titleOf(Page page) const {
  const Localize& localize = m_sheet.context.foundation.localize;
  if (page == Page::Name) return localize.name();
  if (page == Page::What) return CreationTexts(localize).what();
  if (page == Page::When) return localize.when();
  if (!job().runPage) return localize.run();
  switch (*job().runPage) {
    case New::Run::Application:
      return localize.application();
    case New::Run::Script:
      return CreationTexts(localize).script();
    case New::Run::Command:
      break;
  }
  return localize.command();
}

std::string NewController::nextTitle() const {
  const Localize& localize = m_sheet.context.foundation.localize;
  return m_page == Page::When ? localize.save() : CreationTexts(localize).next();
}

bool NewController::isNextEnabled() const {
  switch (m_page) {
    case Page::Name:
      return name.mayGoOn();
    case Page::What:
      return what.mayGoOn();
    case Page::Run:
      return run.mayGoOn();
    case Page::When:
      break;
  }
  return true;
}

bool NewController::next() {
  if (!isNextEnabled()) return false;
  if (m_page == Page::When) return save();
  show(neighbour(m_page, 1));
  return false;
}

void NewController::previous() {
  if (isPreviousVisible()) show(neighbour(m_page, -1));
}

void NewController::show(Page page) {
  m_page = page;
  if (page == Page::Run) run.appear();
  m_sheet.notifyChanged();
}

void NewController::begin(New job) {
  const bool isNameTyped = !name.name().empty() && name.name() != m_suggestedName;
  m_suggestedName = job.plist.name;
  if (isNameTyped) job.plist.name = name.name();
  job.kind = m_sheet.job.kind;
  m_sheet.job = std::move(job);
  name.reset();
  run.reset();
  when.reset();
  show(Page::Name);
}

NewOutlook NewController::outlook() const {
  jobfile::Plist plist = job().plist.clone();
  when.applyRules(plist);
  const CreationContext& context = m_sheet.context;
  constexpr std::size_t shownRuns = 3;
  return {.sentence =
              newJobSentence(job().kind, plist, context.foundation.localize, context.foundation.roots.home.native()),
          .nextRuns = nextRunTexts(plist, context.platform.clock.currentSecond(), shownRuns,
                                   context.scheduledController.moments())};
}

/// The complete content of the file; nullopt if the user cancels. If the command has been turned into a script, the job
/// of the sheet gets it too, so that the question isn't asked again when the save is retried.
std::optional<jobfile::Plist> NewController::finishedRecord() {
  const CreationContext& context = m_sheet.context;
  jobfile::Plist plist = job().plist.clone();
  if (!normalizeForSave(plist, context.repairs)) return std::nullopt;
  m_sheet.job.plist.run = plist.run;
  if (context.foundation.defaults.automaticPATH()) {
    plist.environmentVariables = {{"PATH", std::string(Const::defaultPATH)}};
  }
  when.applyRules(plist);
  return plist;
}

bool NewController::save() {
  const CreationContext& context = m_sheet.context;
  if (when.isScheduled() && endEditing) endEditing();
  if (const auto invalid = when.refuse()) {
    context.platform.interface.error(invalid->message, invalid->reason);
    return false;
  }
  const auto record = finishedRecord();
  if (!record) return false;
  const auto made = makeNewJob(context, record->encodeAll(), URL::file("/"), job().kind);
  if (!made) {
    context.platform.interface.saveError();
    return false;
  }
  when.keepRules();  // the editor is destroyed with the sheet, before the save ends
  const auto kept = std::make_shared<New>(job().clone());
  saveNewJob(context, made, [&creation = context.creation, kept](bool isWritten) {
    if (!isWritten) creation.unsaved = std::move(*kept);
  });
  return true;
}

std::string newJobSentence(Kind kind, const jobfile::Plist& plist, const Localize& localize, std::string_view home) {
  std::vector<std::string> times = explain::laterOccasions(plist, localize, explain::TimeForm::OfTheLocale);
  for (std::string& time : times) time = String::shortenHomeFolder(String::firstLowercased(time), home);
  if (plist.runAtLoad == true) {
    const auto words = localize.lowercase();
    times.push_back(kind.isDaemon() ? words.atEverySystemStart() : words.atEveryLogin());
    times.push_back(words.onceWhenSaved());
  }
  if (times.empty()) times.push_back(String::firstLowercased(localize.onlyWhenStartedManually()));
  const std::string list = listText(times, localize.locale());
  if (kind.isDaemon()) return CreationTexts(localize).runsAsRoot(plist.name, list);
  return kind == Kind::userAgent ? CreationTexts(localize).runsAsYou(plist.name, list)
                                 : CreationTexts(localize).runsForEveryone(plist.name, list);
}

}  // namespace mirvel
