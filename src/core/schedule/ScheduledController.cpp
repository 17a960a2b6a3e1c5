#include "core/schedule/ScheduledController.h"

#include "core/locale/Dates.h"
#include "core/schedule/RuleEditor.h"
#include "core/schedule/ScheduleTexts.h"
#include "core/schedule/ZoneStretches.h"

namespace mirvel::Scheduled {

Texts localizedTexts(const Localize& localize) {
  const auto lower = localize.lowercase();
  return {
      .kinds = {localize.repeatInterval(), ScheduleTexts(localize).everyHour(), ScheduleTexts(localize).everyDay(),
                localize.dayOfWeek(), localize.dayOfMonth(), ScheduleTexts(localize).dayOfYear()},
      .units = {lower.seconds(), lower.minutes(), lower.hours(), lower.days()},
      .weekdays = ScheduleTexts(localize).weekdays(),
      .weekends = ScheduleTexts(localize).weekends(),
      .dayNames = Date::weekdays(localize.locale()),
      .monthNames = Date::months(localize.locale()),
  };
}

}  // namespace mirvel::Scheduled

namespace mirvel {

struct ScheduledController::Source {
  explicit Source(const Localize& localize)
      : texts(Scheduled::localizedTexts(localize)),
        numbers(localize.locale()),
        criteria(makeCriteria(texts, localize)) {
    for (const auto& kind : criteria) criteriaRows.push_back(completed({kind}));
  }

  const Scheduled::Texts texts;
  const Scheduled::NumberText numbers;
  const Criteria criteria;
  std::vector<Criteria> criteriaRows;
};

ScheduledController::ScheduledController(const Localize& localize) : m_localize(localize) {}

ScheduledController::~ScheduledController() = default;

const ScheduledController::Source& ScheduledController::source() const {
  if (!m_source) m_source = std::make_unique<const Source>(m_localize);
  return *m_source;
}

const Criteria& ScheduledController::children(const Criterion* criterion) const {
  return criterion ? criterion->children() : source().criteria;
}

const std::vector<Criteria>& ScheduledController::criteriaRows() const {
  return source().criteriaRows;
}

const Scheduled::Texts& ScheduledController::texts() const {
  return source().texts;
}

const Scheduled::NumberText& ScheduledController::numbers() const {
  return source().numbers;
}

const MomentTexts& ScheduledController::moments() const {
  // The zone can change while the program runs, for example on a journey.
  std::string zone = zoneOfThisMachine();
  if (!m_moments || m_moments->zone() != zone) m_moments = std::make_unique<MomentTexts>(m_localize, std::move(zone));
  return *m_moments;
}

void ScheduledController::load(const std::vector<Scheduled::ScheduledType>& rules, Scheduled::RuleEditor& editor) {
  std::vector<Scheduled::FileRule> fileRules;
  fileRules.reserve(rules.size());
  for (const auto& rule : rules) fileRules.push_back({rule});
  loadFileRules(fileRules, editor);
}

void ScheduledController::loadFileRules(const std::vector<Scheduled::FileRule>& rules, Scheduled::RuleEditor& editor) {
  m_isBuilding = true;
  // Adding and replacing rows below must not count as edits, hence `m_isBuilding`.
  while (editor.numberOfRows() > 0) editor.removeRow(editor.numberOfRows() - 1);
  for (const auto& [rule, source] : rules) {
    editor.addRow();
    auto row = Scheduled::rowOf(rule, criteriaRows()[rule.index()], m_localize);
    if (!row) continue;
    if (source != Scheduled::FileSource()) row->origin = {source, row->displayValues};
    editor.setRow(editor.numberOfRows() - 1, *std::move(row));
  }
  m_isBuilding = false;
  editor.rowsWereLoaded();
}

}  // namespace mirvel
