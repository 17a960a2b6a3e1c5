#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/Boxed.h"
#include "core/base/Result.h"
#include "core/jobfile/FileDictionary.h"
#include "core/jobfile/KeepAlive.h"
#include "core/jobfile/LaunchEvents.h"
#include "core/jobfile/LimitLoadToSessionType.h"
#include "core/jobfile/MachServices.h"
#include "core/jobfile/OpaqueValues.h"
#include "core/jobfile/ResourceLimits.h"
#include "core/jobfile/Sockets.h"
#include "core/jobfile/StartCalendarInterval.h"
#include "core/jobfile/StringMap.h"
#include "core/propertylist/Node.h"
#include "core/propertylist/Value.h"

namespace mirvel::jobfile {

/// The values of `ProcessType` that launchd knows. The record can contain others.
inline constexpr std::array<std::string_view, 5> processTypes = {"Background", "Standard", "Adaptive", "Interactive",
                                                                 "System"};

/// The record of a launchd job file: a field for each key that the program knows, and the content of the file, so that
/// a save keeps everything else. The reference for the meaning of the keys is launchd.plist(5).
///
/// An absent key isn't the same as its default value, false, 0 or empty: fields are optional, and decoding never fills
/// in defaults. No ranges are checked; that is left to lint.
///
/// A record is edited in place. Since it is large, copies have to be made explicitly with `clone`.
class Plist {
 public:
  using KeepAlive = jobfile::KeepAlive;
  using StartCalendarInterval = jobfile::StartCalendarInterval;
  using Umask = jobfile::Umask;
  using LimitLoadToSessionType = jobfile::LimitLoadToSessionType;
  using ResourceLimits = jobfile::ResourceLimits;
  using Sockets = jobfile::Sockets;
  using MachServices = jobfile::MachServices;
  using InetdCompatibility = jobfile::InetdCompatibility;

  /// The known keys, in the order in which they are decoded and encoded. `plistKeys` has their texts and fields.
  enum class CodingKeys {
    Name,
    Disabled,
    Program,
    ProgramArguments,
    UserName,
    GroupName,
    LimitLoadToSessionType,
    LimitLoadToHardware,
    EnableTransactions,
    EnablePressuredExit,
    KeepAlive,
    RunAtLoad,
    WorkingDirectory,
    EnvironmentVariables,
    Umask,
    ExitTimeOut,
    ThrottleInterval,
    InitGroups,
    WatchPaths,
    QueueDirectories,
    StartOnMount,
    StartInterval,
    StartCalendarInterval,
    StandardInPath,
    StandardOutPath,
    StandardErrorPath,
    WaitForDebugger,
    SoftResourceLimits,
    HardResourceLimits,
    Nice,
    ProcessType,
    AbandonProcessGroup,
    LowPriorityIO,
    LowPriorityBackgroundIO,
    LaunchOnlyOnce,
    MachServices,
    Sockets,
    LaunchEvents,
    SessionCreate,
    LegacyTimers,
    Debug,
    EnableGlobbing,
    HopefullyExitsFirst,
    HopefullyExitsLast,
    InetdCompatibility,
    LimitLoadFromHosts,
    LimitLoadToHosts,
    OnDemand,
    RootDirectory,
    ServiceIPC,
    TimeOut,
    MaterializeDatalessFiles
  };
  /// The key as in the file: "Label" for `Name`.
  static std::string_view text(CodingKeys key);
  /// The key with this text, case-sensitively; none if there is none.
  static std::optional<CodingKeys> codingKey(std::string_view text);
  /// The texts of all known keys, in the order of the enumeration.
  static std::span<const std::string_view> knownKeys();

  /// Strictly decodes the root of a job file; `dictionary` isn't set. Reports the first error in the order of the keys,
  /// with its key path: `MissingKey` without a label, `WrongType` for a value of a wrong type, and `NoForm` for a value
  /// that has none of the forms its key allows.
  static Result<Plist> decode(const propertylist::Node& file);
  /// The same, except that a value that doesn't fit isn't an error: below a known key it is skipped, and if the whole
  /// value of a key doesn't fit, the field stays absent and the key is listed in `unknownKeys`. Fails only if the root
  /// isn't a dictionary or there is no label or it isn't a string. This is how the program reads jobs, since launchd
  /// ignores such values, too. `fresh` must be default-constructed; after an error its content is unspecified.
  static Result<void> decodeTolerantly(const propertylist::Node& file, Plist& fresh);
  /// Reads the text of a job file, XML or binary, and sets `dictionary`. Fails like `propertylist::read` and
  /// `decodeTolerantly`.
  static Result<Plist> readTolerantly(std::string_view bytes);

