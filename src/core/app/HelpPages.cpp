#include "core/app/HelpPages.h"

#include <system_error>
#include <utility>

#include "core/app/AppTexts.h"
#include "core/files/URL.h"
#include "core/ports/Interface.h"
#include "core/ports/Workspace.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

constexpr const char* firstPage = "index.html";

bool isFile(const fs::path& path) {
  std::error_code failure;
  return fs::is_regular_file(path, failure);
}

}  // namespace

HelpPages::HelpPages(fs::path folder, Workspace& workspace, Interface& interface, const Localize& localize)
    : m_folder(std::move(folder)), m_workspace(workspace), m_interface(interface), m_localize(localize) {}

fs::path HelpPages::pageOf(const std::string& fragment) const {
  const bool isName = !fragment.empty() && fragment.find_first_of("/.") == std::string::npos;
  const fs::path page = m_folder / (fragment + ".html");
  return isName && isFile(page) ? page : m_folder / firstPage;
}

void HelpPages::open(const std::string& fragment) const {
  const AppTexts texts(m_localize);
  const fs::path page = pageOf(fragment);
  if (!isFile(page)) return m_interface.error(texts.helpCantBeOpened(), texts.helpIsMissing(page.string()));
  if (!m_workspace.open(URL::file(page))) {
    m_interface.error(texts.helpCantBeOpened(), texts.helpIsInFile((m_folder / firstPage).string()));
  }
}

}  // namespace mirvel
