#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mirvel::testdata {

/// Job files before and after an edit, which Python's reader of property lists compares: see untouched.py.
class Untouched {
 public:
  /// `edited`: the keys that may and must differ, such as "Program|ProgramArguments", "KeepAlive:Crashed" or
  /// "WatchPaths[0]+2".
  void add(const std::string& name, const std::string& edited, std::string_view before, std::string_view after);
  std::size_t count() const { return m_count; }

  /// A line for each difference that wasn't asked for; none where there is no Python.
  std::optional<std::vector<std::string>> complaints() const;
  /// The last check of a test, which is skipped where there is no Python.
  void expectNoComplaints() const {
    const auto found = complaints();
    if (!found) GTEST_SKIP() << "no python3 here";
    EXPECT_THAT(*found, testing::IsEmpty());
  }

 private:
  std::string m_cases;
  std::string m_before;
  std::size_t m_count = 0;
};

}  // namespace mirvel::testdata
