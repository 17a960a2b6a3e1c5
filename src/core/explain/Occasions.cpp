#include "core/explain/Occasions.h"

#include <utility>

#include "core/explain/ScheduleText.h"

namespace mirvel::explain {

namespace {

/// Marks a text for extraction by xgettext; it is translated by `Localize::format`.
constexpr const char* text(const char* english) {
  return english;
}

class Sentences {
 public:
  explicit Sentences(const Localize& localize) : m_localize(localize) {}

  void addStart(const jobfile::Plist& plist) {
    if (plist.runAtLoad == true) add(text("When it is loaded (at login or startup)"));
  }

  void addRestarts(const jobfile::Plist& plist) {
    if (plist.isAlwaysKeptAlive()) return add(text("Continuously, restarting whenever it exits"));
    if (plist.keepAlive && !plist.keepAlive->bool_) addConditions(*plist.keepAlive);
  }

  void addSchedule(const jobfile::Plist& plist, TimeForm form) {
    for (std::string& line : scheduleText(plist, m_localize, form)) m_lines.push_back(std::move(line));
  }

  void addEvents(const jobfile::Plist& plist) {
    if (plist.startOnMount == true) add(text("When a volume is mounted"));
    if (plist.watchPaths) addEach(text("When %@ changes"), *plist.watchPaths);
    if (plist.queueDirectories) addEach(text("While %@ isn’t empty"), *plist.queueDirectories);
    if (plist.sockets) addKeys(text("When a request arrives at the socket %@"), plist.sockets->dictionaries);
    if (plist.launchEvents) addKeys(text("When %@ reports an event"), plist.launchEvents->dictionaries);
    if (!plist.machServices) return;
    constexpr const char* used = text("When another program uses the service %@");
    addKeys(used, plist.machServices->bools);
    addKeys(used, plist.machServices->strings);
    addKeys(used, plist.machServices->dictionaries);
  }

  std::vector<std::string> take(bool isDisabled) && {
    if (m_lines.empty()) m_lines.push_back(m_localize.onlyWhenStartedManually());
    if (isDisabled)
      m_lines.insert(m_lines.begin(), m_localize.format("Not at present, because the job is disabled in its file", {}));
    return std::move(m_lines);
  }
  std::vector<std::string> take() && { return std::move(m_lines); }

 private:
  void addConditions(const jobfile::KeepAlive& keepAlive) {
    if (keepAlive.successfulExit) {
      add(*keepAlive.successfulExit ? text("Again when it exits successfully")
                                    : text("Again when it exits with an error"));
    }
    if (keepAlive.crashed) {
      add(*keepAlive.crashed ? text("Again when it crashes") : text("Again when it exits without crashing"));
    }
    if (keepAlive.networkState) {
      add(*keepAlive.networkState ? text("While a network is available") : text("While no network is available"));
    }
    if (keepAlive.pathState) addStates(text("While %@ exists"), text("While %@ doesn’t exist"), *keepAlive.pathState);
    if (keepAlive.otherJobEnabled) {
      addStates(text("While the job %@ is loaded"), text("While the job %@ isn’t loaded"), *keepAlive.otherJobEnabled);
    }
    if (keepAlive.afterInitialDemand == true) add(text("Kept running only after it was first started on demand"));
  }

  void add(const char* sentence) { m_lines.push_back(m_localize.format(sentence, {})); }

  void addEach(const char* sentence, const std::vector<std::string>& names) {
    for (const std::string& name : names) m_lines.push_back(m_localize.format(sentence, {name}));
  }

  template <typename Element>
  void addKeys(const char* sentence, const jobfile::StringMap<Element>& elements) {
    for (const auto& element : elements) m_lines.push_back(m_localize.format(sentence, {element.first}));
  }

  void addStates(const char* wanted, const char* unwanted, const jobfile::StringMap<bool>& states) {
    for (const auto& [name, isWanted] : states) {
      m_lines.push_back(m_localize.format(isWanted ? wanted : unwanted, {name}));
    }
  }

  const Localize& m_localize;
  std::vector<std::string> m_lines;
};

}  // namespace

std::vector<std::string> occasions(const jobfile::Plist& plist, const Localize& localize) {
  Sentences sentences(localize);
  sentences.addStart(plist);
  sentences.addRestarts(plist);
  sentences.addSchedule(plist, TimeForm::TwentyFourHours);
  sentences.addEvents(plist);
  return std::move(sentences).take(plist.disabled == true);
}

std::vector<std::string> laterOccasions(const jobfile::Plist& plist, const Localize& localize, TimeForm form) {
  Sentences sentences(localize);
  sentences.addRestarts(plist);
  sentences.addSchedule(plist, form);
  sentences.addEvents(plist);
  return std::move(sentences).take();
}

}  // namespace mirvel::explain
