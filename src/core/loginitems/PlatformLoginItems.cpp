#include "core/loginitems/PlatformLoginItems.h"

#include "core/loginitems/AutostartItems.h"
#include "core/loginitems/SystemEventsItems.h"

namespace mirvel {

// Both implementations are compiled and tested everywhere; only the choice depends on the platform.
#ifdef __APPLE__
std::unique_ptr<LoginItems> loginItemsOfThisMachine(const Roots& roots, const Environment&, ProcessRunner& runner,
                                                    const Commands& commands, const std::string&) {
  return std::make_unique<SystemEventsItems>(runner, commands.osascript, roots.localApplications);
}
#else
std::unique_ptr<LoginItems> loginItemsOfThisMachine(const Roots& roots, const Environment& environment, ProcessRunner&,
                                                    const Commands&, const std::string& locale) {
  return std::make_unique<AutostartItems>(roots, environment, locale);
}
#endif

}  // namespace mirvel
