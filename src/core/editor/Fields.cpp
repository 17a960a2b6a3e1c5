#include "core/editor/Fields.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "core/editor/EditorTexts.h"
#include "core/editor/KeyAccess.h"
#include "core/locale/Localize.h"

namespace mirvel {

namespace {

using jobfile::KeepAlive;
using jobfile::Plist;
using Key = Plist::CodingKeys;
using Control = Field::Control;
using Section = StackSection;

// The columns of the tables.

using Text = TableFormat::Text;

constexpr Text nameText = [](const Localize& localize) { return localize.name(); };
constexpr Text limitText = [](const Localize& localize) { return EditorTexts(localize).limit(); };
constexpr Text valueText = [](const Localize& localize) { return EditorTexts(localize).value(); };
constexpr Text numberText = [](const Localize& localize) { return EditorTexts(localize).number(); };

constexpr TableFormat::Column textColumn[] = {{}};
constexpr TableFormat::Column pathColumn[] = {{.isPath = true}};
constexpr TableFormat::Column fixedColumn[] = {{.isEditable = false}};
constexpr TableFormat::Column variableColumns[] = {
    {.title = nameText, .placeholder = nameText, .forbidden = "="},
    {.title = valueText, .placeholder = valueText},
};
constexpr TableFormat::Column hardwareColumns[] = {
    {.title = nameText, .isRequired = true, .initial = "model"},
    {.title = valueText, .isRequired = true, .placeholder = valueText},
};
constexpr TableFormat::Column limitColumns[] = {
    {.title = limitText, .isEditable = false},
    {.title = valueText, .isNumber = true, .placeholder = numberText},
};

// The choices of menus.

constexpr TableFormat::MenuItem sessionTypes[] = {
    {"Aqua", "Has access to all GUI services, much like a login item."},
    {"Background", "Runs in a context that’s the parent of all contexts for a given user."},
    {"LoginWindow", "Runs in the loginwindow context."},
    {"StandardIO", "Runs only in non-GUI login sessions (most notably, SSH login sessions)."},
};

constexpr TableFormat::MenuItem limitItems[] = {
    {"Core", "The largest size (in bytes) core file that may be created."},
    {"CPU", "The maximum amount of cpu time (in seconds) to be used by each process."},
    {"Data",
     "The maximum size (in bytes) of the data segment for a process; this defines how far a program may extend its "
     "break with the sbrk(2) system call."},
    {"FileSize", "The largest size (in bytes) file that may be created."},
    {"MemoryLock", "The maximum size (in bytes) which a process may lock into memory using the mlock(2) function."},
    {"NumberOfFiles",
     "The maximum number of open files for this process. Setting this value in a system wide daemon will set the "
     "sysctl(3) kern.maxfiles (SoftResourceLimits) or kern.maxfilesperproc (HardResourceLimits) value in addition to "
     "the setrlimit(2) values."},
    {"NumberOfProcesses",
     "The maximum number of simultaneous processes for this UID. Setting this value in a system wide daemon will set "
     "the sysctl(3) kern.maxproc (SoftResourceLimits) or kern.maxprocperuid (HardResourceLimits) value in addition to "
     "the setrlimit(2) values."},
    {"ResidentSetSize",
     "The maximum size (in bytes) to which a process’s resident set size may grow. This imposes a limit on the amount "
     "of physical memory to be given to a process; if memory is tight, the system will prefer to take memory from "
     "processes that are exceeding their declared resident set size."},
    {"Stack",
     "The maximum size (in bytes) of the stack segment for a process; this defines how far a program’s stack segment "
     "may be extended. Stack extension is performed automatically by the system."},
};

constexpr TableFormat limitTable{
    .columns = limitColumns, .isDictionary = true, .adding = TableFormat::Adding::Menu, .menu = limitItems};
constexpr std::string_view limitHelp =
    "Resource limits to be imposed on the job. These adjust variables set with setrlimit(2).";

constexpr Field::Choice processTypeChoices[] = {
    {"Background",
     "Background jobs are generally processes that do work that was not directly requested by the user. The resource "
     "limits applied to Background jobs are intended to prevent them from disrupting the user experience."},
    {"Standard", "Standard jobs are equivalent to no ProcessType being set."},
    {"Adaptive",
     "Adaptive jobs move between the Background and Interactive classifications based on activity over XPC "
     "connections. See xpc_transaction_begin(3) for details."},
    {"Interactive",
     "Interactive jobs run with the same resource limitations as apps, that is to say, none. Interactive jobs are "
     "critical to maintaining a responsive user experience, and this key should only be used if an app’s ability to be "
     "responsive depends on it, and cannot be made Adaptive."},
    {"System", "System jobs are parts of the operating system. launchd applies no limits to them."},
};

template <Key key>
constexpr Field row(Section section, Field field = {}, FieldAccess access = access::OfKey<key>::functions) {
  field.section = section;
  if (field.key.empty()) field.key = access::keyRow<key>.text;
  field.access = access;
  return field;
}

template <KeepAlive::CodingKeys key, auto condition>
constexpr Field conditionRow(Field field) {
  field.section = Section::When;
  field.key = KeepAlive::text(key);
  field.access = access::OfCondition<key, condition>::functions;
  return field;
}

constexpr Field allRows[] = {
    row<Key::Disabled>(
        Section::General,
        {.control = Control::CheckBox,
         .help = "This optional key specifies whether the job should be loaded by default. Note that this key may be "
                 "overridden through the enable subcommand of launchctl(3).",
         .title = [](const Localize& localize) { return localize.enabled(); },
         .ifAbsent = true,
         .keywords = "load off"},
        access::negated<Key::Disabled>()),
    {.section = Section::General,
     .key = "Label",
     .access = access::label,
     .control = Control::Text,
     .help = "Label: This required key uniquely identifies the job to launchd.",
     .title = [](const Localize& localize) { return localize.name(); },
     .isRequired = true,
     .keywords = "identifier"},
    row<Key::RunAtLoad>(
        Section::When,
        {.control = Control::CheckBox,
         .help = "RunAtLoad: This optional key is used to control whether your job is launched once at the time the "
                 "job is loaded.",
         .title = [](const Localize& localize) { return localize.atStartupAndWhenSaving(); },
         .keywords = "login boot"}),
    {.section = Section::When,
     .key = "KeepAlive",
     .access = access::keepAlive,
     .control = Control::CheckBox,
     .help = "KeepAlive: This optional key is used to control whether your job is to be kept continuously running or "
             "to let demand and conditions control the invocation. The default is false and therefore only demand "
             "will start the job. The value may be set to true to unconditionally keep the job alive. Alternatively, "
             "a dictionary of conditions may be specified to selectively control whether launchd keeps a job alive or "
             "not. If multiple keys are provided, launchd ORs them, thus providing maximum flexibility to the job to "
             "refine the logic and stall if necessary.",
     .title = [](const Localize& localize) { return localize.launchAgainIfItCrashes(); },
     .optionClick = Field::OptionClick::WritesFalse,
     .keywords = "restart daemon"},
    row<Key::StartOnMount>(
        Section::When,
        {.control = Control::CheckBox,
         .help = "StartOnMount: This optional key causes the job to be started every time a filesystem is mounted.",
         .title = [](const Localize& localize) { return EditorTexts(localize).mountingLogicalVolume(); },
         .keywords = "disk file system"}),
    row<Key::StandardErrorPath>(
        Section::Paths,
        {.control = Control::File,
         .help = "This optional key specifies that the given path should be mapped to the job’s stderr(4), and that "
                 "any writes to the job’s stderr(4) will go to the given file.",
         .keywords = "log output stderr"}),
    row<Key::StandardInPath>(
        Section::Paths,
        {.control = Control::File,
         .help = "This optional key specifies that the given path should be mapped to the job’s stdin(4), and that the "
                 "contents of that file will be readable from the job’s stdin(4).",
         .keywords = "input stdin"}),
    row<Key::StandardOutPath>(
        Section::Paths,
        {.control = Control::File,
         .help = "This optional key specifies that the given path should be mapped to the job’s stdout(4), and that "
                 "any writes to the job’s stdout(4) will go to the given file.",
         .keywords = "log output stdout"}),
    row<Key::WorkingDirectory>(
        Section::Paths,
        {.control = Control::Folder,
         .help = "This optional key is used to specify a directory to chdir(2) to before running the job.",
         .keywords = "current folder cwd"}),
    row<Key::QueueDirectories>(
        Section::Paths,
        {.control = Control::Table,
         .help = "This optional key keeps the job alive as long as the directory or directories specified are not "
                 "empty.",
         .table = {.columns = pathColumn, .adding = TableFormat::Adding::FolderPanel},
         .keywords = "watched folder"},
        access::paths<Key::QueueDirectories>()),
    row<Key::WatchPaths>(
        Section::Paths,
        {.control = Control::Table,
         .help = "This optional key causes the job to be started if any one of the listed paths are modified.",
         .table = {.columns = pathColumn, .adding = TableFormat::Adding::FilePanel},
         .keywords = "watched file folder change"},
        access::paths<Key::WatchPaths>()),
    row<Key::LowPriorityIO>(
        Section::Limits,
        {.control = Control::CheckBox,
         .help = "This optional key specifies whether the kernel should consider this daemon to be low priority when "
                 "doing filesystem I/O.",
         .keywords = "disk"}),
    row<Key::LowPriorityBackgroundIO>(
        Section::Limits,
        {.control = Control::CheckBox,
         .help = "This optional key specifies whether the kernel should consider this daemon to be low priority when "
                 "doing filesystem I/O when the process is throttled with the Darwin-background classification.",
         .keywords = "disk"}),
    row<Key::LaunchOnlyOnce>(
        Section::Limits,
        {.control = Control::CheckBox,
         .help = "This optional key specifies whether the job can only be run once and only once. In other words, if "
                 "the job cannot be safely respawned without a full machine reboot, then set this key to be true.",
         .keywords = "single run"}),
    row<Key::Nice>(Section::Limits,
                   {.control = Control::Slider,
                    .help = "This optional key specifies what nice(3) value should be applied to the daemon.",
                    .placeholder = "0",
                    .lowest = -20,
                    .highest = 20,
                    .keywords = "priority cpu"}),
    row<Key::ThrottleInterval>(
        Section::Limits,
        {.control = Control::Number,
         .help = "This key lets one override the default throttling policy imposed on jobs by launchd. The value is in "
                 "seconds, and by default, jobs will not be spawned more than once every 10 seconds.",
         .placeholder = "10",
         .keywords = "restart seconds"}),
    row<Key::ProcessType>(
        Section::Limits,
        {.control = Control::PopUp,
         .help = "This optional key describes, at a high level, the intended purpose of the job. The system will apply "
                 "resource limits based on what kind of job it is. If left unspecified, the system will apply light "
                 "resource limits to the job, throttling its CPU usage and I/O bandwidth. This classification is "
                 "preferable to using the HardResourceLimits, SoftResourceLimits and Nice keys.",
         .choices = processTypeChoices,
         .keywords = "priority cpu background interactive"}),
    row<Key::LimitLoadToSessionType>(
        Section::Limits,
        {.control = Control::Table,
         .help = "This configuration file only applies to sessions of the type(s) specified. This key only applies to "
                 "jobs which are agents. There are no distinct sessions in the privileged system context.",
         .scope = Field::Scope::Agents,
         .table = {.columns = fixedColumn, .adding = TableFormat::Adding::Menu, .menu = sessionTypes},
         .keywords = "Aqua Background LoginWindow StandardIO login ssh"}),
    row<Key::LimitLoadToHardware>(
        Section::Limits,
        {.control = Control::Table,
         .help = "This configuration file only applies to the hardware listed in the ’model’ subdomain of the ’hw’ "
                 "sysctl(3) domain. Each value of the value defines valid values for the job to load.",
         .table = {.columns = hardwareColumns, .isDictionary = true, .hasLists = true},
         .keywords = "model machine sysctl"}),
    row<Key::SoftResourceLimits>(Section::Limits,
                                 {.control = Control::Table,
                                  .help = limitHelp,
                                  .table = limitTable,
                                  .keywords = "setrlimit ulimit memory cpu files processes stack core"}),
    row<Key::HardResourceLimits>(Section::Limits,
                                 {.control = Control::Table,
                                  .help = limitHelp,
                                  .table = limitTable,
                                  .keywords = "setrlimit ulimit memory cpu files processes stack core"}),
    row<Key::InitGroups>(
        Section::Root,
        {.control = Control::CheckBox,
         .help = "This optional key specifies whether initgroups(3) to initialize the group list for the job. The "
                 "default is true. This key will be ignored if the UserName key is not set.",
         .ifAbsent = true,
         .optionClick = Field::OptionClick::WritesFalse,
         .scope = Field::Scope::Daemons,
         .keywords = "root user"}),
    row<Key::UserName>(
        Section::Root,
        {.control = Control::Text,
         .help = "This optional key specifies the user to run the job as. This key is only applicable for services "
                 "that are loaded into the privileged system domain.",
         .scope = Field::Scope::Daemons,
         .keywords = "root account"}),
    row<Key::GroupName>(
        Section::Root,
        {.control = Control::Text,
         .help = "This optional key specifies the group to run the job as. This key is only applicable for services "
                 "that are loaded into the privileged system domain. If UserName is set and GroupName is not, then "
                 "the group will be set to the primary group of the user.",
         .scope = Field::Scope::Daemons,
         .keywords = "root account"}),
    row<Key::AbandonProcessGroup>(
        Section::Miscellaneous,
        {.control = Control::CheckBox,
         .help = "When a job dies, launchd kills any remaining processes with the same process group ID as the job. "
                 "Setting this key to true disables that behavior.",
         .keywords = "children kill"}),
    row<Key::EnablePressuredExit>(
        Section::Miscellaneous,
        {.control = Control::CheckBox,
         .help = "This key opts the job into the system’s Pressured Exit facility. Use of this key implies "
                 "EnableTransactions, and also lets the system consider process eligible for reclamation under memory "
                 "pressure when it’s inactive. See xpc_main(3) for details. Jobs that opt into Pressured Exit will be "
                 "automatically relaunched if they exit or crash while holding open transactions. NOTE: launchd(8) "
                 "does not respect EnablePressuredExit for jobs that have KeepAlive set to true.",
         .keywords = "memory"}),
    row<Key::EnableTransactions>(
        Section::Miscellaneous,
        {.control = Control::CheckBox,
         .help = "This key instructs launchd that the job uses xpc_transaction_begin(3) and xpc_transaction_end(3) to "
                 "track outstanding transactions. When a process has an outstanding transaction, it is considered "
                 "active, otherwise inactive. A transaction is automatically created when an XPC message expecting a "
                 "reply is received, until the reply is sent or the request message is discarded. When launchd stops "
                 "an active process, it sends SIGTERM first, and then SIGKILL after a reasonable timeout. If the "
                 "process is inactive, SIGKILL is sent immediately.",
         .keywords = "xpc idle"}),
    row<Key::LegacyTimers>(
        Section::Miscellaneous,
        {.control = Control::CheckBox,
         .help = "This optional key controls the behavior of timers created by the job. By default timers created by "
                 "launchd jobs are coalesced. Batching the firing of timers with similar deadlines improves the "
                 "overall energy efficiency of the system. If this key is set to true, timers created by the job will "
                 "opt into less efficient but more precise behavior and not be coalesced with other timers. This key "
                 "may have no effect if the job’s ProcessType is not set to Interactive.",
         .keywords = "energy"}),
    row<Key::MaterializeDatalessFiles>(
        Section::Miscellaneous,
        {.control = Control::ThreeStateBox,
         .help = "This optional key specifies the dataless file materialization policy. Setting this key to true "
                 "causes dataless files to be materialized. Setting this key to false causes dataless files to not be "
                 "materialized. If this key is not set, the default system policy for dataless files will be used. See "
                 "setiopolicy_np(3).",
         .keywords = "cloud download"}),
    row<Key::SessionCreate>(
        Section::Miscellaneous,
        {.control = Control::CheckBox,
         .help = "This key specifies that the job should be spawned into a new security audit session rather than the "
                 "default session for the context is belongs to.",
         .keywords = "security"}),
    row<Key::WaitForDebugger>(
        Section::Miscellaneous,
        {.control = Control::CheckBox,
         .help = "This optional key specifies that launchd should launch the job in a suspended state so that a "
                 "debugger can be attached to the process as early as possible (at the first instruction).",
         .keywords = "suspend"}),
    row<Key::ExitTimeOut>(
        Section::Miscellaneous,
        {.control = Control::Number,
         .help = "The amount of time launchd waits between sending the SIGTERM signal and before sending a SIGKILL "
                 "signal when the job is to be stopped. The default value is system-defined. The value zero is "
                 "interpreted as infinity and should not be used, as it can stall system shutdown forever.",
         .keywords = "stop kill seconds"}),
    row<Key::Umask>(
        Section::Miscellaneous,
        {.control = Control::Mask,
         .help = "This optional key specifies what value should be passed to umask(2) before running the job.",
         .placeholder = "022",
         .keywords = "permissions mode chmod octal"}),
    row<Key::EnvironmentVariables>(
        Section::EnvironmentVariables,
        {.control = Control::Table,
         .help = "This optional key is used to specify additional environmental variables to be set before running the "
                 "job. Each key in the dictionary is the name of an environment variable, with the corresponding value "
                 "being a string representing the desired value. NOTE: Values other than strings will be ignored.",
         .table = {.columns = variableColumns, .isDictionary = true, .hasVariables = true},
         .fillsSection = true,
         .keywords = "PATH secret password token"}),
    row<Key::Debug>(Section::Deprecated),
    row<Key::EnableGlobbing>(Section::Deprecated),
    row<Key::OnDemand>(Section::Deprecated),
    row<Key::ServiceIPC>(Section::Deprecated),
    row<Key::TimeOut>(Section::Deprecated),
    row<Key::HopefullyExitsFirst>(Section::Deprecated),
    row<Key::HopefullyExitsLast>(Section::Deprecated),
    row<Key::RootDirectory>(Section::Deprecated),
    row<Key::LimitLoadFromHosts>(Section::Deprecated),
    row<Key::LimitLoadToHosts>(Section::Deprecated),
    row<Key::InetdCompatibility>(Section::Deprecated),
};
static_assert(std::is_sorted(std::begin(allRows), std::end(allRows),
                             [](const Field& a, const Field& b) { return a.section < b.section; }));

using Condition = KeepAlive::CodingKeys;

constexpr Field conditionRows[] = {
    conditionRow<Condition::Crashed, &KeepAlive::crashed>(
        {.control = Control::ThreeStateBox,
         .help = "KeepAlive - Crashed: If true, the the job will be restarted as long as it exited due to a signal "
                 "which is typically associated with a crash (SIGILL, SIGSEGV, etc.). If false, the job will be "
                 "restarted in the inverse condition.",
         .keywords = "restart signal"}),
    conditionRow<Condition::SuccessfulExit, &KeepAlive::successfulExit>(
        {.control = Control::ThreeStateBox,
         .help = "KeepAlive - SuccessfulExit: If true, the job will be restarted as long as the program exits and with "
                 "an exit status of zero. If false, the job will be restarted in the inverse condition.",
         .keywords = "restart status failure"}),
    conditionRow<Condition::NetworkState, &KeepAlive::networkState>(
        {.control = Control::ThreeStateBox,
         .help = "KeepAlive - NetworkState: If true, the job is kept alive as long as a network is up; if false, as "
                 "long as none is. Current versions of launchd ignore this key.",
         .keywords = "restart internet connection"}),
    conditionRow<Condition::AfterInitialDemand, &KeepAlive::afterInitialDemand>(
        {.control = Control::CheckBox,
         .help = "KeepAlive - AfterInitialDemand: If true, the other conditions apply only after the job has been "
                 "started on demand for the first time.",
         .keywords = "first start"}),
    conditionRow<Condition::PathState, &KeepAlive::pathState>(
        {.control = Control::Table,
         .help = "KeepAlive - PathState: Each key in this dictionary is a file-system path. If the value of the key is "
                 "true, then the job will be kept alive as long as the path exists. If false, the job will be kept "
                 "alive in the inverse condition.",
         .table =
             {.columns = pathColumn, .hasBox = true, .isDictionary = true, .adding = TableFormat::Adding::FilePanel},
         .keywords = "restart file folder exists"}),
    conditionRow<Condition::OtherJobEnabled, &KeepAlive::otherJobEnabled>(
        {.control = Control::Table,
         .help = "KeepAlive - OtherJobEnabled: Each key in this dictionary is the name of another job. If the value is "
                 "true, then the job will be kept alive as long as one of the specified other jobs is loaded.",
         .table = {.columns = textColumn, .hasBox = true, .isDictionary = true},
         .keywords = "restart dependency"}),
};

}  // namespace

std::span<const Field> allFields() {
  return allRows;
}

std::span<const Field> fieldsOf(StackSection section) {
  const auto [first, last] = std::equal_range(std::begin(allRows), std::end(allRows), Field{.section = section},
                                              [](const Field& a, const Field& b) { return a.section < b.section; });
  return {first, last};
}

std::span<const Field> keepAliveFields() {
  return conditionRows;
}

const Field& fieldOf(std::string_view key) {
  for (const auto fields : {allFields(), keepAliveFields()}) {
    const auto found =
        std::find_if(fields.begin(), fields.end(), [key](const Field& field) { return field.key == key; });
    if (found != fields.end()) return *found;
  }
  throw std::logic_error("no such field");
}

std::string titleOf(const Field& field, const Localize& localize) {
  return field.title ? field.title(localize) : std::string(field.key);
}

bool appliesTo(const Field& field, Kind kind) {
  if (field.scope == Field::Scope::AllJobs) return true;
  return kind.isDaemon() == (field.scope == Field::Scope::Daemons);
}

bool isNumber(const Field& field) {
  return field.control == Control::Number || field.control == Control::Slider || field.control == Control::Mask;
}

}  // namespace mirvel
