#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/editor/Fields.h"
#include "core/jobfile/Plist.h"
#include "core/ports/Interface.h"
#include "core/session/Editing.h"

/// What the user enters in a field: into the record or, as long as it is invalid, into the unfinished input.
namespace mirvel {

class Localize;

namespace Scheduled {
class NumberText;
}

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
