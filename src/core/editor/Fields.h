#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "core/catalogue/Kind.h"
#include "core/editor/FieldAccess.h"
#include "core/editor/SectionStack.h"
#include "core/editor/TableFormat.h"

/// The keys of a job file in the details and the editor. The table in Fields.cpp has one row for each key; a new key is
/// one more row.
namespace mirvel {

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

}  // namespace mirvel
