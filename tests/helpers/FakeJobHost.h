#pragma once

#include <fstream>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "core/propertylist/Reader.h"
#include "helpers/jobhost/JobHost.h"
#include "support/JobText.h"
#include "support/TestData.h"

namespace mirvel::testdata {

/// Records its calls, such as "load a.plist" and "unload org.example.a".
class FakeJobHost final : public JobHost {
 public:
  std::vector<std::string> calls;
  std::set<std::string> failing;  ///< the calls that fail
  std::function<void(const std::string& call)> onCall = [](const std::string&) {};
  std::string output;  ///< of the jobs that are loaded temporarily
  Ended ended{.hasEnded = true};
  std::vector<messages::LogLine> lines;

  Result<void> start() override { return note("start"); }
  Result<void> quit() override { return note("quit"); }
  Result<void> load(const std::filesystem::path& file) override { return note("load " + file.filename().string()); }
  Result<void> loadTemporarily(const std::filesystem::path& file) override {
    const auto job = propertylist::readDictionary(bytes(file));
    outputFile = job ? *job->get<std::string>("StandardOutPath") : std::string();
    return load(file);
  }
  Result<void> unload(const std::filesystem::path& file, const std::optional<std::string>& label) override {
    return note("unload " + label.value_or(file.filename().string()));
  }
  Result<Ended> waitForEnd(const std::string& label, std::chrono::seconds limit) override {
    const auto noted = note("wait " + std::to_string(limit.count()) + " s for " + label);
    if (noted && !output.empty()) std::ofstream(outputFile, std::ios::binary) << output;
    return noted ? Result(ended) : noted.error();
  }
  Result<void> control(const std::filesystem::path& file, const std::string& label,
                       messages::Control::Order order) override {
    constexpr const char* names[] = {"start ", "stop ", "restart "};
    return note(names[static_cast<int>(order)] + label + " of " + file.filename().string());
  }
  Result<messages::LogLines> log(const messages::LogQuery& query, Cancellation&) override {
    const auto noted = note("log " + std::to_string(query.period.count()) + " s of " + query.searchString);
    return noted ? Result(messages::LogLines{.lines = lines}) : noted.error();
  }

 private:
  std::string outputFile;

  Result<void> note(const std::string& call) {
    calls.push_back(call);
    onCall(call);
    if (failing.count(call) == 0) return {};
    return Error{.code = Error::Code::Io, .message = "the host can't " + call};
  }
};

/// The body of a request to write a job file, and to load it (kind 1); `old` is where the file was before, if it moves.
inline propertylist::Dictionary writeRequest(int kind, const std::filesystem::path& to, const std::string& content,
                                             const std::filesystem::path& old = {}) {
  propertylist::Dictionary request{{"kind", kind}, {"path", to.string()}, {"string", content}};
  if (!old.empty()) request.set("deletePath", old.string());
  return request;
}

inline propertylist::Dictionary deleteRequest(const std::filesystem::path& file) {
  return {{"kind", 2}, {"deletePath", file.string()}};
}

}  // namespace mirvel::testdata
