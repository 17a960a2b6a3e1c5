#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "core/ports/Workspace.h"

namespace mirvel::testdata {

/// A desktop with configurable applications and user name that records what it was asked to do.
class FakeWorkspace final : public Workspace {
 public:
  std::map<std::string, std::string> applications;  ///< paths by name
  std::map<std::string, std::string> displayNames;  ///< by path; others are shown by their file name
  std::set<std::string> damagedImages;              ///< file names
  std::string userName = "Ada Lovelace";
  bool opens = true;                    ///< whether files can be opened and revealed
  std::vector<std::string> calls = {};  ///< such as "reveal /a/b"

  bool open(const URL& url) override { return note("open " + url.text()) && opens; }
  bool openAddress(const std::string& address) override { return note("openAddress " + address); }
  bool reveal(const URL& file) override { return note("reveal " + file.text()) && opens; }
  std::optional<std::string> fullPathForApplication(const std::string& name) override {
    const auto found = applications.find(name);
    return found == applications.end() ? std::nullopt : std::optional(found->second);
  }
  std::string displayName(const std::filesystem::path& path) override {
    const auto found = displayNames.find(path);
    return found == displayNames.end() ? path.filename().string() : found->second;
  }
  std::optional<Image> image(const std::filesystem::path& file) override {
    if (damagedImages.contains(file.filename())) return std::nullopt;
    return Image::file(file);
  }
  std::string fullUserName() override { return userName; }
  void copy(const std::string& text, const std::optional<URL>& file) override {
    note("copy " + (file ? file->text() + ": " : std::string()) + text);
  }
  void beep() override { note("beep"); }

 private:
  bool note(const std::string& call) {
    calls.push_back(call);
    return true;
  }
};

}  // namespace mirvel::testdata