  /// The known keys that are present, from the fields alone.
  propertylist::Dictionary encode() const;
  /// The whole content of the file as a save writes it: values that weren't changed since `dictionary` was read are
  /// taken from it unchanged, and only the others from the fields; see `mergeIntoFile`. Like `encode` without
  /// `dictionary`.
  propertylist::Dictionary encodeAll() const;
  /// The value of one key as a save writes it, including what no field represents; absent if a save doesn't write the
  /// key. Much faster than `encodeAll`. Not for `StartCalendarInterval`.
  std::optional<propertylist::Value> savedValue(CodingKeys key) const;
  /// Replaces the whole value of `Sockets`, `MachServices` or `LaunchEvents`, or removes the key: a save writes exactly
  /// this dictionary, including what no field represents. The field becomes what tolerant decoding makes of it. Setting
  /// the value that the file has makes the key unchanged again. Returns false, and changes nothing, for a dictionary
  /// that would make the file exceed the limits on property lists, such as one that is nested too deeply.
  bool replaceTree(CodingKeys key, const std::optional<propertylist::Dictionary>& tree);
  /// The record as it was decoded from `dictionary`; none without it.
  std::optional<Plist> asRead() const;
  /// The values below known keys that no field represents, without those that were removed.
  std::vector<OpaqueValue> opaqueValues() const;

  /// The record of a new job: an empty label, no command, and `RunAtLoad`.
  static Plist blankPlist();

  /// Replaces an empty label by a name taken from the command line `run` or, if that isn't possible, by a new UUID.
  void fillEmptyLabel();

  /// Whether launchd restarts the job whenever it ends, without conditions.
  bool isAlwaysKeptAlive() const { return onDemand == false || (keepAlive && keepAlive->bool_ == true); }
  /// Whether the job is started by the calendar or at intervals.
  bool isScheduled() const {
    return startInterval || (startCalendarInterval && !startCalendarInterval->intervals.empty());
  }
  /// Sets the calendar intervals. A single one keeps the form that the file has, dictionary or array.
  void setCalendarIntervals(std::optional<StartCalendarInterval> intervals);

  Plist() = default;
  Plist(Plist&&) = default;
  Plist& operator=(Plist&&) = default;
  Plist clone() const { return *this; }
  bool operator==(const Plist&) const = default;

  std::string run;                           ///< the command line as one text; set by decoding
  std::optional<std::string> iconPath;       ///< the path of which to show the icon; set by decoding
  std::optional<FileDictionary> dictionary;  ///< the whole file as it was read; none for a new job
  /// The keys of the file that aren't known or whose values don't fit, in the order of the file; absent if there are
  /// none. Erasing a key removes it from the file at the next save. A known key whose field is set takes precedence
  /// over its value in the file.
  std::optional<std::vector<std::string>> unknownKeys;
  /// The opaque values that the next save removes from the file.
  std::vector<OpaqueValue::Path> removedValues;
  /// The values that `replaceTree` has set, by key and below their key, except those that the file has anyway. A save
  /// treats them as if they were in the file.
  Boxed<StringMap<FileDictionary>> replacedTrees;

