#include <gmock/gmock.h>

#include <random>

#include "core/catalogue/Launchd.h"
#include "core/editor/Browser.h"
#include "core/editor/EditController.h"
#include "core/editor/EditTable.h"
#include "core/editor/FieldInput.h"
#include "core/editor/Fields.h"
#include "core/editor/GeneratedFile.h"
#include "core/editor/InfoLaunchd.h"
#include "core/editor/PlainJob.h"
#include "core/editor/SectionRows.h"
#include "core/editor/WhenRules.h"
#include "core/jobfile/JobFile.h"
#include "core/text/Octal.h"
#include "support/ProgramFixture.h"
#include "support/Untouched.h"

namespace mirvel {
namespace {

using jobfile::Dict;
using jobfile::List;
using propertylist::Integer;
using propertylist::Value;
using Control = Field::Control;
using Path = PlainDictionary::Path;
using Strings = std::vector<std::string>;
using Type = BrowserItem::Type;

/// Reports input that can't be saved as the sections do.
class Stack final : public EditStackType {
 public:
  explicit Stack(Program& program) : m_program(program) {}

  std::optional<InvalidField> refuse() override {
    const Unfinished& unfinished = m_program.editing.unfinished();
    const auto& localize = m_program.foundation.localize;
    for (const auto& [key, text] : unfinished.texts) {
      if (auto invalid = mirvel::refuse(fieldOf(key), unfinished, localize)) return invalid;
    }
    for (const auto& [key, rows] : unfinished.tables) {
      EditTable table(fieldOf(key).table, m_program.scheduledController.numbers());
      table.fill(rows);
      if (auto invalid = table.refuse(key, localize)) return invalid;
    }
    for (const auto& [key, tree] : unfinished.trees) {
      Browser browser(*browserSchema(key), localize, m_program.scheduledController.numbers());
      browser.fill(m_program.selection.launchd()->plist(), unfinished);
      if (auto invalid = browser.refuse()) return invalid;
    }
    return std::nullopt;
  }
  void showButtons(const EditButtons& /*buttons*/) override {}
  void hideDiscardButton() override {}
  void endEditing() override {}
  void compare(const Versions& /*versions*/, std::function<void(VersionChoice)> /*completion*/) override {}

 private:
  Program& m_program;
};

/// Edits the selected job in all sections at random, the same each time, and does the same to a plain dictionary by
/// rules of its own.
class RandomUser {
 public:
  RandomUser(Program& program, testdata::FakeInterface& interface, testdata::FakeHelpers& helpers, unsigned seed)
      : m_program(program), m_interface(interface), m_helpers(helpers), m_random(seed) {}

  void begin(const Dict& file) {
    m_expected = PlainJob(file);
    m_story.clear();
  }

  void edit() {
    switch (below(12)) {
      case 0:
        return editCondition();
      case 1:
      case 2:
        return editBrowser();
      case 3:
        return deleteRow();
      case 4:
        return isOne(3) ? removeSchedule() : editCommand();
      case 5:
        return editText();
      default:
        if (isOne(2)) m_field = below(allFields().size());  // or the same one again
        return editField(allFields()[m_field]);
    }
  }
  void save() {
    Stack stack(m_program);
    EditController(m_program.session, m_program.saving, m_program.scanning, m_program.actions, stack).save();
  }
  const PlainJob& expected() const { return m_expected; }
  /// The edits so far, for messages.
  const std::string& story() const { return m_story; }
  std::size_t below(std::size_t count) { return m_random() % count; }

 private:
  // Fields.

