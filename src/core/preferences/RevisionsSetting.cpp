#include "core/preferences/RevisionsSetting.h"

#include <algorithm>
#include <utility>

#include "core/ports/Interface.h"
#include "core/preferences/PreferencesTexts.h"
#include "core/schedule/NumberText.h"
#include "core/settings/Defaults.h"

namespace mirvel {

RevisionsSetting::RevisionsSetting(Defaults& defaults, RevisionHistories stores, Interface& interface,
                                   MainQueue& mainQueue, const Localize& localize)
    : m_defaults(defaults),
      m_stores(std::move(stores)),
      m_interface(interface),
      m_localize(localize),
      m_delay(mainQueue) {}

std::int64_t RevisionsSetting::stored() const {
  return m_defaults.numberOfSavedRevisions();
}

int RevisionsSetting::minimum() const {
  return stored() < least ? least - 1 : least;
}

int RevisionsSetting::maximum() const {
  return stored() > most ? most + 1 : most;
}

int RevisionsSetting::position() const {
  return static_cast<int>(std::clamp<std::int64_t>(stored(), minimum(), maximum()));
}

std::string RevisionsSetting::text(int position) const {
  return m_localize.int_(position == this->position() ? stored() : position);
}

std::optional<int> RevisionsSetting::positionOf(const std::string& text) const {
  if (text == m_localize.int_(stored())) return position();
  const auto number = Scheduled::NumberText(m_localize.locale()).parseWhole(text);
  if (!number || *number < least || *number > most) return std::nullopt;
  return static_cast<int>(*number);
}

bool RevisionsSetting::mayContinue(const std::string& text) const {
  return m_localize.int_(stored()).starts_with(text);
}

void RevisionsSetting::step(int position, const MainQueue::Task& ended) {
  m_delay(pause, [this, position, ended, step = ++m_steps] {
    if (step != m_steps) return;
    commit(position);
    ended();
  });
}

void RevisionsSetting::commit(int position) {
  ++m_steps;
  if (m_isAsking || position == this->position() || position < least || position > most) return;
  if (!mayStore(position)) return;
  (void)m_defaults.setNumberOfSavedRevisions(position);  // the store reports failures
  for (RevisionHistory* history : m_stores) history->removeBeyond(position);
}

/// The alerts take the focus from the stepper, which commits again.
bool RevisionsSetting::mayStore(std::int64_t number) {
  const auto excess = mirvel::countBeyond(m_stores, number);
  m_isAsking = true;
  bool result = number > stored();
  if (excess) {
    result = mayDelete(number, *excess);
  } else if (!result) {
    m_interface.error(PreferencesTexts(m_localize).numberCantBeReduced(), excess.error().text());
  }
  m_isAsking = false;
  return result;
}

bool RevisionsSetting::mayDelete(std::int64_t number, const RevisionHistory::Excess& excess) {
  if (excess.revisions == 0) return true;
  const PreferencesTexts texts(m_localize);
  const int answer = m_interface.alert({.message = texts.deleteRevisions(excess.revisions, excess.files),
                                        .informativeText = texts.onlyTheNewestAreKept(number),
                                        .defaultTitle = m_localize.delete_(),
                                        .alternateTitle = m_localize.cancel(),
                                        .safeButton = Interface::alternateButton});
  return answer == Interface::defaultButton;
}

}  // namespace mirvel
