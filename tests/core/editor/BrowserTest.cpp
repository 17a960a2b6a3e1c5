#include "core/editor/Browser.h"

#include <gmock/gmock.h>

#include "core/editor/BrowserFixture.h"

namespace mirvel {
namespace {

using jobfile::Dict;
using jobfile::List;
using propertylist::Value;
using testing::ElementsAre;
using testing::Optional;
using Type = BrowserItem::Type;

/// A socket of one name.
std::optional<Value> socket(Dict keys) {
  return Dict{{"L", std::move(keys)}};
}
std::optional<Value> service(Value value) {
  return Dict{{"s", std::move(value)}};
}
std::optional<Value> descriptor(Dict keys) {
  return Dict{{"stream", Dict{{"event", std::move(keys)}}}};
}

struct Rule {
  const char* key;
  std::optional<Value> start;
  void (*edit)(EditedBrowser& b);
  std::optional<Value> saved;
  std::string refusal = {};
};

void check(const std::vector<Rule>& rules) {
  for (std::size_t i = 0; i < rules.size(); ++i) {
    const Rule& rule = rules[i];
    SCOPED_TRACE("rule " + std::to_string(i) + ", " + rule.key);
    EditedBrowser b(rule.key, rule.start);
    const auto before = propertylist::writeXml(b.plist().encodeAll());
    rule.edit(b);
    EXPECT_EQ(b.saved(), rule.saved);
    EXPECT_EQ(b.refusal(), rule.refusal);
    EXPECT_EQ(b.isUnfinished(), !rule.refusal.empty());
    while (b.stepCount() > 0) b.undo();
    EXPECT_EQ(*propertylist::writeXml(b.plist().encodeAll()), *before);
    EXPECT_EQ(b.refusal(), "");
  }
}

using B = EditedBrowser;

TEST(BrowserTest, ANewRowHasItsOwnDefaultOrNoValue) {
  const std::string number = "“Sockets.L.SockPathOwner” can’t be saved: Enter a whole number.";
  check({
      {"Sockets", {}, [](B& b) { b.add({}, "Socket"); }, {}},
      {"Sockets", {}, [](B& b) { b.add({}, "Socket", "L"); }, socket({})},
      {"Sockets", socket({}), [](B& b) { b.add({"L"}, "SockPassive"); }, socket({{"SockPassive", true}})},
      {"Sockets", socket({}), [](B& b) { b.add({"L"}, "Bonjour"); }, socket({}),
       "“Sockets.L.Bonjour” can’t be saved: Choose a value, or delete the row."},
      {"Sockets", socket({}), [](B& b) { b.add({"L"}, "SockPathOwner"); }, socket({}), number},
      {"Sockets", socket({}), [](B& b) { b.add({"L"}, "SockType"); }, socket({}),
       "“Sockets.L.SockType” can’t be saved: Enter a text, or delete the row."},
      {"Sockets", socket({}), [](B& b) { b.add({"L"}, "SockPathMode"); }, socket({}),
       "“Sockets.L.SockPathMode” can’t be saved: Enter an octal number, such as 600."},
      {"MachServices", {}, [](B& b) { b.add({}, "Boolean", "s"); }, service(true)},
      {"MachServices", {}, [](B& b) { b.add({}, "Dictionary", "s"); }, service(Dict{})},
      {"MachServices", service(Dict{}), [](B& b) { b.add({"s"}, "ResetAtClose"); },
       service(Dict{{"ResetAtClose", false}})},
      {"MachServices", service(Dict{}), [](B& b) { b.add({"s"}, "ExceptionServer"); },
       service(Dict{{"ExceptionServer", Dict{}}})},
      {"MachServices", service(Dict{}), [](B& b) { b.add({"s"}, "HostSpecialPort"); }, service(Dict{}),
       "“MachServices.s.HostSpecialPort” can’t be saved: Enter a whole number."},
      {"LaunchEvents", {}, [](B& b) { b.add({}, "Dictionary", "stream"); }, Dict{{"stream", Dict{}}}},
      {"LaunchEvents", descriptor({}),
       [](B& b) {
         b.add({"stream", "event"}, "Double", "x");
       },
       descriptor({}), "“LaunchEvents.stream.event.x” can’t be saved: Enter a number."},
      {"LaunchEvents", descriptor({}),
       [](B& b) {
         b.add({"stream", "event"}, "Array (String)", "x");
       },
       descriptor({}), "“LaunchEvents.stream.event.x” can’t be saved: Choose a value, or delete the row."},
      // Removing the row ends the refusal.
      {"Sockets", socket({}),
       [](B& b) {
         b.add({"L"}, "SockPathOwner"), b.remove({"L", "SockPathOwner"});
       },
       socket({})},
      // A key can't be added twice.
      {"Sockets", socket({{"SockPassive", false}}), [](B& b) { b.add({"L"}, "SockPassive"); },
       socket({{"SockPassive", false}})},
  });
}

TEST(BrowserTest, ValuesKeepTheirTypes) {
  check({
      {"Sockets", socket({{"SockServiceName", "1069"}}),
       [](B& b) {
         b.type({"L", "SockServiceName"}, "1070");
       },
       socket({{"SockServiceName", "1070"}})},
      {"Sockets", socket({{"SockServiceName", 1069}}),
       [](B& b) {
         b.type({"L", "SockServiceName"}, "1070");
       },
       socket({{"SockServiceName", 1070}})},
      {"Sockets", socket({{"SockServiceName", 1069}}),
       [](B& b) {
         b.type({"L", "SockServiceName"}, "ssh");
       },
       socket({{"SockServiceName", 1069}}), "“Sockets.L.SockServiceName” can’t be saved: Enter a whole number."},
      {"Sockets", socket({}),
       [](B& b) {
         b.add({"L"}, "SockServiceName"), b.type({"L", "SockServiceName"}, "8080");
       },
       socket({{"SockServiceName", 8080}})},
      {"Sockets", socket({}),
       [](B& b) {
         b.add({"L"}, "SockServiceName");
         for (const char* text : {"8", "80", "80x", "x", "ss", "ssh"}) b.type({"L", "SockServiceName"}, text);
       },
       socket({{"SockServiceName", "ssh"}})},
      {"Sockets", socket({{"SockPathMode", 438}}),
       [](B& b) {
         b.type({"L", "SockPathMode"}, "0600");
       },
       socket({{"SockPathMode", 384}})},
      {"Sockets", socket({{"SockPathMode", 438}}),
       [](B& b) {
         b.type({"L", "SockPathMode"}, "680");
       },
       socket({{"SockPathMode", 438}}), "“Sockets.L.SockPathMode” can’t be saved: Enter an octal number, such as 600."},
      {"Sockets", socket({{"SockPathOwner", 5}}),
       [](B& b) {
         b.type({"L", "SockPathOwner"}, "99999999999999999999");
       },
       socket({{"SockPathOwner", 5}}), "“Sockets.L.SockPathOwner” can’t be saved: Enter a whole number."},
      {"Sockets", socket({{"SockPathOwner", 5}}),
       [](B& b) {
         b.type({"L", "SockPathOwner"}, "-2");
       },
       socket({{"SockPathOwner", -2}})},
      {"LaunchEvents", descriptor({{"x", 86400.0}}),
       [](B& b) {
         b.type({"stream", "event", "x"}, "3600");
       },
       descriptor({{"x", 3600.0}})},
      {"LaunchEvents", descriptor({{"x", 0.5}}),
       [](B& b) {
         b.type({"stream", "event", "x"}, "1,5");
       },
       descriptor({{"x", 0.5}}), "“LaunchEvents.stream.event.x” can’t be saved: Enter a number."},
      {"LaunchEvents", descriptor({{"x", 0.5}}),
       [](B& b) {
         b.type({"stream", "event", "x"}, "1e999");
       },
       descriptor({{"x", 0.5}}), "“LaunchEvents.stream.event.x” can’t be saved: Enter a number."},
      {"LaunchEvents", descriptor({{"x", "t"}}),
       [](B& b) {
         b.type({"stream", "event", "x"}, "");
       },
       descriptor({{"x", "t"}}), "“LaunchEvents.stream.event.x” can’t be saved: Enter a text, or delete the row."},
      {"LaunchEvents", descriptor({{"x", ""}}),
       [](B& b) {
         b.type({"stream", "event", "x"}, "t"), b.type({"stream", "event", "x"}, "");
       },
       descriptor({{"x", ""}})},
      {"LaunchEvents", descriptor({{"x", List{}}}),
       [](B& b) {
         b.setStrings({"stream", "event", "x"}, {"", "a"});
       },
       descriptor({{"x", List{"", "a"}}})},
      {"LaunchEvents", descriptor({{"x", List{"a"}}}),
       [](B& b) {
         b.setStrings({"stream", "event", "x"}, {});
       },
       descriptor({{"x", List{"a"}}}),
       "“LaunchEvents.stream.event.x” can’t be saved: Choose a value, or delete the row."},
      {"Sockets", socket({}),
       [](B& b) {
         b.add({"L"}, "Bonjour"), b.setOn({"L", "Bonjour"}, false);
       },
       socket({{"Bonjour", false}})},
  });
}

TEST(BrowserTest, OnlyWhatIsEditedChanges) {
  const Dict odd = {{"Date", propertylist::Date{1}},
                    {"Huge", propertylist::Integer::fromUnsigned(UINT64_MAX)},
                    {"Mixed", List{1, "x"}},
                    {"Numbers", List{1, 2}},
                    {"Bytes", propertylist::Data{"x"}},
                    {"None", Dict{}}};
  Dict passive = odd;
  passive.set("SockPassive", true);
  Dict withoutMixed = odd;
  (void)withoutMixed.remove("Mixed");
  Dict named = withoutMixed;
  named.set("Named", List{1, "x"});
  const Value sockets = List{Dict{{"SockType", "dgram"}}, Dict{{"SockPassive", false}}};
  check({
      {"Sockets", socket(odd), [](B& b) { b.add({"L"}, "SockPassive"); }, socket(passive)},
      {"Sockets", socket(odd),
       [](B& b) {
         b.remove({"L", "Mixed"});
       },
       socket(withoutMixed)},
      {"Sockets", socket(odd),
       [](B& b) {
         b.rename({"L", "Mixed"}, "Named");
       },
       socket(named)},
      {"MachServices", Dict{{"s", Dict{{"Odd", 1.0}, {"ResetAtClose", true}}}, {"t", 5}},
       [](B& b) {
         b.setOn({"s", "ResetAtClose"}, false), b.add({}, "Boolean", "u");
       },
       Dict{{"s", Dict{{"Odd", 1.0}, {"ResetAtClose", false}}}, {"t", 5}, {"u", true}}},
      // The last item takes the key with it, but an empty dictionary of the file stays if it isn't touched.
      {"Sockets", socket(odd), [](B& b) { b.remove({"L"}); }, {}},
      {"Sockets", Dict{}, [](B& b) { b.add({}, "Socket"), b.browser.cancelNaming(0, 0); }, Dict{}},
      {"Sockets", "wrong", [](B& b) { b.fill(), b.add({}, "Socket"), b.browser.cancelNaming(0, 0); }, "wrong"},
      {"Sockets", Dict{}, [](B& b) { b.add({}, "Socket", "L"), b.remove({"L"}); }, {}},
      // Several sockets of one name keep their form.
      {"Sockets", Dict{{"L", sockets}},
       [](B& b) {
         b.setOn({"L", "2", "SockPassive"}, true);
       },
       Dict{{"L", List{Dict{{"SockType", "dgram"}}, Dict{{"SockPassive", true}}}}}},
      {"Sockets", Dict{{"L", sockets}}, [](B& b) { b.add({"L"}, "Socket"); },
       Dict{{"L", List{Dict{{"SockType", "dgram"}}, Dict{{"SockPassive", false}}, Dict{}}}}},
      {"Sockets", Dict{{"L", sockets}},
       [](B& b) {
         b.remove({"L", "1"});
       },
       Dict{{"L", List{Dict{{"SockPassive", false}}}}}},
      {"Sockets", Dict{{"L", sockets}},
       [](B& b) {
         b.rename({"L", "1"}, "x");
       },
       Dict{{"L", sockets}}},
      // Fixed keys can't be renamed, misspelt ones can.
      {"Sockets", socket({{"SockType", "x"}, {"Sockfamily", "y"}}),
       [](B& b) {
         b.rename({"L", "SockType"}, "x"), b.rename({"L", "Sockfamily"}, "SockFamily");
       },
       socket({{"SockType", "x"}, {"SockFamily", "y"}})},
      // An empty key of the file is one.
      {"Sockets", Dict{{"", Dict{}}}, [](B& b) { b.add({}, "Socket", "L"); }, Dict{{"", Dict{}}, {"L", Dict{}}}},
  });
}

TEST(BrowserTest, NamesThatADictionaryCantHaveAreRefused) {
  const Dict two = {{"a", true}, {"b", Dict{{"Odd", 1}}}};
  const std::string noName = ": Enter a name, or delete the row.";
  check({
      {"MachServices", two, [](B& b) { b.rename({"b"}, "a"); }, two,
       "“MachServices.a” can’t be saved: More than one row is called “a”"},
      {"MachServices", two, [](B& b) { b.rename({"b"}, "a"), b.remove({"a"}); }, Dict{{"a", Dict{{"Odd", 1}}}}},
      {"MachServices", two, [](B& b) { b.rename({"b"}, ""); }, two, "“MachServices.” can’t be saved" + noName},
      {"MachServices", two, [](B& b) { b.rename({"a"}, ""), b.rename({""}, "c"); },
       Dict{{"b", Dict{{"Odd", 1}}}, {"c", true}}},
      // Content makes a row count that has no name yet.
      {"MachServices", two, [](B& b) { b.add({}, "Boolean"); }, two},
      {"MachServices", two, [](B& b) { b.add({}, "Boolean"), b.setOn({""}, false); }, two,
       "“MachServices.” can’t be saved" + noName},
      {"LaunchEvents",
       {},
       [](B& b) { b.add({}, "Dictionary"), b.add({""}, "Dictionary", "event"); },
       {},
       "“LaunchEvents.” can’t be saved" + noName},
      {"MachServices", two,
       [](B& b) {
         b.add({"b"}, "HostSpecialPort"), b.type({"b", "HostSpecialPort"}, "5x");
       },
       two, "“MachServices.b.HostSpecialPort” can’t be saved: Enter a whole number."},
  });
}

TEST(BrowserTest, ATypeChangesOnlyIfNothingIsLost) {
  using enum BrowserItem::Type;
  const struct {
    Value before;
    BrowserItem::Type type;
    Value after;
  } table[] = {
      {"12", Integer, 12},
      {"012", Integer, "012"},
      {"12 ", Integer, "12 "},
      {"12", Real, 12.0},
      {"12.50", Real, "12.50"},
      {"0.1", Real, 0.1},
      {12, String, "12"},
      {12, Real, 12.0},
      {INT64_MAX, Real, INT64_MAX},
      {-5.0, Integer, -5},
      {-0.0, Integer, -0.0},
      {2.5, Integer, 2.5},
      {86400.0, String, "86400"},
      {true, Integer, 1},
      {2, Boolean, 2},
      {"true", Boolean, true},
      {"yes", Boolean, "yes"},
      {"a", Strings, List{"a"}},
      {List{"a"}, String, "a"},
      {List{"a", "b"}, String, List{"a", "b"}},
      {Dict{{"y", 1}}, String, Dict{{"y", 1}}},
      {List{1}, String, List{1}},
      {true, Dictionary, true},
  };
  for (const auto& row : table) {
    EditedBrowser b("LaunchEvents", descriptor({{"x", row.before}}));
    b.setType({"stream", "event", "x"}, row.type);
    EXPECT_EQ(b.saved(), descriptor({{"x", row.after}}));
    EXPECT_EQ(b.refusal(), "");
  }
  check({
      {"Sockets", socket({{"Odd", 1}}), [](B& b) { b.setType({"L"}, Type::Array); },
       Dict{{"L", List{Dict{{"Odd", 1}}}}}},
      {"Sockets", Dict{{"L", List{Dict{{"Odd", 1}}}}}, [](B& b) { b.setType({"L"}, Type::Dictionary); },
       socket({{"Odd", 1}})},
      {"Sockets", Dict{{"L", List{Dict{}, Dict{}}}}, [](B& b) { b.setType({"L"}, Type::Dictionary); },
       Dict{{"L", List{Dict{}, Dict{}}}}},
      {"Sockets", socket({{"SockServiceName", "1069"}}),
       [](B& b) {
         b.setType({"L", "SockServiceName"}, Type::Integer);
       },
       socket({{"SockServiceName", 1069}})},
      {"Sockets", socket({{"SockServiceName", "80"}}),
       [](B& b) {
         b.setType({"L", "SockServiceName"}, Type::Real);
       },
       socket({{"SockServiceName", "80"}})},
      {"Sockets", socket({}),
       [](B& b) {
         b.add({"L"}, "Bonjour");
         b.setType({"L", "Bonjour"}, Type::String);
         b.type({"L", "Bonjour"}, "name");
       },
       socket({{"Bonjour", "name"}})},
      {"MachServices", service(true), [](B& b) { b.setType({"s"}, Type::Dictionary); }, service(Dict{})},
      {"MachServices", service(Dict{}), [](B& b) { b.setType({"s"}, Type::Boolean); }, service(true)},
      {"MachServices", service(false), [](B& b) { b.setType({"s"}, Type::Dictionary); }, service(false)},
  });
}

TEST(BrowserTest, CopiesArePastedAsTheyWere) {
  const Dict keys = {{"Odd", List{1, propertylist::Data{"x"}}}, {"SockPathMode", 384}};
  EditedBrowser from("Sockets", Dict{{"L", keys}, {"M", List{keys}}});
  const auto dictionary = from.browser.copy(0, 0);
  from.go({"M"});
  const auto element = from.browser.copy(1, 0);
  ASSERT_TRUE(dictionary && element);

  EditedBrowser to("Sockets", {});
  EXPECT_EQ(to.browser.paste(0, *dictionary), std::nullopt);
  EXPECT_EQ(to.shown(), "[L] | Odd SockPathMode");
  EXPECT_EQ(to.saved(), Value(Dict{{"L", keys}}));
  EXPECT_TRUE(to.browser.paste(1, *element)) << "an array has no names";
  to.setType({"L"}, Type::Array);
  EXPECT_EQ(to.browser.paste(1, *element), std::nullopt);
  EXPECT_EQ(to.browser.paste(1, "<dict><key>SockType</key><string>dgram</string></dict>"), std::nullopt);
  EXPECT_EQ(to.saved(), Value(Dict{{"L", List{keys, keys, Dict{{"SockType", "dgram"}}}}}));

  EXPECT_EQ(to.browser.paste(0, *dictionary), std::nullopt);
  EXPECT_EQ(to.refusal(), "“Sockets.L” can’t be saved: More than one row is called “L”");
  to.undo();
  to.go({"L"});
  to.browser.duplicate(0, 0);
  to.browser.duplicate(0, 0);
  EXPECT_EQ(to.shown(), "L [L 3] L 2 | 1 2 3");
  EXPECT_EQ(to.refusal(), "");
}

TEST(BrowserTest, WhatCantBePastedIsRefusedWithAReason) {
  std::string deep = "<dict/>";
  for (int i = 0; i < 509; ++i) deep.insert(0, "<dict><key>x</key>").append("</dict>");
  EditedBrowser b("LaunchEvents", descriptor({{"list", List{"a"}}, {"other", 1}}));
  const auto before = b.saved();
  b.go({"stream", "event", "other"});
  for (const std::string& text : {std::string("garbage"), std::string(), std::string("<true/>"), std::string("<dict/>"),
                                  std::string("<array><dict/></array>"), deep}) {
    const auto invalid = b.browser.paste(2, text);
    ASSERT_TRUE(invalid);
    EXPECT_EQ(invalid->message, "The text on the clipboard can’t be pasted here");
    EXPECT_FALSE(invalid->reason.empty());
  }
  EXPECT_EQ(b.saved(), before);
  b.go({"stream", "event", "list"});
  EXPECT_EQ(b.browser.paste(2, "b\r\n\nc\n"), std::nullopt);
  EXPECT_EQ(b.saved(), descriptor({{"list", List{"a", "b", "c"}}, {"other", 1}}));
}

TEST(BrowserTest, WhatCantBeSavedIsNotCopied) {
  EditedBrowser b("Sockets", Dict{{"L", Dict{}}, {"M", Dict{{"a", 1}, {"b", 2}}}});
  b.rename({"M", "b"}, "a");
  b.add({"L"}, "SockPathOwner");
  EXPECT_FALSE(b.browser.copy(0, b.row(0, "L"))) << "an entry without a value would be left out";
  EXPECT_FALSE(b.browser.copy(0, b.row(0, "M"))) << "only one of two entries of the same name would be copied";
  b.type({"L", "SockPathOwner"}, "5");
  EXPECT_TRUE(b.browser.copy(0, b.row(0, "L")));
}

TEST(BrowserTest, ATreeThatIsTooDeepForAFileIsRefused) {
  Value value = Dict{};
  std::vector<std::string> path;
  for (int depth = 4; depth <= 512; ++depth) {  // with the file, the key and the innermost dictionary
    value = Dict{{"x", std::move(value)}};
    path.emplace_back("x");
  }
  const Value innermost = value;
  EditedBrowser b("LaunchEvents", value);
  b.add(path, "Dictionary", "deepest");
  EXPECT_EQ(b.refusal(), "");
  EXPECT_TRUE(propertylist::read(*propertylist::writeXml(b.plist().encodeAll())));
  const auto saved = b.saved();
  path.emplace_back("deepest");
  b.add(path, "Dictionary", "too deep");
  EXPECT_EQ(b.refusal(), "“LaunchEvents” can’t be saved: The property list is nested too deeply.");
  EXPECT_EQ(b.saved(), saved);
  b.undo();
  EXPECT_EQ(b.refusal(), "");
}

TEST(BrowserTest, AValueThatIsNoDictionaryIsReplacedOnlyAfterItsRemoval) {
  for (const char* const key : {"Sockets", "MachServices", "LaunchEvents"}) {
    for (const Value& value : {Value("text"), Value(List{Dict{}}), Value(1)}) {
      EditedBrowser b(key, value);
      for (const auto& offer : b.browser.offers(0)) EXPECT_FALSE(offer.isEnabled);
      EXPECT_EQ(b.browser.add(0, 0), std::nullopt);
      EXPECT_TRUE(b.browser.paste(0, "<dict><key>a</key><dict/></dict>"));
      EXPECT_EQ(b.browser.emptyText(),
                "The value of “" + std::string(key) + "” isn’t a dictionary. Delete it before you add entries.");
      EXPECT_EQ(b.saved(), value);
      ASSERT_TRUE(b.plist().replaceTree(b.browser.schema().key, std::nullopt));
      b.fill();
      EXPECT_EQ(b.browser.paste(0, "<dict><key>a</key><dict/></dict>"), std::nullopt);
      EXPECT_EQ(b.saved(), Value(Dict{{"a", Dict{}}}));
    }
  }
}

TEST(BrowserTest, ARefillKeepsTheSelectionAndWhatIsBeingAdded) {
  EditedBrowser b("Sockets", Dict{{"a", Dict{{"SockType", "dgram"}}}, {"b", Dict{}}});
  b.rename({"a"}, "z");
  b.go({"z", "SockType"});
  EXPECT_EQ(b.shown(), "[z] b | [SockType]") << "a new name keeps its place";
  b.undo();
  EXPECT_EQ(b.shown(), "[a] b | [SockType]");

  b.add({"b"}, "SockPathOwner");
  b.type({"b", "SockPathOwner"}, "5x");
  b.add({}, "Socket");
  EXPECT_EQ(b.shown(), "a b [] | ");
  b.undo();
  EXPECT_EQ(b.shown(), "a b [] | ") << "a row without a name is no edit";
  EXPECT_EQ(b.preview({"b", "SockPathOwner"}).text, "");
  b.undo();
  EXPECT_EQ(b.shown(), "a [b]  | ");

  // Another part of the editor replaces the value.
  b.go({"a", "SockType"});
  const auto item = b.browser.preview()->item;
  ASSERT_TRUE(b.plist().replaceTree(jobfile::Plist::CodingKeys::Sockets,
                                    Dict{{"0", Dict{}}, {"a", Dict{{"SockFamily", "Unix"}, {"SockType", "x"}}}}));
  b.fill();
  EXPECT_EQ(b.shown(), "0 [a]  | SockFamily [SockType]");
  EXPECT_EQ(b.browser.preview()->item, item) << "an edit that began before belongs to this item";
}

TEST(BrowserTest, RemovingSelectsTheNextItem) {
  EditedBrowser b("MachServices", Dict{{"a", true}, {"b", true}, {"c", true}});
  b.remove({"b"});
  EXPECT_EQ(b.shown(), "a [c]");
  b.remove({"c"});
  EXPECT_EQ(b.shown(), "[a]");
  b.remove({"a"});
  EXPECT_EQ(b.shown(), "");
}

TEST(BrowserTest, PreviewsShowTheValueAndItsProblem) {
  using enum BrowserPreview::Control;
  const struct {
    const char* key;
    Value value;
    BrowserPreview::Control control;
    const char* text;
  } table[] = {
      {"SockPathMode", 384, Text, "600"},
      {"SockPathOwner", 1000, Text, "1000"},
      {"SockPassive", false, Box, "Off"},
      {"SockPassive", "yes", Text, "yes"},
      {"Odd", 86400.0, Text, "86400"},
      {"Bonjour", List{"a", "b"}, Strings, ""},
      {"Odd", List{1, 2}, Description, "– 1\n– 2"},
      {"Odd", propertylist::Integer::fromUnsigned(UINT64_MAX), Description, "18446744073709551615"},
  };
  for (const auto& row : table) {
    EditedBrowser b("Sockets", socket({{row.key, row.value}}));
    const BrowserPreview preview = b.preview({"L", row.key});
    EXPECT_EQ(preview.control, row.control) << row.key;
    EXPECT_EQ(preview.text, row.text) << row.key;
    EXPECT_EQ(preview.problem, std::nullopt) << row.key;
  }
  EditedBrowser b("Sockets", socket({{"SockPathMode", 384}, {"SockType", "x"}}));
  EXPECT_THAT(b.preview({"L", "SockType"}).choices, ElementsAre("stream", "dgram", "seqpacket"));
  const auto mode = b.preview({"L", "SockPathMode"});
  EXPECT_TRUE(mode.help.starts_with("This optional key specifies the mode of the socket."));
  EXPECT_TRUE(b.browser.matchesValue(mode.item, "0600"));
  EXPECT_FALSE(b.browser.matchesValue(mode.item, "601"));
  b.browser.enterText(mode.item, "9");
  EXPECT_EQ(b.browser.preview()->text, "9");
  EXPECT_THAT(b.browser.problem(1, 0), Optional(std::string("Enter an octal number, such as 600.")));
  EXPECT_THAT(b.browser.refusedPath(), Optional(ElementsAre(0U, 0U)));
  b.add({"L"}, "Bonjour");
  EXPECT_EQ(b.preview({"L", "Bonjour"}).isOn, std::nullopt) << "nothing has been chosen";
}

TEST(BrowserTest, AGermanCommaIsADecimalPoint) {
  EditedBrowser b("LaunchEvents", descriptor({{"x", 0.5}}), "de");
  b.type({"stream", "event", "x"}, "1,5");
  EXPECT_EQ(b.saved(), descriptor({{"x", 1.5}}));
  b.type({"stream", "event", "x"}, "2.5");
  EXPECT_EQ(b.saved(), descriptor({{"x", 2.5}})) << "numbers are shown with a point";
}

TEST(BrowserTest, PlacesThatDontExistHaveNoEffect) {
  EditedBrowser b("Sockets", socket({{"SockPassive", true}}));
  b.go({"L"});
  const auto before = b.saved();
  for (const auto& [column, row] : {std::pair(0U, 1U), std::pair(1U, 1U), std::pair(2U, 0U), std::pair(9U, 9U)}) {
    b.browser.select(column, row);
    b.browser.rename(column, row, "x");
    b.browser.remove(column, row);
    b.browser.duplicate(column, row);
    b.browser.cancelNaming(column, row);
    b.browser.setType(column, row, Type::String);
    EXPECT_EQ(b.browser.copy(column, row), std::nullopt);
    EXPECT_EQ(b.browser.title(column, row), "");
    EXPECT_EQ(b.browser.problem(column, row), std::nullopt);
    EXPECT_TRUE(b.browser.types(column, row).empty());
  }
  EXPECT_EQ(b.browser.add(2, 0), std::nullopt);
  EXPECT_EQ(b.browser.add(0, 1), std::nullopt);
  b.browser.enterText(4711, "x");
  b.browser.setOn(4711, false);
  b.browser.setStrings(4711, {});
  EXPECT_EQ(b.shown(), "[L] | SockPassive");
  EXPECT_EQ(b.saved(), before);
  EXPECT_EQ(b.stepCount(), 0U);
}

}  // namespace
}  // namespace mirvel
