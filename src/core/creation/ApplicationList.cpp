#include "core/creation/ApplicationList.h"

#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "core/text/Strings.h"

namespace mirvel {

ApplicationList::ApplicationList(const Foundation& foundation, const Platform& platform)
    : m_foundation(foundation), m_platform(platform), m_delay(platform.mainQueue) {}

void ApplicationList::find(std::function<void()> found) {
  m_isFinding = true;
  auto deliver = m_delay.whileOwned([this, found = std::move(found)](std::vector<InstalledApplication> applications) {
    m_isFinding = false;
    m_all = std::move(applications);
    found();
  });
  m_platform.fileQueue.add([&foundation = m_foundation, &queue = m_platform.mainQueue, deliver = std::move(deliver)] {
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
