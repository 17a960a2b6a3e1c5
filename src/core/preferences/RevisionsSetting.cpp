#include "core/preferences/RevisionsSetting.h"

#include <algorithm>
#include <utility>

#include "core/actions/RevisionStore.h"
#include "core/ports/Interface.h"
#include "core/preferences/PreferencesTexts.h"
#include "core/schedule/NumberText.h"
#include "core/settings/Defaults.h"

namespace mirvel {

RevisionsSetting::RevisionsSetting(Defaults& defaults, std::vector<RevisionStore*> stores, Interface& interface,
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
  if (!mayDelete(position)) return;
  (void)m_defaults.setNumberOfSavedRevisions(position);  // the store reports failures
  for (RevisionStore* store : m_stores) store->removeBeyond(position);
}

bool RevisionsSetting::mayDelete(std::int64_t number) {
  RevisionStore::Excess excess;
  for (const RevisionStore* store : m_stores) {
    const auto [revisions, keys] = store->countBeyond(number);
    excess.revisions += revisions;
    excess.keys += keys;
  }
  if (excess.revisions == 0) return true;
  const PreferencesTexts texts(m_localize);
  m_isAsking = true;
  const int answer = m_interface.alert({.message = texts.deleteRevisions(excess.revisions, excess.keys),
                                        .informativeText = texts.onlyTheNewestAreKept(number),
                                        .defaultTitle = m_localize.delete_(),
                                        .alternateTitle = m_localize.cancel(),
                                        .safeButton = Interface::alternateButton});
  m_isAsking = false;
  return answer == Interface::defaultButton;
}

}  // namespace mirvel
