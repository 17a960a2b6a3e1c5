#include "JobFiles.h"

#include <plist/plist.h>

#include <algorithm>
#include <filesystem>
#include <random>

#include "core/files/ReadFile.h"
#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"

namespace mirvel::bench {

namespace {

using propertylist::Value;

bool libplistReads(const std::string& xml) {
  plist_t list = nullptr;
  plist_from_xml(xml.data(), static_cast<std::uint32_t>(xml.size()), &list);
  plist_free(list);
  return list != nullptr;
}

void add(JobFiles& files, std::string bytes) {
  const auto document = propertylist::read(bytes);
  if (!document || document->format() != propertylist::Format::Xml || !libplistReads(bytes)) return;
  files.binary.push_back(propertylist::writeBinary(document->value()));
  files.xml.push_back(std::move(bytes));
}

JobFiles readCorpus() {
  JobFiles files;
  const std::filesystem::path folder = std::filesystem::path(MIRVEL_TESTDATA) / "corpus";
  std::error_code missing;
  for (const auto& entry : std::filesystem::directory_iterator(folder, missing)) {
    if (entry.path().extension() != ".plist") continue;
    if (auto bytes = readFile(entry.path(), propertylist::Limits::bytes)) add(files, *std::move(bytes));
  }
  return files;
}

/// Generates job files with about the same frequency of keys as published ones.
class Generator {
 public:
  std::string jobFile() {
    const std::string label = "org.example." + word() + '.' + word() + std::to_string(number(1, 9999));
    propertylist::Dictionary job{{"Label", label}, {"ProgramArguments", arguments()}};
    if (chance(50)) job.set("RunAtLoad", chance(80));
    if (chance(33)) job.set("KeepAlive", keepAlive());
    if (chance(30)) job.set("StandardErrorPath", path() + ".err");
    if (chance(30)) job.set("StandardOutPath", path() + ".log");
    if (chance(15)) job.set("WorkingDirectory", path());
    if (chance(15))
      job.set("EnvironmentVariables",
              propertylist::Dictionary{{"PATH", "/usr/local/bin:/usr/bin:/bin"}, {"HOME", path()}});
    if (chance(20)) job.set("StartCalendarInterval", calendar());
    if (chance(15)) job.set("StartInterval", number(1, 720) * 60);
    if (chance(15)) job.set("MachServices", propertylist::Dictionary{{label, true}});
    if (chance(10)) job.set("WatchPaths", propertylist::Array{path(), path()});
    if (chance(10)) job.set("Nice", number(-20, 20));
    if (chance(8)) job.set("Sockets", sockets());
    if (chance(5)) job.set("X-Notes", "made for \u00e4 caf\u00e9 & <others>");
    return *propertylist::writeXml(job);
  }

 private:
  int number(int least, int most) { return std::uniform_int_distribution(least, most)(m_random); }
  bool chance(int percent) { return number(1, 100) <= percent; }
  std::string word() {
    static constexpr const char* words[] = {"backup", "sync", "mail", "index", "agent", "update", "helper", "watch"};
    return words[number(0, 7)];
  }
  std::string path() { return "/Users/someone/Library/" + word() + '/' + word() + '-' + word(); }
  propertylist::Array arguments() {
    propertylist::Array result{"/usr/local/bin/" + word()};
    for (int i = number(0, 4); i > 0; --i) result.emplace_back(chance(50) ? "--" + word() : path());
    return result;
  }
  Value keepAlive() {
    if (chance(70)) return true;
    return propertylist::Dictionary{{"SuccessfulExit", false}, {"PathState", propertylist::Dictionary{{path(), true}}}};
  }
  Value calendar() {
    propertylist::Array days;
    for (int day = number(1, 5); day > 0; --day)
      days.emplace_back(propertylist::Dictionary{{"Hour", number(0, 23)}, {"Minute", number(0, 59)}, {"Weekday", day}});
    return days.size() == 1 ? days.front() : Value(days);
  }
  Value sockets() {
    return propertylist::Dictionary{
        {"Listeners",
         propertylist::Dictionary{{"SockServiceName", "http"}, {"SockType", "stream"}, {"SockFamily", "IPv4"}}}};
  }

  std::mt19937 m_random{20261121};
};

JobFiles generate() {
  JobFiles files;
  Generator generator;
  for (int i = 0; i < 10000; ++i) add(files, generator.jobFile());
  return files;
}

std::size_t totalSize(const std::vector<std::string>& texts) {
  std::size_t size = 0;
  for (const std::string& text : texts) size += text.size();
  return size;
}

}  // namespace

std::size_t JobFiles::xmlBytes() const {
  return totalSize(xml);
}

std::size_t JobFiles::binaryBytes() const {
  return totalSize(binary);
}

const JobFiles& corpus() {
  static const JobFiles files = readCorpus();
  return files;
}

const JobFiles& generated() {
  static const JobFiles files = generate();
  return files;
}

}  // namespace mirvel::bench
