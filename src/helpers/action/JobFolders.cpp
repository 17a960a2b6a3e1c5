#include "helpers/action/JobFolders.h"

#include <algorithm>

namespace mirvel {

namespace fs = std::filesystem;

bool isUuid(std::string_view text) {
  constexpr std::string_view form = "00000000-0000-0000-0000-000000000000";
  const auto fits = [](char c, char at) {
    constexpr std::string_view digits = "0123456789abcdefABCDEF";
    return at == '-' ? c == '-' : digits.find(c) != std::string_view::npos;
  };
  return text.size() == form.size() && std::equal(text.begin(), text.end(), form.begin(), fits);
}

JobFolders JobFolders::ofUser(const Roots& roots) {
  return JobFolders({*Kind(Kind::userAgent).folderURL(roots)});
}

JobFolders JobFolders::ofMachine(const Roots& roots) {
  std::vector<fs::path> folders;
  for (const Kind kind : Kind::allCases) {
    if (kind.isLaunchd() && kind != Kind::userAgent) folders.push_back(*kind.folderURL(roots));
  }
  return JobFolders(std::move(folders));
}

bool JobFolders::isInOwnFolder(const fs::path& file) const {
  if (!isUuid(file.stem().native())) return false;
  return std::find(m_folders.begin(), m_folders.end(), file.parent_path().parent_path()) != m_folders.end();
}

}  // namespace mirvel