  void editField(const Field& field) { editField(field, {field.key}); }
  void editField(const Field& field, const Path& path) {
    if (field.control == Control::None) return;
    tell(std::string(field.key));
    if (isOne(8) && m_expected.isSet(field, path) && !field.isRequired) return enterValue(field, path, {});
    switch (field.control) {
      case Control::CheckBox:
        return click(field, path);
      case Control::ThreeStateBox:
        return enterValue(field, path, isOne(2));
      case Control::Number:
      case Control::Slider:
        return typeNumber(field, path);
      case Control::Mask:
        return isOne(2) ? clickMask(field, path) : typeMask(field, path);
      case Control::Table:
        return editTable(field, path);
      default:
        return typeText(field, path);
    }
  }
  void enterValue(const Field& field, const Path& path, const FieldValue& value) {
    change([&](auto& plist, auto& unfinished) { enter(field, value, plist, unfinished); });
    const bool* const isOn = std::get_if<bool>(&value);
    isOn ? m_expected.set(path, *isOn) : m_expected.drop(field, path);
  }
  void click(const Field& field, const Path& path) {
    const bool isNegated = field.key == "Disabled";
    const bool* const present = m_expected.get<bool>(path);
    bool isOn = present ? *present != isNegated : field.ifAbsent;
    if (field.key == "KeepAlive") isOn = m_expected.isSet(field, path);
    const bool withOption = isOne(3);
    change([&](auto& plist, auto& unfinished) { enter(field, clicked(field, !isOn, withOption), plist, unfinished); });
    const bool removes = field.key == "KeepAlive" || (withOption && field.key != "InitGroups");
    isOn&& removes ? m_expected.drop(field, path) : m_expected.set(path, isOn == isNegated);
  }
  void typeText(const Field& field, const Path& path) {
    const std::string text = isOne(4) && !field.isRequired ? "" : unique("text <&> ");
    enterTextOf(field, text);
    text.empty() ? m_expected.drop(field, path) : m_expected.set(path, text);
  }
  void typeNumber(const Field& field, const Path& path) {
    const bool isCompleted = isOne(4);
    if (isCompleted || isOne(8)) {
      enterTextOf(field, "5x");
      expectRefusal();
      if (!isCompleted) return m_program.editing.undo();
    }
    const std::string digits = unique("1");
    const int number = 1'000'000 + std::stoi(digits);
    enterTextOf(field, isOne(2) ? std::to_string(number)
                                : "1," + std::to_string(number).substr(1, 3) + ',' + std::to_string(number).substr(4));
    m_expected.set(path, number);
  }
  void typeMask(const Field& field, const Path& path) {
    if (isOne(4)) {
      enterTextOf(field, "08");
      expectRefusal();
      return m_program.editing.undo();
    }
    const int digits[] = {static_cast<int>(below(4)) + 4, static_cast<int>(below(8)), static_cast<int>(below(8))};
    enterTextOf(field, std::to_string(digits[0]) + std::to_string(digits[1]) + std::to_string(digits[2]));
    m_expected.set(path, digits[0] * 64 + digits[1] * 8 + digits[2]);
  }
  /// The boxes replace the nine lowest bits.
  void clickMask(const Field& field, const Path& path) {
    const auto withheld = static_cast<std::int64_t>(256 + below(256));
    change([&](auto& plist, auto& unfinished) {
      enter(field, Octal::withMask(shownMask(field, plist), Octal::mask(withheld)), plist, unfinished);
    });
    const auto* const number = m_expected.get<Integer>(path);
    m_expected.set(path, ((number ? number->toInt64().value_or(0) : 0) & ~std::int64_t{0777}) | withheld);
  }
  void enterTextOf(const Field& field, const std::string& text) {
    change([&](auto& plist, auto& unfinished) { enterText(field, text, numbers(), plist, unfinished); });
  }
  void editCondition() {
    const Field& field = keepAliveFields()[below(keepAliveFields().size())];
    const bool hasConditions = m_expected.isSet(fieldOf("KeepAlive"), {"KeepAlive"});
    if (!hasConditions || isOne(6)) return editField(fieldOf("KeepAlive"));
    editField(field, {"KeepAlive", field.key});
  }

  // Tables.

