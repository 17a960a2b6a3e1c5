#include "core/editor/Fields.h"

#include <algorithm>
#include <array>
#include <concepts>
#include <stdexcept>
#include <tuple>
#include <utility>

#include "core/editor/EditorTexts.h"
#include "core/jobfile/PlistKeys.h"
#include "core/locale/Localize.h"
#include "core/schedule/NumberText.h"
#include "core/text/Digits.h"

namespace mirvel {

namespace {

using jobfile::KeepAlive;
using jobfile::Plist;
using propertylist::Value;
using Key = Plist::CodingKeys;
using Control = Field::Control;
using Section = StackSection;

// Values of each type for the read-only view.

Value shown(bool value, const ValueTexts& /*texts*/) {
  return value;
}

Value shown(std::int64_t value, const ValueTexts& texts) {
  return texts.number(value);
}

Value shown(const std::string& value, const ValueTexts& /*texts*/) {
  return value;
}

Value shown(const std::vector<std::string>& value, const ValueTexts& /*texts*/) {
  return joinedLines(value);
}

Value shown(const Plist::LimitLoadToSessionType& value, const ValueTexts& /*texts*/) {
  return joinedLines(value.types);
}

Value shown(const jobfile::StringMap<std::vector<std::string>>& value, const ValueTexts& /*texts*/) {
  std::vector<std::string> lines;
  for (const auto& [key, values] : value) lines.insert(lines.end(), values.begin(), values.end());
  return joinedLines(lines);
}

Value shown(const Plist::ResourceLimits& value, const ValueTexts& texts) {
  using Limits = Plist::ResourceLimits;
  using K = Limits::CodingKeys;
  std::vector<std::string> lines;
  const auto add = [&](K key, std::optional<std::int64_t> limit) {
    if (limit) lines.push_back(texts.line(std::string(Limits::text(key)), texts.number(*limit)));
  };
  add(K::Core, value.core);
  add(K::Cpu, value.cpu);
  add(K::Data, value.data);
  add(K::FileSize, value.fileSize);
  add(K::MemoryLock, value.memoryLock);
  add(K::NumberOfFiles, value.numberOfFiles);
  add(K::NumberOfProcesses, value.numberOfProcesses);
  add(K::ResidentSetSize, value.residentSetSize);
  add(K::Stack, value.stack);
  return joinedLines(lines);
}

std::optional<Value> shown(const Plist::Umask& value, const ValueTexts& /*texts*/) {
  return value.int_ ? std::optional<Value>(Octal::displayString(*value.int_)) : std::nullopt;
}

Value shown(const Plist::InetdCompatibility& value, const ValueTexts& texts) {
  jobfile::StringMap<std::string> entries;
  for (const auto& [key, isOn] : value.bools) entries.emplace(key, texts.boolean(isOn));
  for (const auto& [key, number] : value.integers) entries.emplace(key, texts.number(number));
  std::vector<std::string> lines;
  for (const auto& [key, text] : entries) lines.push_back(texts.line(key, text));
  return joinedLines(lines);
}

Value shownPaths(const std::vector<std::string>& paths, const ValueTexts& texts) {
  std::vector<std::string> lines;
  for (const std::string& path : paths) {
    if (!path.empty()) lines.push_back(texts.path(path));
  }
  return joinedLines(lines);
}

// Conversion between values of the record and values of fields.

template <typename T>
struct ValueOf;
template <typename T>
requires std::same_as<T, bool> || std::same_as<T, std::int64_t> || std::same_as<T, std::string>
struct ValueOf<T> {
  static FieldValue read(const T& value) { return value; }
  static void write(std::optional<T>& field, const FieldValue& value) {
    if (const T* const own = std::get_if<T>(&value)) field = *own;
  }
};
template <typename T>
requires std::same_as<T, jobfile::StringMap<bool>> || std::same_as<T, jobfile::StringMap<std::string>> ||
    std::same_as<T, std::vector<std::string>>
struct ValueOf<T> {
  static FieldValue read(const T& value) { return rowsOf(value); }
  static void write(std::optional<T>& field, const FieldValue& value) {
    if (const auto* const rows = std::get_if<std::vector<TableRow>>(&value)) fromRows(*rows, field);
  }
};

template <typename T>
FieldValue readField(const std::optional<T>& field) {
  if (!field) return {};
  return ValueOf<T>::read(*field);
}

template <typename T>
void writeField(std::optional<T>& field, const FieldValue& value) {
  if (std::holds_alternative<std::monostate>(value)) {
    field.reset();
  } else {
    ValueOf<T>::write(field, value);
  }
}

template <Key key>
constexpr const auto& keyRow = std::get<static_cast<std::size_t>(key)>(jobfile::plistKeys);

/// The access to a key of the record by the type of its member.
template <Key key>
struct Access {
  static bool isSet(const Plist& plist) { return (plist.*keyRow<key>.field).has_value(); }
  static void remove(Plist& plist) { (plist.*keyRow<key>.field).reset(); }
  static std::optional<Value> display(const Plist& plist, const ValueTexts& texts) {
    if (!isSet(plist)) return std::nullopt;
    return shown(*(plist.*keyRow<key>.field), texts);
  }
  static FieldValue read(const Plist& plist) {
    if constexpr (requires { readField(plist.*keyRow<key>.field); }) {
      return readField(plist.*keyRow<key>.field);
    } else {
      return {};
    }
  }
  static void write(Plist& plist, const FieldValue& value) {
    if constexpr (requires { writeField(plist.*keyRow<key>.field, value); }) {
      writeField(plist.*keyRow<key>.field, value);
    }
  }

