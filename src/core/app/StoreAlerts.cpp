#include "core/app/StoreAlerts.h"

#include "core/app/AppTexts.h"
#include "core/ports/Console.h"
#include "core/ports/Interface.h"

namespace mirvel {

namespace {

Alert alertAbout(const StoreTrouble& trouble, const Localize& localize) {
  const std::string reason = trouble.error.text();
  switch (trouble.kind) {
    case StoreTrouble::Kind::Damaged:
      return {.message = AppTexts(localize).ownFileWasDamaged(),
              .informativeText = AppTexts(localize).ownFileWasRenamed(reason, trouble.rescue.string()),
              .defaultTitle = localize.ok()};
    case StoreTrouble::Kind::Unread:
      return {.message = AppTexts(localize).ownFileCantBeRead(),
              .informativeText = AppTexts(localize).ownFileIsLeftAlone(reason),
              .defaultTitle = localize.ok()};
    case StoreTrouble::Kind::Unwritten:
      break;
  }
  return {.message = AppTexts(localize).ownFileCantBeWritten(),
          .informativeText = AppTexts(localize).ownFileStaysInMemory(reason),
          .defaultTitle = localize.ok()};
}

}  // namespace

StoreAlerts::StoreAlerts(StoreTroubles& troubles, Interface& interface, Console& console, MainQueue& queue,
                         const Localize& localize)
    : m_troubles(troubles), m_interface(interface), m_console(console), m_localize(localize), m_delay(queue) {
  m_troubles.setListener([this](const StoreTrouble& trouble) { report(trouble); });
}

StoreAlerts::~StoreAlerts() {
  m_troubles.setListener(nullptr);
}

void StoreAlerts::report(const StoreTrouble& trouble) {
  m_console.log(trouble.error.text());
  // Deferred, because the trouble may come up while any code reads a setting.
  m_delay(0, [this, alert = alertAbout(trouble, m_localize)] { m_interface.beginSheet(alert, [](int) {}); });
}

}  // namespace mirvel
