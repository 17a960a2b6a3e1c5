#include <gmock/gmock.h>

#include <fstream>

#include "ui/app/ApplicationFixture.h"

namespace mirvel::ui {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

/// The whole way from a file to a row.
class CatalogueTest : public ApplicationFixture {
 protected:
  /// Whether the column shows the texts within the time after which a user would wonder.
  testing::AssertionResult showsSoon(const Names& expected, ListColumn column = ListColumn::Name) {
    constexpr int patience = 1500;
    if (QTest::qWaitFor([&] { return texts(table(), column) == expected; }, patience)) {
      return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "shows " << testing::PrintToString(texts(table(), column));
  }
};

TEST_F(CatalogueTest, ShowsFilesAsTheyAreAddedChangedAndRemoved) {
  writeJob("b", {{"Program", "/bin/one"}});
  start();
  EXPECT_TRUE(showsSoon({"b"}));
  writeJob("a", {{"Program", "/bin/two"}});
  EXPECT_TRUE(showsSoon({"a", "b"})) << "added";
  writeJob("b", {{"Program", "/bin/three"}});
  EXPECT_TRUE(showsSoon({"/bin/two", "/bin/three"}, ListColumn::Run)) << "changed in place";
  fs::rename(path("a"), path("c"));
  fs::remove(path("b"));
  EXPECT_TRUE(showsSoon({"/bin/two"}, ListColumn::Run)) << "renamed and removed";
  std::ofstream(path("c")) << "no property list";
  EXPECT_TRUE(showsSoon({})) << "damaged";
}

TEST_F(CatalogueTest, SelectedJobStaysSelectedWhileFilesChange) {
  writeJob("m", {{"Program", "/bin/one"}});
  writeJob("n");
  start();
  select("m");
  ASSERT_EQ(shownJob(window()), "m");
  const struct {
    const char* change;
    std::function<void()> does;
    Names runs;
  } rows[] = {
      {"another before it",
       [&] {
         writeJob("a", {{"Program", "/bin/a"}});
       },
       {"/bin/a", "/bin/one", ""}},
      {"its own file",
       [&] {
         writeJob("m", {{"Program", "/bin/two"}});
       },
       {"/bin/a", "/bin/two", ""}},
      {"another gone", [&] { fs::remove(path("a")); }, {"/bin/two", ""}},
  };
  for (const auto& row : rows) {
    row.does();
    EXPECT_TRUE(showsSoon(row.runs, ListColumn::Run)) << row.change;
    EXPECT_EQ(markedJob(table()), "m") << row.change;
    EXPECT_EQ(shownJob(window()), "m") << row.change;
    EXPECT_EQ(program().selection.job(), program().catalogue.jobAt(URL::file(path("m")))) << row.change;
  }

  fs::remove(path("m"));
  EXPECT_TRUE(showsSoon({"n"}));
  EXPECT_TRUE(testdata::eventually([&] { return !program().scanning.isBusy(); }));
  EXPECT_EQ(markedJob(table()), "");
  EXPECT_EQ(shownJob(window()), "");
  EXPECT_EQ(program().selection.job(), nullptr);
  EXPECT_EQ(window().windowTitle(), QStringLiteral("Mirvel[*]"));
}

TEST_F(CatalogueTest, RecreatedFolderIsWatchedAgain) {
  writeJob("a");
  start();
  EXPECT_TRUE(showsSoon({"a"}));
  for (int round = 0; round < 2; ++round) {
    fs::remove_all(agents().parent_path());
    EXPECT_TRUE(showsSoon({})) << "removed";
    writeJob("b");
    EXPECT_TRUE(showsSoon({"b"})) << "recreated with a file in it";
    writeJob("c");
    EXPECT_TRUE(showsSoon({"b", "c"})) << "a file in the new one";
  }
}

}  // namespace
}  // namespace mirvel::ui
