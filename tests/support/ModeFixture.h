#pragma once

#include <gmock/gmock.h>

#include <type_traits>

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
  /// Shows the jobs in the mode, and makes them the catalogue.
  void publish(ModeType& mode, const Jobs& jobs) {
    mode.update(jobs);
    program().catalogue.publish(jobs);
    shell.events.clear();
  }
  URL url(const std::string& label) const { return URL::file(path(Kind::userAgent, label + ".plist")); }
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

  /// Expects that the mode marks a job that it shows by its URL, and selects that of the catalogue if nothing is
  /// edited. Jobs "a" and "b" are at these positions.
  template <typename View, typename Position>
  void expectToSelectByURL(ModeType& mode, const RecordingView<View, Position>& view, std::type_identity_t<Position> a,
                           std::type_identity_t<Position> b) {
    const auto first = jobNamed("a");
    shell.events.clear();
    mode.select(URL::file("/jobs/none.plist"));
    EXPECT_FALSE(view.marked);
    mode.select(URL::file(first->url.path().parent_path() / "." / first->url.path().filename()));
    EXPECT_EQ(view.marked, a);
    EXPECT_EQ(view.scrolledTo, a);
    EXPECT_EQ(program().selection.job(), first);
    EXPECT_THAT(shell.events, testing::ElementsAre("title Mirvel – a", "updateDetail"));

    program().editing.setUnsavedChanges(true);
    mode.select(jobNamed("b")->url);
    EXPECT_EQ(view.marked, b);
    EXPECT_EQ(program().selection.job(), first) << "it is being edited";
    shell.events.clear();
    mode.deselect();
    EXPECT_FALSE(view.marked);
    EXPECT_THAT(shell.events, testing::ElementsAre("clearDetail"));
    EXPECT_EQ(program().selection.job(), first);
    program().editing.setUnsavedChanges(false);
  }
  /// Expects that the mode only marks a job that it is given, and no equal one. Job "b" is at this position.
  template <typename View, typename Position>
  void expectToMarkByJob(ModeType& mode, const RecordingView<View, Position>& view, std::type_identity_t<Position> b) {
    shell.events.clear();
    mode.select(copy(*jobNamed("b")));
    EXPECT_FALSE(view.marked);
    mode.select(jobNamed("b"));
    EXPECT_EQ(view.marked, b);
    EXPECT_EQ(view.scrolledTo, b);
    EXPECT_THAT(shell.events, testing::IsEmpty());
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
