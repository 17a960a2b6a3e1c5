#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "helpers/jobhost/JobHost.h"
#include "support/TestData.h"

namespace mirvel::testdata {

/// Keeps a list of what it was asked, as "load a.plist" or "unload org.example.a".
class FakeJobHost final : public JobHost {
 public:
  std::vector<std::string> calls;
  std::set<std::string> failing;  ///< those of the calls that fail
  std::string output;             ///< what a test job prints
  std::filesystem::path outputFile;
  std::vector<LogLine> lines;

  Result<void> start() override { return note("start"); }
  Result<void> load(const std::filesystem::path& file) override {
    if (!outputFile.empty()) std::filesystem::exists(file) ? write(outputFile) : void();
    return note("load " + file.filename().string());
  }
  Result<void> unload(const std::filesystem::path& file, const std::optional<std::string>& label) override {
    return note("unload " + label.value_or(file.filename().string()));
  }
  Result<bool> waitForEnd(const std::string& label, std::chrono::seconds limit) override {
    const auto noted = note("wait " + std::to_string(limit.count()) + " s for " + label);
    return noted ? Result<bool>(true) : noted.error();
  }
  Result<std::vector<LogLine>> log(std::chrono::seconds period, const std::string& text) override {
    const auto noted = note("log " + std::to_string(period.count()) + " s of " + text);
    return noted ? Result(lines) : noted.error();
  }

 private:
  Result<void> note(const std::string& call) {
    calls.push_back(call);
    if (failing.count(call) == 0) return {};
    return Error{.code = Error::Code::Io, .message = "the host can't " + call};
  }
  void write(const std::filesystem::path& file) const;
};

inline void FakeJobHost::write(const std::filesystem::path& file) const {
  std::FILE* stream = std::fopen(file.c_str(), "wb");
  std::fwrite(output.data(), 1, output.size(), stream);
  std::fclose(stream);
}

/// The text of a job file with a label, and a second key to tell two of them apart.
inline std::string jobText(const std::string& label, const std::string& program = "/bin/true") {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict><key>Label</key><string>" + label +
         "</string><key>Program</key><string>" + program + "</string></dict></plist>\n";
}

}  // namespace mirvel::testdata
