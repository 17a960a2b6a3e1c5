#include "core/catalogue/EmbeddedList.h"

#include <chrono>
#include <utility>

#include "core/catalogue/MachO.h"
#include "core/process/Commands.h"
#include "core/propertylist/OldStyleText.h"
#include "core/propertylist/Reader.h"

namespace mirvel {

namespace {

std::string textInFile(const std::filesystem::path& executable) {
  const auto section = infoPlistSection(executable);
  if (!section) return {};
  const auto document = propertylist::read(*section);
  if (!document) return {};
  auto text = propertylist::oldStyleText(document->root());
  return text ? *std::move(text) : std::string();
}

}  // namespace

EmbeddedList::EmbeddedList(ProcessRunner& runner, std::string launchctl)
    : m_runner(runner), m_launchctl(std::move(launchctl)), m_hasLaunchctl(isProgram(m_launchctl)) {}

std::string EmbeddedList::text(const std::filesystem::path& executable) const {
  if (!m_hasLaunchctl) return textInFile(executable);
  // A scan waits for the tool.
  constexpr std::chrono::seconds limit(60);
  auto result = m_runner.run(m_launchctl, {"plist", "__TEXT,__info_plist", executable.string()}, limit);
  // The exit status is ignored: HelperToolLines accepts any output.
  return result ? std::move(result->output) : std::string();
}

}  // namespace mirvel
