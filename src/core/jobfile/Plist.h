#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/Boxed.h"
#include "core/base/Result.h"
#include "core/jobfile/FileDictionary.h"
#include "core/jobfile/InetdCompatibility.h"
#include "core/jobfile/KeepAlive.h"
#include "core/jobfile/LaunchEvents.h"
#include "core/jobfile/LimitLoadToSessionType.h"
#include "core/jobfile/MachServices.h"
#include "core/jobfile/OpaqueValues.h"
#include "core/jobfile/PlistType.h"
#include "core/jobfile/ResourceLimits.h"
#include "core/jobfile/Sockets.h"
#include "core/jobfile/StartCalendarInterval.h"
#include "core/jobfile/StringMap.h"
#include "core/jobfile/Umask.h"
#include "core/propertylist/Node.h"
#include "core/propertylist/Value.h"

namespace mirvel::jobfile {

/// The values of the key `ProcessType` that launchd knows. The record keeps any text.
enum class ProcessType { background, standard, adaptive, interactive };

inline constexpr std::array<std::string_view, 4> processTypes = {"Background", "Standard", "Adaptive", "Interactive"};

constexpr std::string_view text(ProcessType type) {
  return processTypes[static_cast<std::size_t>(type)];
}

/// The record of one launchd job file: every key that the program knows, and what it needs to keep the others. Absent
/// is a state of its own, other than false, 0 and empty. For the keys see launchd.plist(5).
///
/// A record is changed in place by whoever edits its job; `clone` makes the copies that are meant.
class Plist {
 public:
  using KeepAlive = jobfile::KeepAlive;
  using StartCalendarInterval = jobfile::StartCalendarInterval;
  using Umask = jobfile::Umask;
  using LimitLoadToSessionType = jobfile::LimitLoadToSessionType;
  using ResourceLimits = jobfile::ResourceLimits;
  using ProcessType = jobfile::ProcessType;
  using Sockets = jobfile::Sockets;
  using MachServices = jobfile::MachServices;
  using LaunchEvents = jobfile::LaunchEvents;
  using PlistType = jobfile::PlistType;
  using InetdCompatibility = jobfile::InetdCompatibility;

  /// The known keys, in the order in which they are read and written.
  enum class CodingKeys {
    name,
    disabled,
    program,
    programArguments,
    userName,
    groupName,
    limitLoadToSessionType,
    limitLoadToHardware,
    enableTransactions,
    enablePressuredExit,
    keepAlive,
    runAtLoad,
    workingDirectory,
    environmentVariables,
    umask,
    exitTimeOut,
    throttleInterval,
    initGroups,
    watchPaths,
    queueDirectories,
    startOnMount,
    startInterval,
    startCalendarInterval,
    standardInPath,
    standardOutPath,
    standardErrorPath,
    waitForDebugger,
    softResourceLimits,
    hardResourceLimits,
    nice,
    processType,
    abandonProcessGroup,
    lowPriorityIO,
    lowPriorityBackgroundIO,
    launchOnlyOnce,
    machServices,
    sockets,
    launchEvents,
    sessionCreate,
    legacyTimers,
    debug,
    enableGlobbing,
    hopefullyExitsFirst,
    hopefullyExitsLast,
    inetdCompatibility,
    limitLoadFromHosts,
    limitLoadToHosts,
    onDemand,
    rootDirectory,
    serviceIPC,
    timeOut,
    materializeDatalessFiles
  };
  /// The key as it stands in the file: "Label" of `name`.
  static std::string_view text(CodingKeys key);
  /// Exactly, with case.
  static std::optional<CodingKeys> codingKey(std::string_view text);
  /// The texts of all known keys, in their order.
  static std::span<const std::string_view> knownKeys();

  /// Reads a job file, XML or binary, with its `dictionary`. Errors are those of `propertylist::read` and of `decode`.
  static Result<Plist> read(std::string_view bytes);
  /// Makes the record of a job file's property list; `dictionary` stays absent. The first error in the order of the
  /// keys is reported, with its key path: code `MissingKey` for no label, `WrongType` for a value of the wrong type,
  /// `NoForm` for a value that has none of the forms which its key allows.
  static Result<Plist> decode(const propertylist::Node& file);
  /// Likewise in a fresh record, where it lies: a record is large. After an error it is good for nothing.
  static Result<void> decode(const propertylist::Node& file, Plist& fresh);
  /// Likewise, but a value that doesn't fit its key is no error: the key is one of the `unknownKeys` then, and its
  /// field stays absent. What remains is an error: no label, or one that is no string, and a file that isn't a
  /// dictionary.
  static Result<void> decodeTolerantly(const propertylist::Node& file, Plist& fresh);
  /// Reads a job file likewise, with its `dictionary`.
  static Result<Plist> readTolerantly(std::string_view bytes);

