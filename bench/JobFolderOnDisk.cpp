#include "JobFolderOnDisk.h"

#include <cstdlib>
#include <fstream>

#include "JobFiles.h"
#include "core/process/SystemProcessRunner.h"

namespace mirvel::bench {

namespace fs = std::filesystem;

namespace {

class NoLoginItems final : public LoginItems {
 public:
  std::vector<Listed> listed() override { return {}; }
  std::vector<Bundled> bundled() override { return {}; }
  Result<void> remove(const LoginItem&) override { return {}; }
};

fs::path newFolder() {
  std::string name = (fs::temp_directory_path() / "mirvel-bench-XXXXXX").native();
  return ::mkdtemp(name.data());
}

}  // namespace

JobFolderOnDisk::JobFolderOnDisk(std::size_t count) : m_folder(newFolder()) {
  const fs::path agents = roots().userLibrary / "LaunchAgents";
  fs::create_directories(agents);
  const auto yesterday = fs::file_time_type::clock::now() - std::chrono::hours(24);
  for (std::size_t i = 0; i < count; ++i) {
    const fs::path file = agents / ("job" + std::to_string(i) + ".plist");
    std::ofstream(file, std::ios::binary) << generated().xml[i];
    fs::last_write_time(file, yesterday);
    m_paths.push_back(file.native());
  }
}

JobFolderOnDisk::~JobFolderOnDisk() {
  std::error_code failure;
  fs::remove_all(m_folder, failure);
}

Roots JobFolderOnDisk::roots() const {
  return Roots::ofLinux(m_folder, {});
}

struct Scanner::Parts {
  SystemProcessRunner runner{{}};
  EmbeddedList embeddedList{runner, "/bin/launchctl"};
  NoLoginItems loginItems;
  SilentConsole console;
  std::unique_ptr<ScanTools> tools;
};

Scanner::Scanner(const JobFolderOnDisk& folder)
    : m_foundation(folder.roots(), {}, {}, "en"), m_parts(std::make_unique<Parts>()) {}

Scanner::~Scanner() = default;

Jobs Scanner::coldScan() {
  m_parts->tools = std::make_unique<ScanTools>(ScanTools{.collator = m_foundation.collator,
                                                         .loginItems = m_parts->loginItems,
                                                         .embeddedList = m_parts->embeddedList,
                                                         .console = m_parts->console});
  return rescan();
}

Jobs Scanner::rescan() {
  FetchOperation operation({}, m_foundation.scanSettings(), *m_parts->tools);
  operation.main();
  return operation.jobs.value_or(Jobs());
}

}  // namespace mirvel::bench
