#include <gtest/gtest.h>

#include <random>

#include "core/editor/BrowserFixture.h"
#include "core/propertylist/Writer.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

using jobfile::Dict;
using jobfile::List;
using propertylist::Value;

/// Makes random edits in a browser and the same ones in a plain dictionary.
class RandomEdits {
 public:
  RandomEdits(unsigned seed, const std::string& key, const Dict& start)
      : m_random(seed), m_edited(key, start), m_expected(start) {}

  void edit() {
    const std::size_t column = walk();
    const std::size_t count = browser().items(column).size();
    const std::size_t row = count == 0 ? 0 : below(count);
    switch (below(6)) {
      case 0:
        return count == 0 ? void() : remove(column, row);
      case 1:
        return count == 0 ? void() : rename(column, row);
      case 2:
      case 3:
        return add(column);
      case 4:
        return count == 0 ? void() : setValue(column, row);
      default:
        return paste(column);
    }
  }

  void expectSameValue() {
    const std::optional<Value> expected = m_expected.as<Dict>()->empty() ? std::nullopt : std::optional(m_expected);
    ASSERT_EQ(m_edited.saved(), expected) << m_edited.shown();
  }
  EditedBrowser& edited() { return m_edited; }

 private:
  Browser& browser() { return m_edited.browser; }
  std::size_t below(std::size_t count) { return m_random() % count; }

  /// Selects items at random and returns a column.
  std::size_t walk() {
    std::size_t column = 0;
    for (; !browser().items(column).empty() && below(4) != 0; ++column) {
      const std::size_t row = below(browser().items(column).size());
      browser().select(column, row);
      if (!browser().items(column)[row].isContainer()) break;
    }
    return column;
  }
  bool isArray(std::size_t column) {
    return column > 0 &&
           browser().items(column - 1)[*browser().selected(column - 1)].type() == BrowserItem::Type::Array;
  }
  /// The value that holds the entries of a column.
  Value& expectedAt(std::size_t column) {
    Value* value = &m_expected;
    for (std::size_t before = 0; before < column; ++before) {
      const std::size_t row = *browser().selected(before);
      auto* const list = value->as<List>();
      value = list ? &list->at(row) : value->as<Dict>()->find(browser().items(before)[row].name);
    }
    return *value;
  }
  Value& expectedAt(std::size_t column, std::size_t row) {
    Value& parent = expectedAt(column);
    if (auto* const list = parent.as<List>()) return list->at(row);
    return *parent.as<Dict>()->find(browser().items(column)[row].name);
  }