  void editTable(const Field& field, const Path& path) {
    EditTable table(field.table, numbers(), [&](Editing::Step step, const std::string& cell) {
      auto& plist = m_program.editing.markJobChanged(step, cell)->plist();
      enterRows(field, table.rows(), numbers(), plist, m_program.editing.unfinished());
    });
    (void)table.fill(fieldRows(field, plist(), {}));
    const std::size_t count = table.order().size();
    const std::size_t row = below(count + 1);
    if (!field.table.isDictionary) return editList(field, path, table, row);
    if (isOne(6)) return enterInvalidRow(field, table);
    if (row == count) return addRow(field, path, table);
    if (field.table.hasLists) return editLists(field, path, table, row);
    isOne(3) ? removeRow(field, path, table, row) : changeRow(field, path, table, row);
  }
  void addRow(const Field& field, const Path& path, EditTable& table) {
    const auto& menu = field.table.menu;
    std::string name = menu.empty() ? unique("name") : std::string(menu[below(menu.size())].title);
    if (field.table.hasLists && isOne(2)) name = "model";
    const Path entry = PlainDictionary::below(path, name);
    const Value* const present = m_expected.isSet(field, path) ? m_expected.find(entry) : nullptr;
    const bool isList = present && field.table.hasLists && PlainJob::fitsEntry(field, name, *present);
    if (present && !isList) return;  // not offered, or not shown
    const std::size_t row = table.add(field.table.hasVariables ? "" : name);
    if (field.table.hasVariables) table.setCell(row, 0, name);
    if (field.table.hasBox) return m_expected.set(entry, true);
    if (!menu.empty()) return setNumber(entry, table, row);
    const std::string value = unique("value ");
    table.setCell(row, 1, value);
    if (!field.table.hasLists) return m_expected.set(entry, value);
    List list = isList ? *present->as<List>() : List();
    list.emplace_back(value);
    m_expected.set(entry, list);
  }
  void removeRow(const Field& field, const Path& path, EditTable& table, std::size_t row) {
    m_expected.remove(PlainDictionary::below(path, table.shownRow(row).cells.front()));
    table.remove(row);
    endRows(field, path, table);
  }
  void changeRow(const Field& field, const Path& path, EditTable& table, std::size_t row) {
    const Path entry = PlainDictionary::below(path, table.shownRow(row).cells.front());
    if (!field.table.menu.empty()) return setNumber(entry, table, row);
    if (isOne(2)) {
      const Value value = *m_expected.find(entry);
      const std::string name = unique("name");
      table.setCell(row, 0, name);
      m_expected.remove(entry);
      m_expected.set(PlainDictionary::below(path, name), value);
    } else if (field.table.hasBox) {
      const bool isOn = !*m_expected.get<bool>(entry);
      table.setBox(row, isOn);
      m_expected.set(entry, isOn);
    } else {
      const std::string value = unique("value ");
      table.setCell(row, 1, value);
      m_expected.set(entry, value);
    }
  }
  void setNumber(const Path& entry, EditTable& table, std::size_t row) {
    const int number = 10'000 + ++m_last;
    table.setCell(row, 1, std::to_string(number));
    m_expected.set(entry, number);
  }
  void enterInvalidRow(const Field& field, EditTable& table) {
    if (field.table.hasBox && table.order().empty()) return;
    const auto offers = table.offers();
    if (!offers.empty() && !offers.front().isEnabled) return;
    const std::string name = field.table.hasBox ? table.rows().front().cells.front() : "";
    const std::size_t row = table.add(offers.empty() ? name : std::string(offers.front().item.title));
    if (!field.table.hasBox) table.setCell(row, field.table.hasLists ? 0 : 1, "5x");
    expectRefusal();
    m_program.editing.undo();
  }
  /// `row` can be the one after the last.
  void editList(const Field& field, const Path& path, EditTable& table, std::size_t row) {
    Strings list = m_expected.isSet(field, path) ? *PlainJob::stringsOf(m_expected.find(path)) : Strings();
    const bool isAdded = row == list.size();
    const auto& menu = field.table.menu;
    const std::string text = menu.empty() ? unique("/path ") : std::string(menu[below(menu.size())].title);
    if (!menu.empty() && std::find(list.begin(), list.end(), text) != list.end()) return;
    if (isAdded) {
      (void)table.add(text);
      list.push_back(text);
    } else if (isOne(2) || !menu.empty()) {
      (void)table.remove(row);
      list.erase(list.begin() + static_cast<std::ptrdiff_t>(row));
    } else {
      table.setCell(row, 0, text);
      list[row] = text;
    }
    const Value* const inFile = m_expected.file().find(field.key);
    const bool isSingle = !menu.empty() && inFile && inFile->as<std::string>() && list.size() == 1;
    const bool staysEmpty = inFile && *inFile == Value(List()) && menu.empty();
    if (list.empty() && !staysEmpty) return m_expected.drop(field, path);
    m_expected.set(path, isSingle ? Value(list.front()) : List(list.begin(), list.end()));
  }
  void editLists(const Field& field, const Path& path, EditTable& table, std::size_t row) {
    const std::string name = table.shownRow(row).cells.front();
    const Path entry = PlainDictionary::below(path, name);
    Strings list = *PlainJob::stringsOf(m_expected.find(entry));
    std::size_t index = 0;
    for (std::size_t before = 0; before < row; ++before)
      index += table.shownRow(before).cells.front() == name ? 1U : 0U;
    if (isOne(2)) {
      if (!list.empty()) list.erase(list.begin() + static_cast<std::ptrdiff_t>(index));
      list.empty() ? m_expected.remove(entry) : m_expected.set(entry, List(list.begin(), list.end()));
      (void)table.remove(row);
      return endRows(field, path, table);
    }
    list.resize(std::max(list.size(), index + 1));
    list[index] = unique("value ");
    table.setCell(row, 1, list[index]);
    m_expected.set(entry, List(list.begin(), list.end()));
  }
  /// Without rows a dictionary is removed, unless the file has it without rows.
  void endRows(const Field& field, const Path& path, const EditTable& table) {
    if (!table.rows().empty() || !m_expected.get<Dict>(path)->empty()) return;
    const PlainDictionary file(m_expected.file());
    const auto* const inFile = file.get<Dict>(path);
    const bool hadRows = inFile && std::any_of(inFile->begin(), inFile->end(), [&](const auto& entry) {
                           return PlainJob::fitsEntry(field, entry.key, entry.value);
                         });
    if (!inFile || hadRows) m_expected.drop(field, path);
  }

