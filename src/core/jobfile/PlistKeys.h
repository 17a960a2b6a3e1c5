#pragma once

#include "core/jobfile/Keys.h"
#include "core/jobfile/Plist.h"

namespace mirvel::jobfile {

/// The keys of a job file: the one table from which the record is decoded and encoded, and from which the editor and
/// lint take their keys. A new key needs an enumerator and a field in `Plist` and a row here.
///
/// The type of the field determines the type in the file:
/// - `bool`: a boolean; numbers and strings aren't accepted;
/// - `std::int64_t`: an integer, or a real without a fraction;
/// - `std::string`: a string;
/// - `std::vector` and `StringMap`: an array and a dictionary, with the above as elements;
/// - other types: what their headers document.
///
/// Meaning, unit, range and default of each key are documented at its field.
inline constexpr auto plistKeys = [] {
  using K = Plist::CodingKeys;
  return std::tuple{
      Key{K::Name, "Label", &Plist::name},
      Key{K::Disabled, "Disabled", &Plist::disabled},
      Key{K::Program, "Program", &Plist::program},
      Key{K::ProgramArguments, "ProgramArguments", &Plist::programArguments},
      Key{K::UserName, "UserName", &Plist::userName},
      Key{K::GroupName, "GroupName", &Plist::groupName},
      Key{K::LimitLoadToSessionType, "LimitLoadToSessionType", &Plist::limitLoadToSessionType},
      Key{K::LimitLoadToHardware, "LimitLoadToHardware", &Plist::limitLoadToHardware},
      Key{K::EnableTransactions, "EnableTransactions", &Plist::enableTransactions},
      Key{K::EnablePressuredExit, "EnablePressuredExit", &Plist::enablePressuredExit},
      Key{K::KeepAlive, "KeepAlive", &Plist::keepAlive},
      Key{K::RunAtLoad, "RunAtLoad", &Plist::runAtLoad},
      Key{K::WorkingDirectory, "WorkingDirectory", &Plist::workingDirectory},
      Key{K::EnvironmentVariables, "EnvironmentVariables", &Plist::environmentVariables},
      Key{K::Umask, "Umask", &Plist::umask},
      Key{K::ExitTimeOut, "ExitTimeOut", &Plist::exitTimeOut},
      Key{K::ThrottleInterval, "ThrottleInterval", &Plist::throttleInterval},
      Key{K::InitGroups, "InitGroups", &Plist::initGroups},
      Key{K::WatchPaths, "WatchPaths", &Plist::watchPaths},
      Key{K::QueueDirectories, "QueueDirectories", &Plist::queueDirectories},
      Key{K::StartOnMount, "StartOnMount", &Plist::startOnMount},
      Key{K::StartInterval, "StartInterval", &Plist::startInterval},
      Key{K::StartCalendarInterval, "StartCalendarInterval", &Plist::startCalendarInterval},
      Key{K::StandardInPath, "StandardInPath", &Plist::standardInPath},
      Key{K::StandardOutPath, "StandardOutPath", &Plist::standardOutPath},
      Key{K::StandardErrorPath, "StandardErrorPath", &Plist::standardErrorPath},
      Key{K::WaitForDebugger, "WaitForDebugger", &Plist::waitForDebugger},
      Key{K::SoftResourceLimits, "SoftResourceLimits", &Plist::softResourceLimits},
      Key{K::HardResourceLimits, "HardResourceLimits", &Plist::hardResourceLimits},
      Key{K::Nice, "Nice", &Plist::nice},
      Key{K::ProcessType, "ProcessType", &Plist::processType},
      Key{K::AbandonProcessGroup, "AbandonProcessGroup", &Plist::abandonProcessGroup},
      Key{K::LowPriorityIO, "LowPriorityIO", &Plist::lowPriorityIO},
      Key{K::LowPriorityBackgroundIO, "LowPriorityBackgroundIO", &Plist::lowPriorityBackgroundIO},
      Key{K::LaunchOnlyOnce, "LaunchOnlyOnce", &Plist::launchOnlyOnce},
      Key{K::MachServices, "MachServices", &Plist::machServices},
      Key{K::Sockets, "Sockets", &Plist::sockets},
      Key{K::LaunchEvents, "LaunchEvents", &Plist::launchEvents},
      Key{K::SessionCreate, "SessionCreate", &Plist::sessionCreate},
      Key{K::LegacyTimers, "LegacyTimers", &Plist::legacyTimers},
      Key{K::Debug, "Debug", &Plist::debug},
      Key{K::EnableGlobbing, "EnableGlobbing", &Plist::enableGlobbing},
      Key{K::HopefullyExitsFirst, "HopefullyExitsFirst", &Plist::hopefullyExitsFirst},
      Key{K::HopefullyExitsLast, "HopefullyExitsLast", &Plist::hopefullyExitsLast},
      Key{K::InetdCompatibility, "inetdCompatibility", &Plist::inetdCompatibility},
      Key{K::LimitLoadFromHosts, "LimitLoadFromHosts", &Plist::limitLoadFromHosts},
      Key{K::LimitLoadToHosts, "LimitLoadToHosts", &Plist::limitLoadToHosts},
      Key{K::OnDemand, "OnDemand", &Plist::onDemand},
      Key{K::RootDirectory, "RootDirectory", &Plist::rootDirectory},
      Key{K::ServiceIPC, "ServiceIPC", &Plist::serviceIPC},
      Key{K::TimeOut, "TimeOut", &Plist::timeOut},
      Key{K::MaterializeDatalessFiles, "MaterializeDatalessFiles", &Plist::materializeDatalessFiles},
  };
}();
static_assert(isComplete(plistKeys, Plist::CodingKeys::MaterializeDatalessFiles));

}  // namespace mirvel::jobfile