  /// The known keys that are present, each as the record has it.
  propertylist::Dictionary encode() const;
  /// All of the file, as a save writes it: what wasn't changed since `dictionary` was read is as it stands there, value
  /// for value, and only the rest comes from the record; see `mergeIntoFile`.
  propertylist::Dictionary encodeAll() const;
  /// The record as it was made from `dictionary`; none without it.
  std::optional<Plist> asRead() const;
  /// What stands in the file below the known keys, isn't held by a field, and wasn't removed.
  std::vector<OpaqueValue> opaqueValues() const;

  /// The record of a new job: no label, no command, run at load.
  static Plist blankPlist();

  /// Gives an empty label a value: what the command `run` is called, or else a new UUID.
  void fillEmptyLabel();

  /// Whether the job runs at times of the calendar or at intervals.
  bool isScheduled() const {
    return startInterval || (startCalendarInterval && !startCalendarInterval->intervals.empty());
  }
  /// Sets the calendar intervals. A single one keeps the form that it has in the file: a dictionary or a list.
  void setCalendarIntervals(std::optional<StartCalendarInterval> intervals);

  Plist() = default;
  Plist(Plist&&) = default;
  Plist& operator=(Plist&&) = default;
  Plist clone() const { return *this; }
  bool operator==(const Plist&) const = default;

  std::string run;                           ///< the command line as one text; made when the file is decoded
  std::optional<std::string> iconPath;       ///< where to find an icon; made when the file is decoded
  std::optional<FileDictionary> dictionary;  ///< the whole file as read; set by whoever loads it
  /// The keys of the file that aren't known, or whose value doesn't fit them. Taking one out takes it out of the file
  /// at the next save. Once the field of a known key is set, it takes the place of what stands here.
  std::optional<std::vector<std::string>> unknownKeys;
  /// The paths of opaque values that the next save takes out of the file.
  std::vector<OpaqueValue::Path> removedValues;

  std::string name;
  std::optional<bool> disabled;
  std::optional<std::string> program;
  std::optional<std::vector<std::string>> programArguments;
  std::optional<std::string> userName;
  std::optional<std::string> groupName;
  Boxed<LimitLoadToSessionType> limitLoadToSessionType;
  Boxed<StringMap<std::vector<std::string>>> limitLoadToHardware;
  std::optional<bool> enableTransactions;
  std::optional<bool> enablePressuredExit;
  Boxed<KeepAlive> keepAlive;
  std::optional<bool> runAtLoad;
  std::optional<std::string> workingDirectory;
  std::optional<StringMap<std::string>> environmentVariables;
  Boxed<Umask> umask;
  std::optional<std::int64_t> exitTimeOut;
  std::optional<std::int64_t> throttleInterval;
  std::optional<bool> initGroups;
  std::optional<std::vector<std::string>> watchPaths;
  std::optional<std::vector<std::string>> queueDirectories;
  std::optional<bool> startOnMount;
  std::optional<std::int64_t> startInterval;
  std::optional<StartCalendarInterval> startCalendarInterval;
  std::optional<std::string> standardInPath;
  std::optional<std::string> standardOutPath;
  std::optional<std::string> standardErrorPath;
  std::optional<bool> waitForDebugger;
  Boxed<ResourceLimits> softResourceLimits;
  Boxed<ResourceLimits> hardResourceLimits;
  std::optional<std::int64_t> nice;
  std::optional<std::string> processType;
  std::optional<bool> abandonProcessGroup;
  std::optional<bool> lowPriorityIO;
  std::optional<bool> lowPriorityBackgroundIO;
  std::optional<bool> launchOnlyOnce;
  Boxed<MachServices> machServices;
  Boxed<Sockets> sockets;
  Boxed<LaunchEvents> launchEvents;
  std::optional<bool> sessionCreate;
  std::optional<bool> legacyTimers;
  std::optional<bool> debug;                           ///< deprecated
  std::optional<bool> enableGlobbing;                  ///< deprecated
  std::optional<bool> hopefullyExitsFirst;             ///< deprecated
  std::optional<bool> hopefullyExitsLast;              ///< deprecated
  Boxed<InetdCompatibility> inetdCompatibility;        ///< deprecated
  Boxed<std::vector<std::string>> limitLoadFromHosts;  ///< deprecated
  Boxed<std::vector<std::string>> limitLoadToHosts;    ///< deprecated
  std::optional<bool> onDemand;                        ///< deprecated
  std::optional<std::string> rootDirectory;            ///< deprecated
  std::optional<bool> serviceIPC;                      ///< deprecated
  std::optional<std::int64_t> timeOut;                 ///< deprecated
  std::optional<bool> materializeDatalessFiles;

 private:
  propertylist::Dictionary encodeWithUnknown() const;
  propertylist::Value fileWithoutRemoved() const;

  Plist(const Plist&) = default;
  Plist& operator=(const Plist&) = default;
};

}  // namespace mirvel::jobfile
