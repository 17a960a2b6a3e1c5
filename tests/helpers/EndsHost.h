#pragma once

#include <gtest/gtest.h>

#include <filesystem>

#include "helpers/hostdata/HostClient.h"
#include "helpers/hostdata/HostPlaces.h"

namespace mirvel::testdata {

/// Ends the job host of the machine below a folder, if one was started there: helpers start it when they need it. Must
/// be declared after the folder.
class EndsHost {
 public:
  explicit EndsHost(const std::filesystem::path& root) : m_client(HostPlaces::of(Roots::below(root)).socket) {}
  ~EndsHost() {
    const auto answer = m_client.ask(hostdata::Quit(), longestQuit);
    const bool hasEnded = answer || HostClient::isNoHost(answer.error()) || HostClient::isHangUp(answer.error());
    EXPECT_TRUE(hasEnded) << answer.error().text();
  }
  EndsHost(const EndsHost&) = delete;
  EndsHost& operator=(const EndsHost&) = delete;

 private:
  HostClient m_client;
};

}  // namespace mirvel::testdata
