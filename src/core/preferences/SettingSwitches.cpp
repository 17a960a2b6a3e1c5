#include "core/preferences/SettingSwitches.h"

#include "core/ports/Interface.h"
#include "core/preferences/PreferencesTexts.h"

namespace mirvel::SettingSwitches {

namespace {

using Key = Defaults::Key;

bool mayEditSystemJobs(Interface& interface, const Localize& localize) {
  const PreferencesTexts texts(localize);
  return interface.alert({.message = texts.editSystemJobsQuestion(),
                          .informativeText = texts.editSystemJobsWarning(),
                          .defaultTitle = texts.allow(),
                          .alternateTitle = localize.cancel(),
                          .safeButton = Interface::alternateButton}) == Interface::defaultButton;
}

}  // namespace

std::vector<SettingGroup> general(const Localize& localize) {
  const PreferencesTexts texts(localize);
  return {{.title = texts.newJobs(),
           .switches = {{Key::automaticHelp, texts.repairCommands(), texts.repairCommandsHint()},
                        {Key::automaticPATH, texts.writePATH(), texts.writePATHHint()}}},
          {.title = texts.jobs(),
           .switches = {{Key::checkJobs, texts.checkJobs(), texts.checkJobsHint()},
                        {Key::showInvalidData, texts.markMissingFiles()}}},
          {.title = texts.window(),
           .switches = {{Key::showTitleBar, texts.showTitleBar()}, {Key::showLineNumbers, texts.showLineNumbers()}}},
          {.title = texts.updates(), .switches = {{Key::automaticallyCheckForUpdate, texts.checkForUpdates()}}}};
}

SettingSwitch showInternalHelpers(const Localize& localize) {
  return {Key::showInternalHelpers, PreferencesTexts(localize).showInternalHelpers()};
}

SettingGroup systemJobs(const Localize& localize) {
  const PreferencesTexts texts(localize);
  return {.title = texts.systemJobs(),
          .switches = {{Key::showSystemJobs, texts.showSystemJobs()},
                       {Key::editSystemJobs, texts.editSystemJobs(), texts.editSystemJobsWarning(), true}}};
}

bool set(std::string_view key, bool isOn, Defaults& defaults, Interface& interface, const Localize& localize) {
  const bool isRisky = key == Key::editSystemJobs && isOn && !defaults.editSystemJobs();
  if (!isRisky || mayEditSystemJobs(interface, localize)) (void)defaults.set(key, isOn);  // the store reports failures
  return defaults.boolean(key);
}

}  // namespace mirvel::SettingSwitches
