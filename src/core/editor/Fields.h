#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "core/catalogue/Kind.h"
#include "core/editor/EditTable.h"
#include "core/editor/SectionStack.h"
#include "core/editor/ValueTexts.h"
#include "core/jobfile/Plist.h"
#include "core/propertylist/Value.h"

/// The keys of a job file as the editor shows them: one row for each, see the table in the source.
namespace mirvel {

namespace Scheduled {
class NumberText;
}

/// The value of a field. Absent is a value of its own, other than false, 0 and an empty text.
using FieldValue = std::variant<std::monostate, bool, std::int64_t, std::string, std::vector<TableRow>>;

/// How a key gets from the record and back. A value of another type than `read` returns writes nothing.
struct FieldAccess {
  bool (*isSet)(const jobfile::Plist& plist) = nullptr;
  void (*remove)(jobfile::Plist& plist) = nullptr;
  /// The value where it can only be read; none if there is nothing to show.
  std::optional<propertylist::Value> (*display)(const jobfile::Plist& plist, const ValueTexts& texts) = nullptr;
  FieldValue (*read)(const jobfile::Plist& plist) = nullptr;
  void (*write)(jobfile::Plist& plist, const FieldValue& value) = nullptr;
};

struct Field {
  enum class Control {
    None,  ///< can be read, and in the editor at most be deleted
    CheckBox,
    ThreeStateBox,  ///< the third state is an absent key, where that means neither on nor off
    Text,
    Number,
    File,  ///< a path, which can also be chosen
    Folder,
    PopUp,
    Table,
  };
  /// What a click with the Option key makes of a box that goes off.
  enum class OptionClick { WritesFalse, RemovesKey };
  enum class Scope { AllJobs, Agents, Daemons };
  struct Choice {
    std::string_view text;
    std::string_view help;
  };

  StackSection section{};
  std::string_view key = {};  ///< as in the file
  FieldAccess access = {};
  Control control = Control::None;
  std::string_view help = {};
  std::string (*title)(const Localize& localize) = nullptr;  ///< null: the key
  bool ifAbsent = false;                                     ///< the state of a box whose key is absent
  OptionClick optionClick = OptionClick::RemovesKey;
  Scope scope = Scope::AllJobs;  ///< to others the key means nothing, and they can't edit it
  std::string_view placeholder = {};
  std::span<const Choice> choices = {};
  TableFormat table = {};
};

/// All fields, ordered by section.
std::span<const Field> allFields();
/// The fields of one section, in the order in which it shows them.
std::span<const Field> fieldsOf(StackSection section);
/// The conditions below the box that keeps a job alive. They can be set only while it is.
std::span<const Field> keepAliveFields();
/// The field of that key, which there is.
const Field& fieldOf(std::string_view key);

std::string titleOf(const Field& field, const Localize& localize);
bool appliesTo(const Field& field, Kind kind);

/// The value of a check box after a click that left it on or off.
FieldValue clicked(const Field& field, bool isOn, bool isOptionHeld);

/// The text of a single field, and the rows of a table: as entered if they can't be saved, otherwise those of the
/// record.
std::string fieldText(const Field& field, const jobfile::Plist& plist, const Unfinished& unfinished);
/// Whether a text that was entered in a field already stands for its value: "1,000" and "1000" are the same number.
bool standsFor(const Field& field, const std::string& text, const Scheduled::NumberText& numbers,
               const jobfile::Plist& plist, const Unfinished& unfinished);
std::vector<TableRow> fieldRows(const Field& field, const jobfile::Plist& plist, const Unfinished& unfinished);
/// Take over an entered text, or the rows of a table. An empty text removes the key. Input that isn't valid goes to
/// `unfinished` and leaves the record alone.
void enterText(const Field& field, const std::string& text, const Scheduled::NumberText& numbers, jobfile::Plist& plist,
               Unfinished& unfinished);
void enterRows(const Field& field, const std::vector<TableRow>& rows, jobfile::Plist& plist, Unfinished& unfinished);
/// Writes a value, and drops what was unfinished in the field.
void enter(const Field& field, const FieldValue& value, jobfile::Plist& plist, Unfinished& unfinished);
/// Why a single field can't be saved. None: it can be.
std::optional<InvalidField> refuse(const Field& field, const Unfinished& unfinished, const Localize& localize);

}  // namespace mirvel
