#pragma once

#include "core/catalogue/KindSection.h"
#include "core/mainwindow/JobMenu.h"
#include "core/mainwindow/JobSections.h"
#include "support/ProgramFixture.h"
#include "support/RecordingShell.h"

namespace mirvel::testdata {

/// Records the calls of a mode to its view. A position is a row or a path.
template <typename View, typename Position>
class RecordingView : public View {
 public:
  std::optional<Position> marked;
  std::optional<Position> scrolledTo;
  int reloads = 0;

  void reload() override {
    ++reloads;
    marked.reset();
  }
  void mark(std::optional<Position> position) override { marked = position; }
  void scrollTo(Position position) override { scrolledTo = position; }
};

/// A program for tests of modes.
class ModeFixture : public ProgramFixture {
 protected:
  /// A job of the kind, without a file on disk.
  static std::shared_ptr<Job> job(Kind kind, const std::string& name, const std::string& folder = "/jobs") {
    return std::make_shared<Job>(kind, name, "summary of " + name, "sum " + name,
                                 URL::file(folder + "/" + name + ".plist"));
  }
  static std::shared_ptr<Job> copy(const Job& of) {
    return std::make_shared<Job>(of.kind, of.name, of.summary, of.checksum, of.url);
  }
  /// Two jobs of the user, one of all users, and two login items.
  static Jobs someJobs() {
    return {job(Kind::userAgent, "a"), job(Kind::userAgent, "b"), job(Kind::localAgent, "c"),
            job(Kind::loginItemSystemPreferences, "own"), job(Kind::loginItemApplication, "bundled")};
  }
  static std::string text(const Sections& sections) {
    std::string result;
    for (const auto& section : sections) {
      for (const auto& job : section.jobs) result += job->name + " ";
      result += "| ";
    }
    return result;
  }
  static std::vector<std::string> titles(const JobMenu& menu) {
    std::vector<std::string> result;
    for (const auto& item : menu.items()) result.push_back(item.title);
    return result;
  }

  RecordingShell shell{program()};
};

inline constexpr IndexPath nowhere{99, 99};

}  // namespace mirvel::testdata

namespace mirvel {

inline void PrintTo(const IndexPath& path, std::ostream* out) {
  *out << path.section << ", " << (path.item == IndexPath::group ? "group" : std::to_string(path.item));
}

}  // namespace mirvel
