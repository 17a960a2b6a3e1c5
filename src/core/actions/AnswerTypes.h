#pragma once

#include <string>

#include "core/propertylist/Value.h"

namespace mirvel {

/// What shows the output of a test run.
class TestType {
 public:
  TestType() = default;
  virtual ~TestType() = default;
  TestType(const TestType&) = delete;
  TestType& operator=(const TestType&) = delete;

  virtual void testFinished(const std::string& output) = 0;
};

/// What shows the log of a job.
class LogType {
 public:
  LogType() = default;
  virtual ~LogType() = default;
  LogType(const LogType&) = delete;
  LogType& operator=(const LogType&) = delete;

  /// An array of dictionaries, whose keys are times in decimal seconds since 1970 and whose values are messages.
  virtual void logReplyReceived(const plist::Array& lines) = 0;
  /// The query has ended without an answer.
  virtual void clear() = 0;
};

}  // namespace mirvel