  static constexpr FieldAccess functions{isSet, remove, display, read, write};
};

template <Key key>
constexpr FieldAccess paths() {
  FieldAccess result = Access<key>::functions;
  result.display = [](const Plist& plist, const ValueTexts& texts) -> std::optional<Value> {
    const auto& field = plist.*keyRow<key>.field;
    if (!field || field->empty()) return std::nullopt;
    return shownPaths(*field, texts);
  };
  return result;
}

/// For a box that is off if the key is true.
template <Key key>
constexpr FieldAccess negated() {
  FieldAccess result = Access<key>::functions;
  result.read = [](const Plist& plist) -> FieldValue {
    const auto& field = plist.*keyRow<key>.field;
    return field ? FieldValue(!*field) : FieldValue();
  };
  result.write = [](Plist& plist, const FieldValue& value) {
    const bool* const isOn = std::get_if<bool>(&value);
    writeField(plist.*keyRow<key>.field, isOn ? FieldValue(!*isOn) : FieldValue());
  };
  return result;
}

constexpr FieldAccess label{
    .isSet = [](const Plist&) { return true; },
    .remove = [](Plist& plist) { plist.name.clear(); },
    .display = [](const Plist& plist, const ValueTexts&) -> std::optional<Value> { return plist.name; },
    .read = [](const Plist& plist) -> FieldValue { return plist.name; },
    .write =
        [](Plist& plist, const FieldValue& value) {
          const auto* const text = std::get_if<std::string>(&value);
          plist.name = text ? *text : std::string();
        }};

/// The box that keeps a job alive. It is on if the key exists, whatever its value; off removes the key and its
/// conditions.
constexpr FieldAccess keepAlive{
    .isSet = [](const Plist& plist) { return plist.keepAlive.has_value(); },
    .remove = [](Plist& plist) { plist.keepAlive.reset(); },
    .display = [](const Plist&, const ValueTexts&) -> std::optional<Value> { return std::nullopt; },
    .read = [](const Plist& plist) -> FieldValue { return plist.keepAlive.has_value(); },
    .write =
        [](Plist& plist, const FieldValue& value) {
          plist.keepAlive.reset();
          if (value == FieldValue(true)) plist.keepAlive.emplace().bool_ = true;
        }};

/// The plain value for a key that has lost its last condition: that of the file, or true.
std::optional<bool> plainKeepAlive(const Plist& plist) {
  const auto read = plist.asRead();
  return read && read->keepAlive ? read->keepAlive->bool_ : true;
}

/// A condition of `KeepAlive`. Writing it replaces the plain value.
template <auto condition>
struct ConditionAccess {
  static bool isSet(const Plist& plist) { return plist.keepAlive && (*plist.keepAlive.*condition).has_value(); }
  static void remove(Plist& plist) { write(plist, {}); }
  static std::optional<Value> display(const Plist&, const ValueTexts&) { return std::nullopt; }
  static FieldValue read(const Plist& plist) {
    if (!plist.keepAlive) return {};
    return readField(*plist.keepAlive.*condition);
  }
  static void write(Plist& plist, const FieldValue& value) {
    if (!plist.keepAlive) plist.keepAlive.emplace();
    plist.keepAlive->bool_.reset();
    writeField(*plist.keepAlive.*condition, value);
    const bool isTable = std::holds_alternative<std::vector<TableRow>>(value);
    if (isTable && *plist.keepAlive == KeepAlive()) plist.keepAlive->bool_ = plainKeepAlive(plist);
  }