  // What isn't in the table of fields.

  void editCommand() {
    if (m_expected.file().find("Program") || m_expected.find({"Program"})) return;
    tell("command");
    const std::string program = unique("/bin/run");
    change([&](auto& plist, auto& /*unfinished*/) { plist.run = program + " \"a b\" c"; });
    m_expected.set({"ProgramArguments"}, List{program, "a b", "c"});
  }
  /// Elements of the list that aren't intervals stay.
  void removeSchedule() {
    tell("no schedule");
    change([&](auto& plist, auto& unfinished) { WhenRules::removeSchedule(plist, unfinished); });
    const Value* const interval = m_expected.find({"StartInterval"});
    if (interval && PlainJob::isWhole(*interval)) m_expected.remove({"StartInterval"});
    const Path calendar = {"StartCalendarInterval"};
    if (m_expected.get<Dict>(calendar)) m_expected.remove(calendar);
    const auto* const list = m_expected.get<List>(calendar);
    if (!list) return;
    List others;
    std::copy_if(list->begin(), list->end(), std::back_inserter(others),
                 [](auto& each) { return !each.template as<Dict>(); });
    others.empty() && !list->empty() ? m_expected.remove(calendar) : m_expected.set(calendar, others);
  }
  /// Of a deprecated key, or of a value that no other section shows.
  void deleteRow() {
    const auto section = isOne(2) ? StackSection::Deprecated : StackSection::Unknown;
    const auto rows = editorRows(section, plist(), m_program.foundation);
    if (rows.empty()) return;
    const std::string key = rows[below(rows.size())].key;
    Path path{key};
    for (const auto& opaque : plist().opaqueValues()) {
      if (m_expected.find({key}) || opaque.text() != key) continue;
      path = Path(opaque.path.begin(), opaque.path.end());
      const bool isElement = opaque.path.size() > 1 && opaque.path[1].starts_with('[');
      if (isElement && *m_expected.find({path.front()}) != *m_expected.file().find(opaque.path.front())) return;
      if (isElement) path[1] = std::stoi(opaque.path[1].substr(1));
    }
    tell("deletion of " + key);
    change([&](auto& plist, auto& /*unfinished*/) {
      EXPECT_TRUE(section == StackSection::Deprecated ? deleteDeprecated(plist, key) : deleteUnknown(plist, key));
    });
    m_expected.discard(path);
  }
  /// A value anywhere in the text is removed, replaced or added.
  void editText() {
    InfoLaunchd sheet(m_program.session, m_program.saving, m_program.repairs, m_program.selection.launchd());
    const auto text = propertylist::read(sheet.text());
    if (!text) return;
    PlainDictionary typed(*text->value().as<Dict>());
    Path path;
    while (const auto next = stepBelow(typed.find(path))) {
      path.push_back(*next);
      if (isOne(2)) break;
    }
    tell("text");
    const auto both = [&](const auto& edit) { edit(typed), edit(m_expected); };
    if (path == Path{"Label"} || isOne(3)) {
      path.back() = path.back().as<std::string>() ? Value(unique("Added")) : path.back();
      const Value value = oneOf(generated::oddValues);
      both([&](auto& list) {
        path.back().template as<std::string>() ? list.set(path, value) : list.insert(path, value);
      });
    } else if (isOne(2)) {
      both([&](auto& list) { list.remove(path); });
    } else {
      const Value value = oneOf(generated::oddValues);
      both([&](auto& list) { list.set(path, value); });
    }
    const auto problem = sheet.change(*propertylist::writeXml(typed.root()));
    EXPECT_EQ(problem ? problem->reason : "", "");
    m_expected.becomesFile();
  }
  std::optional<Value> stepBelow(const Value* value) {
    const auto* const entries = value->as<Dict>();
    const auto* const elements = value->as<List>();
    if (entries && !entries->empty())
      return (entries->begin() + static_cast<std::ptrdiff_t>(below(entries->size())))->key;
    if (elements && !elements->empty()) return static_cast<int>(below(elements->size()));
    return std::nullopt;
  }

