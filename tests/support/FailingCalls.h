#pragma once

#include <algorithm>
#include <cerrno>
#include <cstddef>

#include "core/files/ReplaceFile.h"

namespace mirvel::testdata {

/// A device that is full at one step, counted from 1, and takes few bytes at a time.
class FailingCalls : public FileCalls {
 public:
  explicit FailingCalls(int failing, std::size_t bytesAtOnce = 3) : m_failing(failing), m_bytesAtOnce(bytesAtOnce) {}
  bool renamed() const { return m_renamed; }
  bool failed() const { return m_count >= m_failing; }

  int create(int folder, const char* name, mode_t mode) override {
    return fails() ? -1 : FileCalls::create(folder, name, mode);
  }
  ssize_t write(int file, const char* data, std::size_t count) override {
    return fails() ? -1 : FileCalls::write(file, data, std::min(count, m_bytesAtOnce));
  }
  int setMode(int file, mode_t mode) override { return fails() ? -1 : FileCalls::setMode(file, mode); }
  int sync(int file) override { return fails() ? -1 : FileCalls::sync(file); }
  int close(int file) override { return FileCalls::close(file) + (fails() ? -1 : 0); }
  int rename(int folder, const char* from, const char* to) override {
    if (fails()) return -1;
    m_renamed = true;
    return FileCalls::rename(folder, from, to);
  }

 private:
  bool fails() {
    errno = ENOSPC;
    return ++m_count == m_failing;
  }

  int m_failing;
  std::size_t m_bytesAtOnce;
  int m_count = 0;
  bool m_renamed = false;
};

}  // namespace mirvel::testdata
