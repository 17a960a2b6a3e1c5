#include "core/creation/ApplicationList.h"

#include "core/app/Program.h"
#include "core/text/Strings.h"

namespace mirvel {

ApplicationList::ApplicationList(Program& program) : m_program(program), m_delay(program.platform.mainQueue) {}

void ApplicationList::find(std::function<void()> found) {
  m_isFinding = true;
  auto deliver = m_delay.whileOwned([this, found = std::move(found)](std::vector<InstalledApplication> applications) {
    m_isFinding = false;
    m_all = std::move(applications);
    found();
  });
  m_program.platform.fileQueue.add(
      [&foundation = m_program.foundation, &queue = m_program.platform.mainQueue, deliver = std::move(deliver)] {
        auto applications = installedApplications(foundation.environment, foundation.roots.home,
                                                  foundation.localize.locale(), foundation.collator);
        queue.post([deliver, applications = std::move(applications)] { deliver(applications); });
      });
}

std::vector<const InstalledApplication*> ApplicationList::matching(std::string_view text) const {
  const std::string wanted = String::fold(text);
  std::vector<const InstalledApplication*> result;
  for (const auto& application : m_all) {
    if (String::fold(application.name).find(wanted) != std::string::npos) result.push_back(&application);
  }
  return result;
}

}  // namespace mirvel