  // Browsers.

  void editBrowser() {
    const auto& schema = browserSchemas()[below(browserSchemas().size())];
    tell(std::string(schema.text()));
    Browser browser(schema, m_program.foundation.localize, numbers(),
                    [&](Editing::Step step, const std::string& place) {
                      auto& plist = m_program.editing.markJobChanged(step, place)->plist();
                      browser.write(plist, m_program.editing.unfinished());
                      browser.fill(plist, m_program.editing.unfinished());
                    });
    browser.fill(plist(), {});
    Path above{schema.text()};
    if (m_expected.find(above) && !m_expected.get<Dict>(above)) {
      EXPECT_TRUE(browser.paste(0, *propertylist::writeXml(Dict{{"a", 1}}))) << "the value has to be removed before";
      return;
    }
    std::size_t column = 0;
    while (!browser.items(column).empty() && !isOne(3)) {
      const std::size_t row = below(browser.items(column).size());
      if (!browser.items(column)[row].isContainer()) break;
      browser.select(column++, row);
      above.push_back(stepTo(browser, column - 1, row, above));
    }
    const std::size_t count = browser.items(column).size();
    const std::size_t row = below(count + 1);
    if (row == count) return isOne(2) ? addItem(browser, column, above) : pasteItem(browser, column, above);
    changeItem(browser, column, row, above);
    const auto* const left = m_expected.get<Dict>({schema.text()});
    if (left && left->empty()) m_expected.remove({schema.text()});
  }
  /// An element of an array is found by its position.
  Value stepTo(const Browser& browser, std::size_t column, std::size_t row, const Path& above) {
    if (listAt(above)) return static_cast<int>(row);
    return browser.items(column)[row].name;
  }
  /// The value of the key itself isn't shown if it is an array.
  const List* listAt(const Path& above) const { return above.size() > 1 ? m_expected.get<List>(above) : nullptr; }
  void changeItem(Browser& browser, std::size_t column, std::size_t row, const Path& above) {
    const Path path = PlainDictionary::below(above, stepTo(browser, column, row, above));
    const BrowserItem& item = browser.items(column)[row];
    switch (below(6)) {
      case 0:
        browser.remove(column, row);
        return m_expected.remove(path);
      case 1:
        return renameItem(browser, column, row, path);
      case 2:
        return convertItem(browser, column, row, path);
      case 3:
        return duplicateItem(browser, column, row, path);
      default:
        if (item.isContainer() || item.type() == Type::Kept) return;
        if (item.type() == Type::Integer && isOne(3)) {
          browser.enterText(item.id, "5x");
          expectRefusal();
          return m_program.editing.undo();
        }
        return m_expected.set(path, enteredIn(browser, column, row));
    }
  }
  void addItem(Browser& browser, std::size_t column, const Path& above) {
    const auto offers = browser.offers(column);
    const std::size_t offer = below(offers.size());
    if (!offers[offer].isEnabled) return;
    const std::size_t row = *browser.add(column, offer);
    if (browser.items(column)[row].isNew) browser.rename(column, row, unique("item "));
    const bool isContainer = browser.items(column)[row].isContainer();
    const Value value = isContainer ? Value(Dict()) : enteredIn(browser, column, row);
    const Path path = PlainDictionary::below(above, stepTo(browser, column, row, above));
    path.back().as<std::string>() ? m_expected.set(path, value) : m_expected.insert(path, value);
  }
  void pasteItem(Browser& browser, std::size_t column, const Path& above) {
    const Value value = Dict{{"x", List{1, propertylist::Data{"y"}}}, {"SockType", Dict()}, {"r", 1.0}};
    const auto* const list = listAt(above);
    const std::string name = unique("pasted ");
    EXPECT_FALSE(browser.paste(column, *propertylist::writeXml(list ? Value(List{value}) : Dict{{name, value}})));
    const Path path = PlainDictionary::below(above, list ? Value(static_cast<int>(list->size())) : Value(name));
    list ? m_expected.insert(path, value) : m_expected.set(path, value);
  }
  void renameItem(Browser& browser, std::size_t column, std::size_t row, Path path) {
    if (!browser.isNameEditable(column, row)) return;
    const std::string name = unique("item ");
    const Value value = *m_expected.find(path);
    browser.rename(column, row, name);
    m_expected.remove(path);
    path.back() = name;
    m_expected.set(path, value);
  }
  void duplicateItem(Browser& browser, std::size_t column, std::size_t row, Path path) {
    if (!browser.canDuplicate(column, row)) return;
    browser.duplicate(column, row);
    const Value value = *m_expected.find(path);
    const auto* const name = path.back().as<std::string>();
    if (!name) {
      path.back() = static_cast<int>(row) + 1;
      return m_expected.insert(path, value);
    }
    int number = 2;
    const auto copy = [&] {
      Path other = path;
      other.back() = *name + ' ' + std::to_string(number);
      return other;
    };
    while (m_expected.find(copy())) ++number;
    m_expected.set(copy(), value);
  }
  void convertItem(Browser& browser, std::size_t column, std::size_t row, const Path& path) {
    const auto types = browser.types(column, row);
    const auto& choice = types[below(types.size())];
    const Value before = *m_expected.find(path);
    const auto* const isOn = before.as<bool>();
    const auto* const number = before.as<Integer>();
    std::optional<Value> after;
    if (isOn && choice.type == Type::String) after = *isOn ? "true" : "false";
    if (isOn && choice.type == Type::Integer) after = *isOn ? 1 : 0;
    if (isOn && choice.type == Type::Dictionary) after = Dict();
    if (number && choice.type == Type::String) after = number->text();
    if (number && choice.type == Type::Real) after = static_cast<double>(*number->toInt64());
    if (before.as<std::string>() && choice.type == Type::Strings) after = List{before};
    if (before.as<Dict>() && choice.type == Type::Array) after = List{before};
    if (!after || !choice.isEnabled) return;
    browser.setType(column, row, choice.type);
    m_expected.set(path, *after);
  }
  /// Enters a value in the item and returns it.
  Value enteredIn(Browser& browser, std::size_t column, std::size_t row) {
    const BrowserItem item = browser.items(column)[row];
    const int number = 512 + static_cast<int>(below(64));
    switch (item.type()) {
      case Type::Boolean:
        browser.setOn(item.id, number % 2 == 0);
        return number % 2 == 0;
      case Type::Integer:
        browser.enterText(item.id, item.name == "SockPathMode"
                                       ? "10" + std::to_string(number % 64 / 8) + std::to_string(number % 8)
                                       : std::to_string(number));
        return number;
      case Type::Real:
        browser.enterText(item.id, std::to_string(number) + ".25");
        return number + 0.25;
      case Type::Strings:
        browser.setStrings(item.id, {"a", "", "b"});
        return List{"a", "", "b"};
      default:
        browser.enterText(item.id, "text");
        return "text";
    }
  }

