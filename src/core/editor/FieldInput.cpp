#include "core/editor/FieldInput.h"

#include <utility>

#include "core/editor/EditorTexts.h"
#include "core/locale/Localize.h"
#include "core/schedule/NumberText.h"
#include "core/text/Octal.h"

namespace mirvel {

using jobfile::Plist;

FieldValue clicked(const Field& field, bool isOn, bool isOptionHeld) {
  const bool removesKey = !isOn && isOptionHeld && field.optionClick == Field::OptionClick::RemovesKey;
  return removesKey ? FieldValue() : FieldValue(isOn);
}

namespace {

/// Null if the text isn't a number.
std::optional<std::int64_t> numberIn(const Field& field, const std::string& text,
                                     const Scheduled::NumberText& numbers) {
  return field.control == Field::Control::Mask ? Octal::toInt(text) : numbers.parseWhole(text);
}

}  // namespace

std::string fieldText(const Field& field, const Plist& plist, const Unfinished& unfinished) {
  const auto entered = unfinished.texts.find(field.key);
  if (entered != unfinished.texts.end()) return entered->second;
  const FieldValue value = field.access.read(plist);
  if (const auto* const number = std::get_if<std::int64_t>(&value)) {
    return field.control == Field::Control::Mask ? Octal::displayString(*number) : std::to_string(*number);
  }
  const auto* const text = std::get_if<std::string>(&value);
  return text ? *text : std::string();
}

bool matchesValue(const Field& field, const std::string& text, const Scheduled::NumberText& numbers, const Plist& plist,
                  const Unfinished& unfinished) {
  const bool hasNumber = isNumber(field) && !unfinished.texts.contains(field.key);
  const auto number = hasNumber ? numberIn(field, text, numbers) : std::nullopt;
  return number ? field.access.read(plist) == FieldValue(*number) : text == fieldText(field, plist, unfinished);
}

std::vector<TableRow> fieldRows(const Field& field, const Plist& plist, const Unfinished& unfinished) {
  const auto entered = unfinished.tables.find(field.key);
  if (entered != unfinished.tables.end()) return entered->second;
  FieldValue value = field.access.read(plist);
  auto* const rows = std::get_if<std::vector<TableRow>>(&value);
  return rows ? std::move(*rows) : std::vector<TableRow>();
}

std::int64_t shownMask(const Field& field, const Plist& plist) {
  const FieldValue value = field.access.read(plist);
  const auto* const mask = std::get_if<std::int64_t>(&value);
  return mask ? *mask : Octal::toInt(field.placeholder).value_or(0);
}

void enterText(const Field& field, const std::string& text, const Scheduled::NumberText& numbers, Plist& plist,
               Unfinished& unfinished) {
  if (text.empty()) return enter(field, {}, plist, unfinished);
  if (!isNumber(field)) return enter(field, text, plist, unfinished);
  if (const auto number = numberIn(field, text, numbers)) return enter(field, *number, plist, unfinished);
  unfinished.texts.insert_or_assign(std::string(field.key), text);
}

void enterRows(const Field& field, const std::vector<TableRow>& rows, const Scheduled::NumberText& numbers,
               Plist& plist, Unfinished& unfinished) {
  if (refusedCells(field.table, rows, numbers).empty()) {
    return enter(field, writtenRows(field.table, rows, numbers), plist, unfinished);
  }
  unfinished.tables.insert_or_assign(std::string(field.key), rows);
}

void enter(const Field& field, const FieldValue& value, Plist& plist, Unfinished& unfinished) {
  const std::string key(field.key);
  unfinished.texts.erase(key);
  unfinished.tables.erase(key);
  field.access.write(plist, value);
  if (field.key != "KeepAlive" || plist.keepAlive) return;
  for (const Field& condition : keepAliveFields()) unfinished.tables.erase(std::string(condition.key));
}

std::optional<InvalidField> refuse(const Field& field, const Unfinished& unfinished, const Localize& localize) {
  if (!unfinished.texts.contains(field.key)) return std::nullopt;
  return InvalidField{.message = EditorTexts(localize).fieldCantBeSaved(titleOf(field, localize)),
                      .reason = field.control == Field::Control::Mask ? EditorTexts(localize).enterAnOctalNumber()
                                                                      : localize.enterAWholeNumber()};
}

}  // namespace mirvel
