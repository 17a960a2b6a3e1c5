#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "core/catalogue/Kind.h"
#include "core/editor/SectionStack.h"
#include "core/editor/TableFormat.h"
#include "core/editor/ValueTexts.h"
#include "core/jobfile/Plist.h"
#include "core/ports/Interface.h"
#include "core/propertylist/Value.h"
#include "core/session/Editing.h"

/// The keys of a job file in the details and the editor. The table in Fields.cpp has one row for each key; a new key is
/// one more row.
namespace mirvel {

namespace Scheduled {
class NumberText;
}

/// The value of a field. `std::monostate` means that the key is absent, as distinct from false, 0 and an empty text.
using FieldValue = std::variant<std::monostate, bool, std::int64_t, std::string, std::vector<TableRow>>;

/// The access to a key of the record. None of the functions is null.
struct FieldAccess {
  /// Whether the record has the key, whatever its value.
  bool (*isSet)(const jobfile::Plist& plist) = nullptr;
  void (*remove)(jobfile::Plist& plist) = nullptr;
  /// The value for the read-only view; null if there is nothing to show.
  std::optional<propertylist::Value> (*display)(const jobfile::Plist& plist, const ValueTexts& texts) = nullptr;
  /// The value for a control. Absent for keys of types that no control shows.
  FieldValue (*read)(const jobfile::Plist& plist) = nullptr;
  /// Writes a value of the type that `read` returns, or removes the key if the value is absent. A value of another type
  /// changes nothing. A list or dictionary without rows is removed, unless the file has it empty, or with values that
  /// no row shows.
  void (*write)(jobfile::Plist& plist, const FieldValue& value) = nullptr;
};

/// A row of the table: a key, its control, and its access to the record.
struct Field {
  enum class Control {
    None,           ///< read-only; deprecated keys can be deleted
    CheckBox,       ///< on or off; an absent key has the state `ifAbsent`
    ThreeStateBox,  ///< on, off or absent, for keys whose absence means neither
    Text,
    Number,  ///< an integer in the digits of the locale
    Slider,  ///< the same, with a slider from `lowest` to `highest`; the number can be outside of them
    Mask,    ///< a file mode creation mask: an octal number, with a box for each permission that it withholds
    File,    ///< a path, with a button that opens a panel
    Folder,  ///< the same for a folder
    PopUp,   ///< one of `choices`, or absent
    Table,   ///< rows in the format `table`
  };
  /// The effect of a click on a check box, with the Option key, that turns it off.
  enum class OptionClick { WritesFalse, RemovesKey };
  /// The jobs for which launchd uses the key.
  enum class Scope { AllJobs, Agents, Daemons };
  /// An item of a pop-up. The text is both the value and the title.
  struct Choice {
    std::string_view text;
    std::string_view help;
  };

  StackSection section{};
  std::string_view key = {};  ///< as in the file; unique
  FieldAccess access = {};
  Control control = Control::None;
  std::string_view help = {};                                ///< not translated; UTF-8, without markup
  std::string (*title)(const Localize& localize) = nullptr;  ///< if null, the key is the title
  bool isRequired = false;                                   ///< the key can't be removed
  bool ifAbsent = false;                                     ///< the state of a check box whose key is absent
  OptionClick optionClick = OptionClick::RemovesKey;
  Scope scope = Scope::AllJobs;       ///< the field is disabled for other jobs
  std::string_view placeholder = {};  ///< of an empty text field, such as the default value
  std::span<const Choice> choices = {};
  TableFormat table = {};
  std::int64_t lowest = 0;
  std::int64_t highest = 0;
  bool fillsSection = false;       ///< the section's header is its title, and it has the width of the section
  std::string_view keywords = {};  ///< words for which users search besides the key and the title
};

/// All fields, ordered by section.
std::span<const Field> allFields();
/// The fields of one section, in the order in which it shows them.
std::span<const Field> fieldsOf(StackSection section);
/// The conditions of `KeepAlive`, for which the job must have that key.
std::span<const Field> keepAliveFields();
/// The field of a key, among `allFields` and `keepAliveFields`. There must be one.
const Field& fieldOf(std::string_view key);

/// The localized title, or the key.
std::string titleOf(const Field& field, const Localize& localize);
/// Whether jobs of that kind use the key.
bool appliesTo(const Field& field, Kind kind);

/// Whether the text of a field is a number.
bool isNumber(const Field& field);

/// The value of a box after a click that left it on or off.
FieldValue clicked(const Field& field, bool isOn, bool isOptionHeld);

/// The text of a single field, and the rows of a table: as entered if they can't be saved, otherwise those of the
/// record.
std::string fieldText(const Field& field, const jobfile::Plist& plist, const Unfinished& unfinished);
/// Whether a text that was entered in a field already represents its value: "1,000" and "1000" are the same number.
bool matchesValue(const Field& field, const std::string& text, const Scheduled::NumberText& numbers,
                  const jobfile::Plist& plist, const Unfinished& unfinished);
std::vector<TableRow> fieldRows(const Field& field, const jobfile::Plist& plist, const Unfinished& unfinished);
/// Write an entered text, or the rows of a table. An empty text or table removes the key. Invalid input, such as "5x"
/// for a number, is stored in `unfinished` and leaves the record unchanged.
void enterText(const Field& field, const std::string& text, const Scheduled::NumberText& numbers, jobfile::Plist& plist,
               Unfinished& unfinished);
void enterRows(const Field& field, const std::vector<TableRow>& rows, const Scheduled::NumberText& numbers,
               jobfile::Plist& plist, Unfinished& unfinished);
/// Writes a value and discards unfinished input of the field. Removing `KeepAlive` also discards that of its
/// conditions.
void enter(const Field& field, const FieldValue& value, jobfile::Plist& plist, Unfinished& unfinished);
/// The mask for the boxes of a mask field: that of the record or, without one, the default.
std::int64_t shownMask(const Field& field, const jobfile::Plist& plist);
/// The reason why the text of a number or mask field can't be saved; null if it can.
std::optional<InvalidField> refuse(const Field& field, const Unfinished& unfinished, const Localize& localize);

}  // namespace mirvel