  template <typename Change>
  void change(const Change& change) {
    auto& plist = m_program.editing.markJobChanged()->plist();
    change(plist, m_program.editing.unfinished());
  }
  /// Input that can't be saved keeps the job from being saved.
  void expectRefusal() {
    const std::size_t sent = m_helpers.requests.size();
    m_interface.errors.clear();
    save();
    EXPECT_EQ(m_helpers.requests.size(), sent) << m_story;
    EXPECT_EQ(m_interface.errors.size(), 1U) << m_story;
  }
  bool isOne(std::size_t in) { return below(in) == 0; }
  const Value& oneOf(const List& values) { return values[below(values.size())]; }
  std::string unique(const std::string& text) { return text + std::to_string(++m_last); }
  const Scheduled::NumberText& numbers() const { return m_program.scheduledController.numbers(); }
  jobfile::Plist& plist() const { return m_program.selection.launchd()->plist(); }
  void tell(const std::string& edit) { m_story += edit + "; "; }

  Program& m_program;
  testdata::FakeInterface& m_interface;
  testdata::FakeHelpers& m_helpers;
  std::minstd_rand m_random;
  PlainJob m_expected{Dict()};
  std::string m_story;
  std::size_t m_field = 0;
  int m_last = 0;
};

class EditsTest : public testdata::ProgramFixture {
 protected:
  /// Selects the job of a file with this content; false if it isn't a job.
  bool open(const std::string& bytes) {
    const auto file = write(Kind::userAgent, "job.plist", bytes);
    job = Launchd::read(bytes, URL::file(file), Kind::userAgent, {}, console);
    if (!job) return false;
    program().editing.setUnsavedChanges(false);
    program().selection.select(job);
    return true;
  }
  /// What goes to the helper when the job is saved. The save fails then, so that the edits stay.
  std::string saved(RandomUser& user) {
    helpers.requests.clear();
    user.save();
    if (helpers.requests.empty()) return "nothing was sent";
    const auto request = helpers.requests.front();
    request.failure({.code = Error::Code::Io, .message = "enough is known"});
    settle();
    return request.text("string");
  }

