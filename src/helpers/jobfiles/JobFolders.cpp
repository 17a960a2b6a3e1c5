#include "helpers/jobfiles/JobFolders.h"

#include <algorithm>
#include <iterator>

#include "core/text/Ascii.h"

namespace mirvel {

namespace fs = std::filesystem;

bool isUuid(std::string_view text) {
  constexpr std::string_view form = "00000000-0000-0000-0000-000000000000";
  const auto fits = [](char c, char at) { return at == '-' ? c == '-' : Ascii::hexValue(c).has_value(); };
  return text.size() == form.size() && std::equal(text.begin(), text.end(), form.begin(), fits);
}

JobFolders::JobFolders(std::vector<fs::path> folders, std::vector<fs::path> agents)
    : m_ownJobs(std::move(folders)), m_folders(m_ownJobs) {
  m_folders.insert(m_folders.end(), std::make_move_iterator(agents.begin()), std::make_move_iterator(agents.end()));
}

JobFolders JobFolders::ofUser(const Roots& roots) {
  return JobFolders({*Kind(Kind::userAgent).folderURL(roots)});
}

JobFolders JobFolders::ofMachine(const Roots& roots) {
  std::vector<fs::path> daemons, agents;
  for (const Kind kind : Kind::allCases) {
    if (kind.isDaemon()) daemons.push_back(*kind.folderURL(roots));
    if (kind.isAgentOfEveryone()) agents.push_back(*kind.folderURL(roots));
  }
  return JobFolders(std::move(daemons), std::move(agents));
}

bool JobFolders::holds(const fs::path& file) const {
  return std::find(m_folders.begin(), m_folders.end(), file.parent_path()) != m_folders.end() || isInOwnFolder(file);
}

bool JobFolders::isInOwnFolder(const fs::path& file) const {
  if (!isUuid(file.stem().native())) return false;
  return std::find(m_folders.begin(), m_folders.end(), file.parent_path().parent_path()) != m_folders.end();
}

}  // namespace mirvel
