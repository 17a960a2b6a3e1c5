#include "core/loginitems/SystemEventsItems.h"

#include <gmock/gmock.h>

#include "core/catalogue/LoginItem.h"
#include "support/FakeProcessRunner.h"

namespace mirvel {
namespace {

using testing::HasSubstr;

class SystemEventsItemsTest : public testing::Test {
 protected:
  /// The items of an output in which `|` ends a field and `$` a record, as "name|path|kind".
  std::vector<std::string> listed(std::string output) {
    for (char& c : output) c = c == '|' ? '\x1F' : c == '$' ? '\x1E' : c;
    m_runner.answer = ProcessResult{.output = output};
    return listed();
  }
  std::vector<std::string> listed() {
    std::vector<std::string> result;
    for (const auto& item : m_items.listed()) {
      result.push_back(item.name + '|' + item.path + '|' + item.kind);
    }
    return result;
  }

  testdata::FakeProcessRunner m_runner;
  SystemEventsItems m_items{m_runner, "/tools/osascript", "/missing"};
};

TEST_F(SystemEventsItemsTest, RemovalPassesTheItemAsArgumentsAndNotInTheScript) {
  m_runner.answer = ProcessResult{.output = "a\" & beep & \"\x1F/p\x1F\x1F\x1E"};
  const Jobs jobs = LoginItem::systemPreferencesItems(m_items, false);
  ASSERT_EQ(jobs.size(), 1U);
  m_runner.calls.clear();
  EXPECT_TRUE(m_items.remove(dynamic_cast<const LoginItem&>(*jobs[0])));
  ASSERT_EQ(m_runner.calls.size(), 1U);
  ASSERT_EQ(m_runner.calls[0].size(), 5U);
  EXPECT_EQ(m_runner.calls[0][3], "a\" & beep & \"");
  EXPECT_EQ(m_runner.calls[0][4], "/p");
  EXPECT_THAT(m_runner.calls[0][2], HasSubstr("delete"));

  m_runner.answer = ProcessResult{.exitStatus = 1, .complaints = "not allowed"};
  const auto refused = m_items.remove(dynamic_cast<const LoginItem&>(*jobs[0]));
  ASSERT_FALSE(refused);
  EXPECT_THAT(refused.error().text(), HasSubstr("not allowed"));
}

TEST_F(SystemEventsItemsTest, TheToolIsRunOnceForAllItems) {
  EXPECT_TRUE(listed("").empty());
  ASSERT_EQ(m_runner.calls.size(), 1U);
  const auto& call = m_runner.calls[0];
  ASSERT_EQ(call.size(), 3U);
  EXPECT_EQ(call[0], "/tools/osascript");
  EXPECT_EQ(call[1], "-e");
  EXPECT_THAT(call[2], HasSubstr("tell application \"System Events\""));
  EXPECT_TRUE(m_items.bundled().empty());
  EXPECT_EQ(m_runner.calls.size(), 1U);
}

TEST_F(SystemEventsItemsTest, IncompleteRecordsAreSkipped) {
  const struct {
    std::string output;
    std::vector<std::string> items;
  } table[] = {
      {"\n", {}},
      {"A|/a|Application|$\n", {"A|/a|Application"}},
      {"B|/b|Application|$A|/a||$\n", {"B|/b|Application", "A|/a|"}},
      {"A, \"b\"\nc, d\\|/a\t{e}|Application|$\n", {"A, \"b\"\nc, d\\|/a\t{e}|Application"}},
      {"Uhr \xC3\xBC\xFF|/\xFE|UNKNOWN|$\n", {"Uhr \xC3\xBC\xFF|/\xFE|UNKNOWN"}},
      {"A|/a|Application|\n", {}},
      {"A|/a|Application$\n", {}},
      {"A|/a|$B|/b|Application|$\n", {"B|/b|Application"}},
      {"A|/a|Application|more|$B|/b|Application|$\n", {"B|/b|Application"}},
      {"$$|||$\n", {"||"}},
  };
  for (const auto& row : table) EXPECT_EQ(listed(row.output), row.items) << row.output;
}

TEST_F(SystemEventsItemsTest, AFailedOrMissingToolYieldsNothing) {
  m_runner.answer = ProcessResult{.exitStatus = 1,
                                  .output = "A\x1F/a\x1F\x1F\x1E\n",
                                  .complaints = "execution error: Not authorised to send Apple events (-1743)"};
  EXPECT_TRUE(listed().empty());
  m_runner.answer = Error{.code = Error::Code::NotFound, .message = "can't run"};
  EXPECT_TRUE(listed().empty());
}

}  // namespace
}  // namespace mirvel
