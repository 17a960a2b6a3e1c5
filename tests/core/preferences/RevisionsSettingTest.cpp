#include "core/preferences/RevisionsSetting.h"

#include <gmock/gmock.h>

#include "core/catalogue/Launchd.h"
#include "support/ProgramFixture.h"

namespace mirvel {
namespace {

using testing::IsEmpty;

class RevisionsSettingTest : public testdata::ProgramFixture {
 protected:
  RevisionsSetting setting() { return {foundation.defaults, stores(), interface, queue, foundation.localize}; }
  const RevisionHistories& stores() { return program().preferencesContext.revisions; }
  void store(std::int64_t number) { ASSERT_TRUE(foundation.defaults.setNumberOfSavedRevisions(number)); }
  std::int64_t stored() const { return foundation.defaults.numberOfSavedRevisions(); }
  void save(const char* file, int times) {
    for (int i = 0; i < times; ++i) {
      clock.now += 1;
      const auto text = testdata::jobText("job", {{"Nice", i}});
      program().revisions.saveRevision(*Launchd::read(text, URL::file(file), Kind::userAgent, {}, console));
    }
  }
  void saveScript(const char* file, int times) {
    for (int i = 0; i < times; ++i) program().documents.revisions().add(file, std::to_string(i));
  }
  /// How many revisions the store has of a file.
  std::size_t kept(const char* file) {
    const auto* const list = program().revisions.revisions().get<propertylist::Array>(file);
    return list ? list->size() : 0;
  }
};

TEST_F(RevisionsSettingTest, ANumberBeyondTheStepperIsShownAsItIsAndKept) {
  const struct {
    std::int64_t number;
    int position, minimum, maximum;
    const char* text;
    int next;  // a number that the stepper reaches from there
  } rows[] = {
      {0, 0, 0, 100, "0", 1},
      {100, 100, 0, 100, "100", 99},
      {101, 101, 0, 101, "101", 100},
      {250'000, 101, 0, 101, "250,000", 100},
      {-7, -1, -1, 100, "-7", 0},
      {std::numeric_limits<std::int64_t>::max(), 101, 0, 101, "9,223,372,036,854,775,807", 100},
  };
  for (const auto& row : rows) {
    store(row.number);
    auto revisions = setting();
    EXPECT_EQ(revisions.position(), row.position) << row.number;
    EXPECT_EQ(revisions.minimum(), row.minimum) << row.number;
    EXPECT_EQ(revisions.maximum(), row.maximum) << row.number;
    EXPECT_EQ(revisions.text(row.position), row.text);
    EXPECT_EQ(revisions.positionOf(row.text), row.position);
    revisions.commit(row.position);
    EXPECT_EQ(stored(), row.number) << "leaving the field changes nothing";
    revisions.commit(row.next);
    EXPECT_EQ(stored(), row.next);
  }
}

TEST_F(RevisionsSettingTest, OnlyNumbersOfTheStepperCanBeTyped) {
  store(500);
  auto revisions = setting();
  const std::pair<const char*, std::optional<int>> rows[] = {{"7", 7},
                                                             {"100", 100},
                                                             {"0", 0},
                                                             {"101", std::nullopt},
                                                             {"-1", std::nullopt},
                                                             {"500", 101},
                                                             {"", std::nullopt},
                                                             {"12x", std::nullopt},
                                                             {"1.5", std::nullopt},
                                                             {"99999999999999999999", std::nullopt}};
  for (const auto& [text, position] : rows) EXPECT_EQ(revisions.positionOf(text), position) << text;
}

TEST_F(RevisionsSettingTest, SteppingIsStoredWhenItPauses) {
  store(10);
  auto revisions = setting();
  int commits = 0;
  for (const int position : {11, 12, 13}) {
    queue.runFor(0.9);
    EXPECT_EQ(stored(), 10);
    revisions.step(position, [&] { ++commits; });
  }
  queue.runFor(1.1);
  EXPECT_EQ(stored(), 13);
  EXPECT_EQ(commits, 1);
  // The focus leaves the field before the pause is over.
  revisions.step(20, [&] { ++commits; });
  revisions.commit(20);
  store(30);
  queue.runFor(5);
  EXPECT_EQ(stored(), 30);
  EXPECT_EQ(commits, 1);
}

TEST_F(RevisionsSettingTest, AnAbandonedStepIsntStored) {
  store(10);
  auto revisions = setting();
  revisions.step(20, [] { ADD_FAILURE(); });
  revisions.abandon();
  queue.runFor(5);
  EXPECT_EQ(stored(), 10);
}

TEST_F(RevisionsSettingTest, WhatWouldBeDeletedIsSaidBefore) {
  store(10);
  save("/jobs/a.plist", 5);
  save("/jobs/b.plist", 3);
  save("/jobs/c.plist", 2);
  saveScript("/scripts/d.sh", 4);
  auto revisions = setting();
  revisions.commit(5);
  EXPECT_THAT(interface.alerts, IsEmpty()) << "nothing would be deleted";

  interface.answer.button = Interface::alternateButton;
  revisions.commit(2);
  ASSERT_EQ(interface.alerts.size(), 1U);
  EXPECT_EQ(interface.alerts[0].message, "6 earlier versions of 3 jobs and scripts will be deleted");
  EXPECT_EQ(interface.alerts[0].returnAnswer(), Interface::alternateButton);
  EXPECT_EQ(interface.alerts[0].escapeAnswer(), Interface::alternateButton);
  EXPECT_EQ(stored(), 5);
  EXPECT_EQ(kept("/jobs/a.plist"), 5U);

  interface.answer.button = Interface::defaultButton;
  revisions.commit(2);
  EXPECT_EQ(stored(), 2);
  EXPECT_EQ(kept("/jobs/a.plist"), 2U);
  EXPECT_EQ(kept("/jobs/b.plist"), 2U);
  EXPECT_EQ(kept("/jobs/c.plist"), 2U);
  EXPECT_EQ(program().documents.revisions().of("/scripts/d.sh").size(), 2U);
  const auto& newest = program().revisions.revisions().get<propertylist::Array>("/jobs/a.plist")->front();
  EXPECT_EQ(*newest.as<propertylist::Dictionary>()->find("Plist")->as<propertylist::Dictionary>()->find("Nice"),
            propertylist::Value(4))
      << "the newest are kept";
}

TEST_F(RevisionsSettingTest, ASecondCommitDuringTheQuestionDoesNothing) {
  /// The focus leaves the field because an alert appears.
  class Distracting final : public testdata::FakeInterface {
   public:
    using FakeInterface::FakeInterface;
    std::function<void()> whileAsking;

   protected:
    Answer showAlert(const Alert& question) override {
      const Answer given = FakeInterface::showAlert(question);
      whileAsking();
      return given;
    }
  };
  store(10);
  save("/jobs/a.plist", 5);
  Distracting user(foundation.defaults, foundation.localize);
  RevisionsSetting revisions(foundation.defaults, stores(), user, queue, foundation.localize);
  user.whileAsking = [&] { revisions.commit(1); };
  user.answer.button = Interface::alternateButton;
  revisions.commit(1);
  EXPECT_EQ(user.alerts.size(), 1U);
  EXPECT_EQ(stored(), 10);
}

TEST_F(RevisionsSettingTest, RevisionsThatCantBeReadAreLeftAlone) {
  (void)folder.write("support/Revisions.plist/is-a-folder", "");
  store(10);
  auto revisions = setting();
  revisions.commit(9);
  EXPECT_EQ(stored(), 10) << "the next save after the file can be read would delete revisions unasked";
  EXPECT_THAT(interface.alerts, IsEmpty());
  ASSERT_EQ(interface.errors.size(), 1U);
  EXPECT_THAT(interface.errors[0].second, testing::HasSubstr("Revisions.plist"));
  EXPECT_TRUE(std::filesystem::exists(roots.applicationSupport / "Revisions.plist/is-a-folder"));
  revisions.commit(11);
  EXPECT_EQ(stored(), 11) << "a larger number deletes nothing";
  EXPECT_EQ(interface.errors.size(), 1U);
}

}  // namespace
}  // namespace mirvel