  void remove(std::size_t column, std::size_t row) {
    Value& parent = expectedAt(column);
    if (auto* const list = parent.as<List>()) {
      list->erase(list->begin() + static_cast<std::ptrdiff_t>(row));
    } else {
      ASSERT_TRUE(parent.as<Dict>()->remove(browser().items(column)[row].name));
    }
    browser().remove(column, row);
  }
  void rename(std::size_t column, std::size_t row) {
    if (!browser().isNameEditable(column, row)) return;
    const std::string name = "name" + std::to_string(++m_lastName);
    Dict& parent = *expectedAt(column).as<Dict>();
    const std::string before = browser().items(column)[row].name;
    parent.set(name, Value(*parent.find(before)));
    (void)parent.remove(before);
    browser().rename(column, row, name);
  }
  void add(std::size_t column) {
    const auto offers = browser().offers(column);
    const std::size_t offer = below(offers.size());
    if (!offers[offer].isEnabled) return;
    Value& parent = expectedAt(column);
    const std::size_t row = *browser().add(column, offer);
    const std::string name = browser().items(column)[row].isNew ? "name" + std::to_string(++m_lastName) : "";
    if (!name.empty()) browser().rename(column, row, name);
    Value value = Dict{};
    if (!browser().items(column)[row].isContainer()) value = entered(column, row);
    if (auto* const list = parent.as<List>()) return list->push_back(std::move(value));
    parent.as<Dict>()->set(browser().items(column)[row].name, std::move(value));
  }
  /// Enters a value in the item and returns it.
  Value entered(std::size_t column, std::size_t row) {
    browser().select(column, row);
    const std::uint64_t item = browser().items(column)[row].id;
    const bool isOctal = browser().items(column)[row].name == "SockPathMode";
    const auto number = static_cast<std::int64_t>(below(8));
    switch (browser().items(column)[row].type()) {
      case BrowserItem::Type::Boolean:
        browser().setOn(item, number % 2 == 0);
        return number % 2 == 0;
      case BrowserItem::Type::Integer:
        browser().enterText(item, isOctal ? "0755" : std::to_string(number));
        return isOctal ? std::int64_t{493} : number;
      case BrowserItem::Type::Real:
        browser().enterText(item, std::to_string(number) + ".25");
        return static_cast<double>(number) + 0.25;
      case BrowserItem::Type::String:
        browser().enterText(item, "text");
        return "text";
      case BrowserItem::Type::Strings:
        browser().setStrings(item, {"a", "", "b"});
        return List{"a", "", "b"};
      default:
        throw std::runtime_error("no value to enter");
    }
  }
  void setValue(std::size_t column, std::size_t row) {
    const BrowserItem& item = browser().items(column)[row];
    if (item.isContainer() || item.type() == BrowserItem::Type::Kept) return;
    Value& expected = expectedAt(column, row);
    expected = entered(column, row);
  }
  void paste(std::size_t column) {
    const std::string name = "name" + std::to_string(++m_lastName);
    const Value pasted = Dict{{"x", List{1, propertylist::Data{"y"}}}, {"SockType", Dict{}}};
    Value& parent = expectedAt(column);
    const bool isElement = parent.as<List>() != nullptr;
    const auto text = propertylist::writeXml(isElement ? Value(List{pasted}) : Value(Dict{{name, pasted}}));
    isElement ? parent.as<List>()->push_back(pasted) : parent.as<Dict>()->set(name, pasted);
    ASSERT_EQ(browser().paste(column, *text), std::nullopt);
  }

  std::minstd_rand m_random;
  EditedBrowser m_edited;
  Value m_expected;
  int m_lastName = 0;
};

const Dict sockets = {
    {"A", Dict{{"SockServiceName", "1069"}, {"SockPathMode", 438}, {"Odd", List{1, "x"}}, {"Bonjour", List{"b"}}}},
    {"B", List{Dict{{"SockPassive", false}}, Dict{{"SockPathOwner", 5}, {"Odd", 2.5}}, "not a socket"}},
    {"C", propertylist::Date{1}}};
const Dict services = {
    {"a", true}, {"b", Dict{{"HostSpecialPort", 5}, {"ExceptionServer", Dict{{"x", "y"}}}, {"Odd", 1}}}, {"c", 5}};
const Dict events = {
    {"stream", Dict{{"event", Dict{{"s", "t"}, {"r", 86400.0}, {"d", Dict{{"deep", Dict{{"er", List{}}}}}}}}}},
    {"odd", 1}};

TEST(BrowserEditsTest, RandomEditsDoWhatTheyDoToAPlainDictionary) {
  const std::pair<const char*, const Dict&> starts[] = {
      {"Sockets", sockets}, {"MachServices", services}, {"LaunchEvents", events}};
  for (unsigned seed = 1; seed <= 20; ++seed) {
    for (const auto& [key, start] : starts) {
      RandomEdits edits(seed, key, start);
      const auto before = propertylist::writeXml(edits.edited().plist().encodeAll());
      for (int i = 0; i < 25; ++i) {
        edits.edit();
        edits.expectSameValue();
        if (testing::Test::HasFatalFailure()) FAIL() << key << " seed " << seed << " edit " << i;
      }
      EXPECT_EQ(edits.edited().refusal(), "");
      while (edits.edited().stepCount() > 0) edits.edited().undo();
      EXPECT_EQ(*propertylist::writeXml(edits.edited().plist().encodeAll()), *before) << key << " seed " << seed;
    }
  }
}

}  // namespace
}  // namespace mirvel
