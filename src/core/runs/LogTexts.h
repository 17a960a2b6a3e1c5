#pragma once

#include <string>

#include "core/locale/Localize.h"

namespace mirvel {

/// The texts of the log sheet.
class LogTexts : public Texts {
 public:
  using Texts::Texts;

  std::string date() const { return text("Date"); }
  std::string done() const { return text("Done"); }
  std::string earlierLinesArentShown(std::int64_t count) const {
    return count == 1 ? text("1 earlier line isn’t shown") : format("%@ earlier lines aren’t shown", {int_(count)});
  }
  std::string event(const std::string& message) const { return format("Event: %@", {message}); }
  std::string follow() const { return text("Follow"); }
  std::string followHelp() const { return text("Show new lines as soon as the job prints them."); }
  std::string length() const { return text("Length"); }
  std::string lines(std::int64_t count) const {
    return count == 1 ? text("1 line") : format("%@ lines", {int_(count)});
  }
  std::string linesOf(std::int64_t shown, std::int64_t all) const {
    return format("%@ of %@ lines", {int_(shown), int_(all)});
  }
  std::string linesWereDropped(std::int64_t count) const {
    return count == 1 ? text("1 line was dropped") : format("%@ lines were dropped", {int_(count)});
  }
  std::string log() const { return text("Log"); }
  std::string message() const { return text("Message"); }
  std::string nothingMatches() const { return text("No line contains the text of the filter."); }
  std::string nothingWasLogged() const { return text("Nothing was logged in this period."); }
  std::string openErrorFile() const { return text("Open Error File"); }
  std::string openOutputFile() const { return text("Open Output File"); }
  std::string refresh() const { return text("Refresh"); }
  std::string theFileCantBeOpened(const std::string& path) const { return format("“%@” couldn’t be opened", {path}); }
  std::string timePeriod() const { return text("Time Period"); }
};

}  // namespace mirvel
