#pragma once

#include <gmock/gmock.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mirvel::testdata {

/// The lines that a script of this folder prints about a file of cases; nullopt without Python.
std::optional<std::vector<std::string>> judged(const std::string& script, const std::string& cases);

/// Collects property lists before and after an edit, and compares them with Python's reader; see untouched.py.
class Untouched {
 public:
  /// `edited` lists the keys that must differ and may do so, such as "Program|ProgramArguments", "KeepAlive:Crashed" or
  /// "WatchPaths[0]+2".
  void add(const std::string& name, const std::string& edited, std::string_view before, std::string_view after);
  std::size_t count() const { return m_count; }

  /// One line for each unexpected difference; nullopt without Python.
  std::optional<std::vector<std::string>> complaints() const { return judged("untouched.py", m_cases); }
  /// Must be the last check of a test, because it skips the test without Python.
  void expectNoComplaints() const {
    const auto found = complaints();
    if (!found) GTEST_SKIP() << "no python3 here";
    EXPECT_THAT(*found, testing::IsEmpty());
  }

 private:
  std::string m_cases;
  std::size_t m_count = 0;
};

}  // namespace mirvel::testdata
