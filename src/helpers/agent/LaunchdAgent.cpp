#include "helpers/agent/LaunchdAgent.h"

#include <chrono>
#include <system_error>

#include "core/catalogue/Checksum.h"
#include "core/catalogue/Kind.h"
#include "core/files/ReplaceFile.h"
#include "core/notifications/ChangeNotes.h"
#include "core/propertylist/Writer.h"
#include "core/text/Strings.h"

namespace mirvel::agent {

namespace fs = std::filesystem;

fs::path LaunchdAgent::fileOf(std::string_view identifier) const {
  return *Kind(Kind::userAgent).folderURL(m_setup.roots) / (std::string(identifier) + ".plist");
}

Result<ProcessResult> LaunchdAgent::launchctl(const std::vector<std::string>& arguments) const {
  return m_setup.runner.run(m_setup.launchctl, arguments, std::chrono::seconds(30));
}

bool LaunchdAgent::isEnabled(std::string_view identifier) {
  std::error_code failure;
  if (!fs::exists(fileOf(identifier), failure)) return false;
  const auto printed = launchctl({"print-disabled", domain()});
  if (!printed) return true;
  // Lines such as `"app.mirvel.agent" => disabled`; older systems write `true`.
  const std::string begin = '"' + std::string(identifier) + "\" => ";
  for (const std::string_view text : String::split(printed->output, '\n')) {
    const std::string_view line = String::trim(text);
    if (!line.starts_with(begin)) continue;
    const std::string_view state = line.substr(begin.size());
    if (state == "disabled" || state == "true") return false;
  }
  return true;
}

Result<void> LaunchdAgent::setEnabled(std::string_view identifier, bool isEnabled) {
  const std::string service = domain() + "/" + std::string(identifier);
  (void)launchctl({"bootout", service});  // fails if it isn't loaded
  if (!isEnabled) return remove(identifier);
  if (auto written = write(identifier); !written) return written;
  (void)launchctl({"enable", service});  // a failure shows when it is loaded
  const auto loaded = launchctl({"bootstrap", domain(), fileOf(identifier)});
  if (!loaded) return loaded.error();
  if (loaded->exitStatus == 0) return {};
  return Error{.code = Error::Code::Io,
               .message = "launchd can't load it: " + std::string(String::trim(loaded->complaints, true)),
               .file = fileOf(identifier)};
}

Result<void> LaunchdAgent::write(std::string_view identifier) const {
  const propertylist::Array command{m_setup.agent.native(), "--program", m_setup.program.native()};
  const auto text = propertylist::writeXml(propertylist::Dictionary{{"Label", identifier},
                                                                    {"LimitLoadToSessionType", "Aqua"},
                                                                    {"ProcessType", "Background"},
                                                                    {"ProgramArguments", command},
                                                                    {"RunAtLoad", true}});
  if (!text) return text.error();
  const fs::path file = fileOf(identifier);
  std::error_code failure;
  fs::create_directories(file.parent_path(), failure);  // on failure, writing reports the reason
  // So that the agent doesn't announce itself; at worst, it does.
  (void)ChangeNotes(m_setup.roots.ownChanges(), ChangeNotes::Readers::User)
      .add({.user = m_setup.user, .path = file, .checksum = Checksum::ofFile(*text).text()});
  return replaceFile(file, *text);
}

Result<void> LaunchdAgent::remove(std::string_view identifier) const {
  const fs::path file = fileOf(identifier);
  (void)ChangeNotes(m_setup.roots.ownChanges(), ChangeNotes::Readers::User)
      .add({.user = m_setup.user, .path = file, .isRemoval = true});
  std::error_code failure;
  fs::remove(file, failure);
  return failure ? Result<void>(systemError(failure.value(), "delete", file)) : Result<void>();
}

}  // namespace mirvel::agent
