#pragma once

#include "core/jobfile/Keys.h"
#include "core/jobfile/Plist.h"

namespace mirvel::jobfile {

/// The keys of a job file.
inline constexpr auto plistKeys = [] {
  using K = Plist::CodingKeys;
  return std::tuple{
      Key{K::name, "Label", &Plist::name},
      Key{K::disabled, "Disabled", &Plist::disabled},
      Key{K::program, "Program", &Plist::program},
      Key{K::programArguments, "ProgramArguments", &Plist::programArguments},
      Key{K::userName, "UserName", &Plist::userName},
      Key{K::groupName, "GroupName", &Plist::groupName},
      Key{K::limitLoadToSessionType, "LimitLoadToSessionType", &Plist::limitLoadToSessionType},
      Key{K::limitLoadToHardware, "LimitLoadToHardware", &Plist::limitLoadToHardware},
      Key{K::enableTransactions, "EnableTransactions", &Plist::enableTransactions},
      Key{K::enablePressuredExit, "EnablePressuredExit", &Plist::enablePressuredExit},
      Key{K::keepAlive, "KeepAlive", &Plist::keepAlive},
      Key{K::runAtLoad, "RunAtLoad", &Plist::runAtLoad},
      Key{K::workingDirectory, "WorkingDirectory", &Plist::workingDirectory},
      Key{K::environmentVariables, "EnvironmentVariables", &Plist::environmentVariables},
      Key{K::umask, "Umask", &Plist::umask},
      Key{K::exitTimeOut, "ExitTimeOut", &Plist::exitTimeOut},
      Key{K::throttleInterval, "ThrottleInterval", &Plist::throttleInterval},
      Key{K::initGroups, "InitGroups", &Plist::initGroups},
      Key{K::watchPaths, "WatchPaths", &Plist::watchPaths},
      Key{K::queueDirectories, "QueueDirectories", &Plist::queueDirectories},
      Key{K::startOnMount, "StartOnMount", &Plist::startOnMount},
      Key{K::startInterval, "StartInterval", &Plist::startInterval},
      Key{K::startCalendarInterval, "StartCalendarInterval", &Plist::startCalendarInterval},
      Key{K::standardInPath, "StandardInPath", &Plist::standardInPath},
      Key{K::standardOutPath, "StandardOutPath", &Plist::standardOutPath},
      Key{K::standardErrorPath, "StandardErrorPath", &Plist::standardErrorPath},
      Key{K::waitForDebugger, "WaitForDebugger", &Plist::waitForDebugger},
      Key{K::softResourceLimits, "SoftResourceLimits", &Plist::softResourceLimits},
      Key{K::hardResourceLimits, "HardResourceLimits", &Plist::hardResourceLimits},
      Key{K::nice, "Nice", &Plist::nice},
      Key{K::processType, "ProcessType", &Plist::processType},
      Key{K::abandonProcessGroup, "AbandonProcessGroup", &Plist::abandonProcessGroup},
      Key{K::lowPriorityIO, "LowPriorityIO", &Plist::lowPriorityIO},
      Key{K::lowPriorityBackgroundIO, "LowPriorityBackgroundIO", &Plist::lowPriorityBackgroundIO},
      Key{K::launchOnlyOnce, "LaunchOnlyOnce", &Plist::launchOnlyOnce},
      Key{K::machServices, "MachServices", &Plist::machServices},
      Key{K::sockets, "Sockets", &Plist::sockets},
      Key{K::launchEvents, "LaunchEvents", &Plist::launchEvents},
      Key{K::sessionCreate, "SessionCreate", &Plist::sessionCreate},
      Key{K::legacyTimers, "LegacyTimers", &Plist::legacyTimers},
      Key{K::debug, "Debug", &Plist::debug},
      Key{K::enableGlobbing, "EnableGlobbing", &Plist::enableGlobbing},
      Key{K::hopefullyExitsFirst, "HopefullyExitsFirst", &Plist::hopefullyExitsFirst},
      Key{K::hopefullyExitsLast, "HopefullyExitsLast", &Plist::hopefullyExitsLast},
      Key{K::inetdCompatibility, "inetdCompatibility", &Plist::inetdCompatibility},
      Key{K::limitLoadFromHosts, "LimitLoadFromHosts", &Plist::limitLoadFromHosts},
      Key{K::limitLoadToHosts, "LimitLoadToHosts", &Plist::limitLoadToHosts},
      Key{K::onDemand, "OnDemand", &Plist::onDemand},
      Key{K::rootDirectory, "RootDirectory", &Plist::rootDirectory},
      Key{K::serviceIPC, "ServiceIPC", &Plist::serviceIPC},
      Key{K::timeOut, "TimeOut", &Plist::timeOut},
      Key{K::materializeDatalessFiles, "MaterializeDatalessFiles", &Plist::materializeDatalessFiles},
  };
}();
static_assert(isComplete(plistKeys, Plist::CodingKeys::materializeDatalessFiles));

}  // namespace mirvel::jobfile
