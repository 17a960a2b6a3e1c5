#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/ports/Interface.h"

namespace mirvel::testdata {

/// A user who always gives the same answers, with a record of the questions.
class FakeInterface : public Interface {
 public:
  using Interface::Interface;

  Answer answer;
  std::optional<std::filesystem::path> savePath;
  std::vector<Alert> alerts = {};
  std::optional<std::filesystem::path> openPath;
  std::function<void()> whileOpenPanelIsShown = [] {};
  std::vector<SavePanel> savePanels = {};
  std::vector<OpenPanel> openPanels = {};
  std::vector<std::pair<std::string, std::string>> errors = {};
  std::vector<std::pair<Alert, std::function<void(int)>>> sheets = {};

  /// Answers the oldest open sheet.
  void answerSheet(int button) {
    const auto completion = std::move(sheets.front().second);
    sheets.erase(sheets.begin());
    completion(button);
  }

  void beginSheet(const Alert& question, std::function<void(int)> completion) override {
    sheets.emplace_back(question, std::move(completion));
  }
  void error(const std::string& message, const std::string& informativeText) override {
    errors.emplace_back(message, informativeText);
  }
  std::optional<std::filesystem::path> savePanel(const SavePanel& panel) override {
    savePanels.push_back(panel);
    return savePath;
  }
  std::optional<std::filesystem::path> openPanel(const OpenPanel& panel) override {
    openPanels.push_back(panel);
    whileOpenPanelIsShown();
    return openPath;
  }

 protected:
  Answer showAlert(const Alert& question) override {
    alerts.push_back(question);
    return answer;
  }
};

}  // namespace mirvel::testdata
