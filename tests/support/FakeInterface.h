#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/support/Interface.h"

namespace mirvel::testdata {

/// A user who always gives the same answers, and a record of what they were asked.
class FakeInterface : public Interface {
 public:
  using Interface::Interface;

  Answer answer;
  std::optional<std::filesystem::path> savePath;
  std::vector<Alert> alerts = {};
  std::vector<SavePanel> savePanels = {};
  std::vector<std::pair<std::string, std::string>> errors = {};

  void error(const std::string& message, const std::string& informativeText) override {
    errors.emplace_back(message, informativeText);
  }
  std::optional<std::filesystem::path> savePanel(const SavePanel& panel) override {
    savePanels.push_back(panel);
    return savePath;
  }

 protected:
  Answer showAlert(const Alert& question) override {
    alerts.push_back(question);
    return answer;
  }
};

}  // namespace mirvel::testdata