  static constexpr FieldAccess functions{isSet, remove, display, read, write};
};

// The columns of the tables.

constexpr TableFormat::Column textColumn[] = {{}};
constexpr TableFormat::Column pathColumn[] = {{.isPath = true}};

template <Key key>
constexpr Field row(Section section, Field field = {}, FieldAccess access = Access<key>::functions) {
  field.section = section;
  if (field.key.empty()) field.key = keyRow<key>.text;
  field.access = access;
  return field;
}

constexpr Field allRows[] = {
    row<Key::Disabled>(
        Section::General,
        {.control = Control::CheckBox,
         .help = "This optional key specifies whether the job should be loaded by default. Note that this key may be "
                 "overridden through the enable subcommand of launchctl(3).",
         .title = [](const Localize& localize) { return localize.enabled(); },
         .ifAbsent = true},
        negated<Key::Disabled>()),
    {.section = Section::General,
     .key = "Label",
     .access = label,
     .control = Control::Text,
     .help = "Label: This required key uniquely identifies the job to launchd.",
     .title = [](const Localize& localize) { return localize.name(); },
     .isRequired = true},
    row<Key::RunAtLoad>(
        Section::When,
        {.control = Control::CheckBox,
         .help = "RunAtLoad: This optional key is used to control whether your job is launched once at the time the "
                 "job is loaded.",
         .title = [](const Localize& localize) { return localize.atStartupAndWhenSaving(); }}),
    {.section = Section::When,
     .key = "KeepAlive",
     .access = keepAlive,
     .control = Control::CheckBox,
     .help = "KeepAlive: This optional key is used to control whether your job is to be kept continuously running or "
             "to let demand and conditions control the invocation. The default is false and therefore only demand "
             "will start the job. The value may be set to true to unconditionally keep the job alive. Alternatively, "
             "a dictionary of conditions may be specified to selectively control whether launchd keeps a job alive or "
             "not. If multiple keys are provided, launchd ORs them, thus providing maximum flexibility to the job to "
             "refine the logic and stall if necessary.",
     .title = [](const Localize& localize) { return localize.launchAgainIfItCrashes(); },
     .optionClick = Field::OptionClick::WritesFalse},
    row<Key::StartOnMount>(
        Section::When,
        {.control = Control::CheckBox,
         .help = "StartOnMount: This optional key causes the job to be started every time a filesystem is mounted.",
         .title = [](const Localize& localize) { return EditorTexts(localize).mountingLogicalVolume(); }}),
    row<Key::StandardErrorPath>(Section::Paths),
    row<Key::StandardInPath>(Section::Paths),
    row<Key::StandardOutPath>(Section::Paths),
    row<Key::WorkingDirectory>(Section::Paths),
    row<Key::QueueDirectories>(Section::Paths, {}, paths<Key::QueueDirectories>()),
    row<Key::WatchPaths>(Section::Paths, {}, paths<Key::WatchPaths>()),
    row<Key::LowPriorityIO>(Section::Limits),
    row<Key::LowPriorityBackgroundIO>(Section::Limits),
    row<Key::LaunchOnlyOnce>(Section::Limits),
    row<Key::Nice>(Section::Limits),
    row<Key::ThrottleInterval>(Section::Limits),
    row<Key::ProcessType>(Section::Limits),
    row<Key::LimitLoadToSessionType>(Section::Limits),
    row<Key::LimitLoadToHardware>(Section::Limits),
    row<Key::SoftResourceLimits>(Section::Limits),
    row<Key::HardResourceLimits>(Section::Limits),
    row<Key::InitGroups>(
        Section::Root,
        {.control = Control::CheckBox,
         .help = "This optional key specifies whether initgroups(3) to initialize the group list for the job. The "
                 "default is true. This key will be ignored if the UserName key is not set.",
         .ifAbsent = true,
         .optionClick = Field::OptionClick::WritesFalse,
         .scope = Field::Scope::Daemons}),
    row<Key::UserName>(
        Section::Root,
        {.control = Control::Text,
         .help = "This optional key specifies the user to run the job as. This key is only applicable for services "
                 "that are loaded into the privileged system domain.",
         .scope = Field::Scope::Daemons}),
    row<Key::GroupName>(
        Section::Root,
        {.control = Control::Text,
         .help = "This optional key specifies the group to run the job as. This key is only applicable for services "
                 "that are loaded into the privileged system domain. If UserName is set and GroupName is not, then "
                 "the group will be set to the primary group of the user.",
         .scope = Field::Scope::Daemons}),
    row<Key::AbandonProcessGroup>(Section::Miscellaneous),
    row<Key::EnablePressuredExit>(Section::Miscellaneous),
    row<Key::EnableTransactions>(Section::Miscellaneous),
    row<Key::LegacyTimers>(Section::Miscellaneous),
    row<Key::MaterializeDatalessFiles>(Section::Miscellaneous),
    row<Key::SessionCreate>(Section::Miscellaneous),
    row<Key::WaitForDebugger>(Section::Miscellaneous),
    row<Key::ExitTimeOut>(Section::Miscellaneous),
    row<Key::Umask>(Section::Miscellaneous),
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

constexpr Field conditionRows[] = {
    {.section = Section::When,
     .key = KeepAlive::text(KeepAlive::CodingKeys::Crashed),
     .access = ConditionAccess<&KeepAlive::crashed>::functions,
     .control = Control::CheckBox,
     .help =
         "KeepAlive - Crashed: If true, the the job will be restarted as long as it exited due to a signal which is "
         "typically associated with a crash (SIGILL, SIGSEGV, etc.). If false, the job will be restarted in the "
         "inverse condition."},
    {.section = Section::When,
     .key = KeepAlive::text(KeepAlive::CodingKeys::SuccessfulExit),
     .access = ConditionAccess<&KeepAlive::successfulExit>::functions,
     .control = Control::CheckBox,
     .help = "KeepAlive - SuccessfulExit: If true, the job will be restarted as long as the program exits and with an "
             "exit status of zero. If false, the job will be restarted in the inverse condition."},
    {.section = Section::When,
     .key = KeepAlive::text(KeepAlive::CodingKeys::PathState),
     .access = ConditionAccess<&KeepAlive::pathState>::functions,
     .control = Control::Table,
     .help = "KeepAlive - PathState: Each key in this dictionary is a file-system path. If the value of the key is "
             "true, then the job will be kept alive as long as the path exists. If false, the job will be kept alive "
             "in the inverse condition.",
     .table = {.columns = pathColumn, .hasBox = true, .isDictionary = true, .adding = TableFormat::Adding::FilePanel}},
    {.section = Section::When,
     .key = KeepAlive::text(KeepAlive::CodingKeys::OtherJobEnabled),
     .access = ConditionAccess<&KeepAlive::otherJobEnabled>::functions,
     .control = Control::Table,
     .help = "KeepAlive - OtherJobEnabled: Each key in this dictionary is the name of another job. If the value is "
             "true, then the job will be kept alive as long as one of the specified other jobs is loaded.",
     .table = {.columns = textColumn, .hasBox = true, .isDictionary = true}},
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

FieldValue clicked(const Field& field, bool isOn, bool isOptionHeld) {
  const bool removesKey = !isOn && isOptionHeld && field.optionClick == Field::OptionClick::RemovesKey;
  return removesKey ? FieldValue() : FieldValue(isOn);
}

namespace {

/// Null for a number with a fraction, which `parseField` would truncate.
std::optional<std::int64_t> wholeNumber(const std::string& text, const Scheduled::NumberText& numbers) {
  const auto number = numbers.parseField(text);
  const auto exact = numbers.parseExactly(text);
  return number && exact && static_cast<double>(*number) == *exact ? number : std::nullopt;
}

}  // namespace

std::string fieldText(const Field& field, const Plist& plist, const Unfinished& unfinished) {
  const auto entered = unfinished.texts.find(field.key);
  if (entered != unfinished.texts.end()) return entered->second;
  const FieldValue value = field.access.read(plist);
  if (const auto* const number = std::get_if<std::int64_t>(&value)) return std::to_string(*number);
  const auto* const text = std::get_if<std::string>(&value);
  return text ? *text : std::string();
}

bool matchesValue(const Field& field, const std::string& text, const Scheduled::NumberText& numbers, const Plist& plist,
                  const Unfinished& unfinished) {
  const bool isNumber = field.control == Control::Number && !unfinished.texts.contains(field.key);
  const auto number = isNumber ? wholeNumber(text, numbers) : std::nullopt;
  return number ? field.access.read(plist) == FieldValue(*number) : text == fieldText(field, plist, unfinished);
}

std::vector<TableRow> fieldRows(const Field& field, const Plist& plist, const Unfinished& unfinished) {
  const auto entered = unfinished.tables.find(field.key);
  if (entered != unfinished.tables.end()) return entered->second;
  FieldValue value = field.access.read(plist);
  auto* const rows = std::get_if<std::vector<TableRow>>(&value);
  return rows ? std::move(*rows) : std::vector<TableRow>();
}

void enterText(const Field& field, const std::string& text, const Scheduled::NumberText& numbers, Plist& plist,
               Unfinished& unfinished) {
  if (text.empty()) return enter(field, {}, plist, unfinished);
  if (field.control != Control::Number) return enter(field, text, plist, unfinished);
  if (const auto number = wholeNumber(text, numbers)) return enter(field, *number, plist, unfinished);
  unfinished.texts.insert_or_assign(std::string(field.key), text);
}

void enterRows(const Field& field, const std::vector<TableRow>& rows, Plist& plist, Unfinished& unfinished) {
  if (!field.table.isDictionary || !unfitForDictionary(rows)) return enter(field, rows, plist, unfinished);
  unfinished.tables.insert_or_assign(std::string(field.key), rows);
}

void enter(const Field& field, const FieldValue& value, Plist& plist, Unfinished& unfinished) {
  const std::string key(field.key);
  unfinished.texts.erase(key);
  unfinished.tables.erase(key);
  field.access.write(plist, value);
  if (field.key != "KeepAlive" || plist.keepAlive) return;
  for (const Field& condition : conditionRows) unfinished.tables.erase(std::string(condition.key));
}

std::optional<InvalidField> refuse(const Field& field, const Unfinished& unfinished, const Localize& localize) {
  if (!unfinished.texts.contains(field.key)) return std::nullopt;
  return InvalidField{.message = EditorTexts(localize).fieldCantBeSaved(titleOf(field, localize)),
                      .reason = localize.enterAWholeNumber()};
}

}  // namespace mirvel
