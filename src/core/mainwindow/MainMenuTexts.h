#pragma once

#include <string>

#include "core/locale/Localize.h"

namespace mirvel {

/// Titles of the main menu. An ampersand precedes the mnemonic of a menu or item.
class MainMenuTexts : public Texts {
 public:
  using Texts::Texts;

  std::string file() const { return text("&File"); }
  std::string newJob() const { return text("&New…"); }
  std::string editScript() const { return text("Edit S&cript…"); }
  std::string editJob() const { return text("&Edit Job"); }
  std::string save() const { return text("&Save"); }
  std::string revisions() const { return text("Re&visions"); }
  std::string duplicate() const { return text("D&uplicate…"); }
  std::string importJob() const { return text("&Import…"); }
  std::string exportJob() const { return text("E&xport…"); }
  std::string delete_() const { return text("&Delete…"); }
  std::string restoreDeleted() const { return text("Rest&ore Deleted…"); }
  std::string share() const { return text("S&hare"); }
  std::string runNow() const { return text("Run No&w"); }
  std::string stop() const { return text("Sto&p"); }
  std::string restart() const { return text("Rest&art"); }
  std::string disable() const { return text("Disa&ble"); }
  std::string test() const { return text("&Test…"); }
  std::string log() const { return text("&Log…"); }
  std::string info() const { return text("In&fo"); }
  std::string refresh() const { return text("&Refresh"); }
  std::string quit() const { return text("&Quit"); }
  std::string edit() const { return text("&Edit"); }
  std::string undo() const { return text("&Undo"); }
  std::string redo() const { return text("&Redo"); }
  std::string cut() const { return text("Cu&t"); }
  std::string copy() const { return text("&Copy"); }
  std::string paste() const { return text("&Paste"); }
  std::string selectAll() const { return text("Select &All"); }
  std::string filter() const { return text("&Filter"); }
  std::string preferences() const { return text("Pr&eferences…"); }
  std::string view() const { return text("&View"); }
  std::string asGrid() const { return text("as &Grid"); }
  std::string asTree() const { return text("as &Tree"); }
  std::string asList() const { return text("as &List"); }
  std::string asTimeline() const { return text("as Ti&meline"); }
  std::string systemJobs() const { return text("&System Jobs"); }
  std::string onlyProblems() const { return text("Only Jobs with &Problems"); }
  std::string onlyFailed() const { return text("Only Faile&d Jobs"); }
  std::string onlyRunning() const { return text("Only &Running Jobs"); }
  std::string checkJobs() const { return text("C&heck Jobs for Problems"); }
  std::string columns() const { return text("&Columns"); }
  std::string titleBar() const { return text("Title &Bar"); }
  std::string fullScreen() const { return text("&Full Screen"); }
  std::string help() const { return text("&Help"); }
  std::string pages() const { return text("Mirvel &Help"); }
  std::string manual() const { return text("launchd.plist &Manual"); }
  std::string site() const { return text("Mirvel &Website"); }
  std::string mailSupport() const { return text("Email &Support"); }
  std::string checkForUpdates() const { return text("Check for &Updates"); }
  std::string about() const { return text("&About Mirvel"); }
};

}  // namespace mirvel