  std::shared_ptr<Launchd> job;
};

TEST_F(EditsTest, ASavedFileHasWhatTheEditsGiveInAPlainDictionary) {
  RandomUser user(program(), interface, helpers, 20261123);
  std::minstd_rand random(20261122);
  std::vector<std::string> files;
  const auto corpus = testdata::folder("corpus");
  for (const auto& file : corpus ? testdata::files(*corpus, ".plist") : std::vector<std::filesystem::path>()) {
    files.push_back(testdata::bytes(file));
  }
  std::string cases;
  for (std::size_t i = 0, count = 0; count < 500; ++i) {
    const std::string bytes = i < files.size() ? files[i] : *propertylist::writeXml(generated::file(random));
    if (!open(bytes)) continue;
    ++count;
    user.begin(*propertylist::read(bytes)->value().as<Dict>());
    const auto before = job->plistData();
    for (std::size_t edits = 10 + user.below(11); edits > 0; --edits, clock.now += 10) user.edit();
    const auto after = job->plistData();
    const std::string sent = saved(user);
    const std::string operations = user.expected().operations();
    cases += std::to_string(i) + " " + user.story();
    for (const std::string* part : {&bytes, &operations, &sent}) cases += '\t' + std::to_string(part->size());
    cases += '\n' + bytes + operations + sent;
    while (program().editing.canUndo()) program().editing.undo();
    EXPECT_EQ(job->plistData(), before) << user.story();
    while (program().editing.canRedo()) program().editing.redo();
    EXPECT_EQ(job->plistData(), after) << user.story();
    if (HasFailure()) FAIL() << i;
  }
  const auto differences = testdata::judged("edits.py", cases);
  if (!differences) GTEST_SKIP() << "no python3 here";
  for (const std::string& difference : *differences) ADD_FAILURE() << difference;
}

}  // namespace
}  // namespace mirvel