  /// `Label`, the only required key. Identifies the job within a launchd domain. May be empty in a file.
  std::string name;
  /// Default: false. `launchctl enable` and `disable` override it without changing the file.
  std::optional<bool> disabled;
  /// The path of the executable. Default: the first of the arguments.
  std::optional<std::string> program;
  /// The argument vector, beginning with the name of the program.
  std::optional<std::vector<std::string>> programArguments;
  std::optional<std::string> userName;   ///< of the user to run as; only for jobs that root loads
  std::optional<std::string> groupName;  ///< likewise
  Boxed<LimitLoadToSessionType> limitLoadToSessionType;
  /// Values of sysctl(3) names, such as "model", for which the job is loaded.
  Boxed<StringMap<std::vector<std::string>>> limitLoadToHardware;
  /// The job marks its work as transactions, and can be killed without warning when it has none. Default: false.
  std::optional<bool> enableTransactions;
  /// The job may be killed when memory is short, and started again when needed. Default: false.
  std::optional<bool> enablePressuredExit;
  Boxed<KeepAlive> keepAlive;
  std::optional<bool> runAtLoad;                ///< default: false
  std::optional<std::string> workingDirectory;  ///< default: the root folder
  std::optional<StringMap<std::string>> environmentVariables;
  Boxed<Umask> umask;
  /// Seconds between SIGTERM and SIGKILL when the job is stopped; 0: it is never killed. Default: decided by the
  /// system.
  std::optional<std::int64_t> exitTimeOut;
  /// The minimum number of seconds between two starts. Default: 10.
  std::optional<std::int64_t> throttleInterval;
  /// Whether the job gets the supplementary groups of `userName`. Default: true.
  std::optional<bool> initGroups;
  std::optional<std::vector<std::string>> watchPaths;        ///< a change of any of them starts the job
  std::optional<std::vector<std::string>> queueDirectories;  ///< the job runs while any of them isn't empty
  std::optional<bool> startOnMount;                          ///< the job starts when a file system is mounted
  std::optional<std::int64_t> startInterval;                 ///< seconds between starts, at least 1
  std::optional<StartCalendarInterval> startCalendarInterval;
  std::optional<std::string> standardInPath;     ///< default: /dev/null, as for the next two
  std::optional<std::string> standardOutPath;    ///< appended to; created if it doesn't exist
  std::optional<std::string> standardErrorPath;  ///< likewise
  std::optional<bool> waitForDebugger;           ///< the job starts suspended
  Boxed<ResourceLimits> softResourceLimits;
  Boxed<ResourceLimits> hardResourceLimits;
  std::optional<std::int64_t> nice;        ///< -20 to 20; default: 0
  std::optional<std::string> processType;  ///< one of `processTypes`; default: "Standard"
  /// Whether processes that remain in the group of the job's process outlive it. Default: false, they are killed.
  std::optional<bool> abandonProcessGroup;
  std::optional<bool> lowPriorityIO;            ///< default: false
  std::optional<bool> lowPriorityBackgroundIO;  ///< the same, only while the process is throttled as background
  std::optional<bool> launchOnlyOnce;           ///< the job runs once until the next reboot; default: false
  Boxed<MachServices> machServices;
  Boxed<Sockets> sockets;
  Boxed<LaunchEvents> launchEvents;
  std::optional<bool> sessionCreate;                   ///< the job runs in a new security session
  std::optional<bool> legacyTimers;                    ///< timers aren't coalesced to save energy
  std::optional<bool> debug;                           ///< deprecated: launchd logs more about the job
  std::optional<bool> enableGlobbing;                  ///< deprecated: arguments are expanded by glob(3)
  std::optional<bool> hopefullyExitsFirst;             ///< deprecated, like the next: order at shutdown
  std::optional<bool> hopefullyExitsLast;              ///< deprecated
  Boxed<InetdCompatibility> inetdCompatibility;        ///< deprecated in favour of `Sockets`
  Boxed<std::vector<std::string>> limitLoadFromHosts;  ///< deprecated: names of hosts that don't load the job
  Boxed<std::vector<std::string>> limitLoadToHosts;    ///< deprecated: names of hosts that load it
  /// Deprecated. False keeps the job alive unconditionally, whatever `keepAlive` says; see `isAlwaysKeptAlive`.
  std::optional<bool> onDemand;
  std::optional<std::string> rootDirectory;  ///< deprecated: the folder to chroot(2) into
  std::optional<bool> serviceIPC;            ///< deprecated, without effect
  std::optional<std::int64_t> timeOut;       ///< deprecated: seconds of idleness before the job is stopped
  /// Whether reading a file that is stored in the cloud downloads it. Default: decided by the system.
  std::optional<bool> materializeDatalessFiles;

 private:
  static bool decodeKey(CodingKeys key, const propertylist::Node& value, Plist& plist);
  propertylist::Dictionary encodeWithUnknown() const;
  propertylist::Value fileToMergeInto() const;
  void setTreesAsDecoded(propertylist::Dictionary& values) const;
  const propertylist::Node* findInFile(std::string_view key) const;
  void discardValue(CodingKeys key);

  Plist(const Plist&) = default;
  Plist& operator=(const Plist&) = default;
};

}  // namespace mirvel::jobfile
