#include "helpers/agent/NoticeSender.h"

#include <gmock/gmock.h>

#include "support/TestData.h"
#include "support/VirtualQueue.h"

namespace mirvel::agent {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Answer = Notifier::Answer;

/// Gives the same answer to each notification until it is changed.
class FakeNotifier final : public Notifier {
 public:
  explicit FakeNotifier(MainQueue& queue) : m_delay(queue) {}

  Answer answer = Answer::Accepted;
  std::vector<std::string> sent;  ///< titles

  void begin(Listener) override {}
  void send(const Notification& notification, std::function<void(Answer)> done) override {
    sent.push_back(notification.title);
    m_delay(0, [done = std::move(done), given = answer] { done(given); });
  }
  bool isLost() const override { return false; }

 private:
  Delay m_delay;
};

class NoticeSenderTest : public testing::Test {
 protected:
  void add(Notice::What what, const std::string& name) {
    memory.add({.what = what, .name = name});
    sender.plan();
  }
  /// The titles of what is sent in so many seconds.
  std::vector<std::string> sentIn(double seconds) {
    notifier.sent.clear();
    queue.runFor(seconds);
    return notifier.sent;
  }

  const testdata::TemporaryFolder folder;
  const Localize localize{"en"};
  StoreTroubles troubles;
  Exceptions exceptions{folder.path()};
  AgentMemory memory{folder.path() / "known.plist", troubles};
  testdata::VirtualQueue queue;
  FakeNotifier notifier{queue};
  NoticeSender sender{{localize, exceptions, memory, notifier, queue}};
};

TEST_F(NoticeSenderTest, WhatIsRefusedIsSentAgainLessAndLessOften) {
  notifier.answer = Answer::Refused;
  add(Notice::What::Added, "a");
  const std::vector<std::string> once{"Background job added"};
  EXPECT_EQ(sentIn(29), once);
  EXPECT_EQ(sentIn(2), once);
  EXPECT_THAT(sentIn(118), IsEmpty());
  EXPECT_EQ(sentIn(2), once);
  EXPECT_THAT(sentIn(598), IsEmpty());
  EXPECT_EQ(sentIn(2), once);
  EXPECT_EQ(sentIn(600), once);
  notifier.answer = Answer::Accepted;
  EXPECT_EQ(sentIn(600), once);
  EXPECT_THAT(memory.unsent, IsEmpty());
  EXPECT_THAT(sentIn(10000), IsEmpty());

  notifier.answer = Answer::Refused;
  add(Notice::What::Removed, "b");
  EXPECT_THAT(sentIn(31), ElementsAre("Background job removed", "Background job removed")) << "the pauses begin anew";
}

TEST_F(NoticeSenderTest, WithoutAServiceNothingIsRetried) {
  notifier.answer = Answer::Unavailable;
  add(Notice::What::Added, "a");
  EXPECT_THAT(sentIn(10000), ElementsAre("Background job added"));
  notifier.answer = Answer::Accepted;
  sender.plan();  // the service is there
  EXPECT_THAT(sentIn(10000), ElementsAre("Background job added"));
}

TEST_F(NoticeSenderTest, AnAttemptInBetweenReplacesTheRetry) {
  notifier.answer = Answer::Refused;
  add(Notice::What::Added, "a");
  sentIn(20);
  add(Notice::What::Removed, "b");
  EXPECT_THAT(sentIn(100), ElementsAre("Background job added", "Background job removed"));
}

TEST_F(NoticeSenderTest, OmittedChangesAreToldOnce) {
  memory.omitted = 5;
  add(Notice::What::Added, "a");
  EXPECT_THAT(sentIn(1), ElementsAre("Background jobs changed"));
  EXPECT_EQ(memory.omitted, 0);
  add(Notice::What::Added, "b");
  EXPECT_THAT(sentIn(1), ElementsAre("Background job added"));
}

TEST_F(NoticeSenderTest, WhatIsExceptedWhileItWaitsIsDropped) {
  notifier.answer = Answer::Unavailable;
  for (const char* name : {"quiet", "told"}) add(Notice::What::Added, name);
  add(Notice::What::Failed, "quiet");
  add(Notice::What::Trouble, "");
  sentIn(1);
  Exceptions preferences(folder.path());
  ASSERT_TRUE(preferences.setTellsChanges("quiet", false));
  ASSERT_TRUE(preferences.setTellsFailures(false));
  notifier.answer = Answer::Accepted;
  sender.plan();
  EXPECT_THAT(sentIn(1), ElementsAre("Background job added", ""));
  EXPECT_THAT(memory.unsent, IsEmpty());
}

TEST_F(NoticeSenderTest, NothingIsSentOnceItHasStopped) {
  add(Notice::What::Added, "a");
  queue.runDue();
  EXPECT_THAT(notifier.sent, ElementsAre("Background job added"));
  notifier.sent.clear();
  memory.add({.what = Notice::What::Removed, .name = "b"});
  sender.plan();
  sender.stop();
  EXPECT_THAT(sentIn(10), IsEmpty());
  EXPECT_FALSE(sender.isSending());
}

}  // namespace
}  // namespace mirvel::agent
