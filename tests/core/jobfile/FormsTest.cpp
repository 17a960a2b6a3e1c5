#include <gtest/gtest.h>

#include "core/jobfile/JobFile.h"

namespace mirvel::jobfile {
namespace {

const propertylist::Value anyDate = propertylist::Date{1};
const propertylist::Value tooLarge = propertylist::Integer::fromUnsigned(std::uint64_t{1} << 63U);

struct Written {
  const char* key;
  propertylist::Value read;
  std::optional<propertylist::Value> written;  // none: the key is left out
};

/// Compares the encoding of a decoded value. A second round trip must not change anything.
void expectWritten(const std::vector<Written>& table) {
  for (const Written& row : table) {
    SCOPED_TRACE(row.key + (": " + testing::PrintToString(row.read)));
    const Dict file = decoded(fileWith(row.key, row.read)).encode();
    const propertylist::Value* written = file.find(row.key);
    EXPECT_EQ(written ? std::optional(*written) : std::nullopt, row.written);
    EXPECT_EQ(decoded(file).encode(), file);
  }
}

std::vector<Written> unchanged(const char* key, const std::vector<propertylist::Value>& values) {
  std::vector<Written> rows;
  for (const propertylist::Value& value : values) rows.push_back({key, value, value});
  return rows;
}

TEST(FormsTest, PlainValuesAreWrittenUnchangedEvenFalseAndEmpty) {
  expectWritten({
      {"RunAtLoad", false, false},
      {"Disabled", true, true},
      {"Program", "", ""},
      {"ProgramArguments", List{}, List{}},
      {"EnvironmentVariables", Dict{}, Dict{}},
      {"LimitLoadToHardware", Dict{{"model", List{"a", "b"}}}, Dict{{"model", List{"a", "b"}}}},
      {"Nice", 0, 0},
      {"Nice", -20.0, -20},
      {"TimeOut", std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::min()},
      {"ProcessType", "Odd", "Odd"},
  });
}

TEST(FormsTest, KeepAliveIsABooleanOrConditions) {
  expectWritten(unchanged("KeepAlive", {true, false, Dict{}, Dict{{"SuccessfulExit", false}},
                                        Dict{{"SuccessfulExit", true},
                                             {"NetworkState", false},
                                             {"PathState", Dict{{"/a", true}, {"/b", false}}},
                                             {"OtherJobEnabled", Dict{}},
                                             {"Crashed", true},
                                             {"AfterInitialDemand", false}}}));
  expectWritten({
      {"KeepAlive", "yes", Dict{}},
      {"KeepAlive", 1, Dict{}},
      {"KeepAlive", List{true}, Dict{}},
      {"KeepAlive", Dict{{"Crashed", true}, {"Odd", 1}}, Dict{{"Crashed", true}}},
  });
}

TEST(FormsTest, CalendarIntervalsKeepTheirFormAndTheirNumbers) {
  const Dict odd{{"Minute", 99}, {"Hour", -1}, {"Day", 40}, {"Weekday", 7}, {"Month", 13}};
  expectWritten(unchanged("StartCalendarInterval", {odd, Dict{}, List{odd}, List{Dict{}, odd}}));
  expectWritten({
      {"StartCalendarInterval", Dict{{"Hour", 9.0}, {"Second", 1}}, Dict{{"Hour", 9}}},
      {"StartCalendarInterval", List{}, std::nullopt},
  });
}

TEST(FormsTest, SessionTypesKeepTheirForm) {
  expectWritten(unchanged("LimitLoadToSessionType", {"Aqua", "Odd", List{"Aqua"}, List{"Aqua", "Background"}}));
  expectWritten({
      {"LimitLoadToSessionType", List{}, std::nullopt},
      {"LimitLoadToSessionType", Dict{}, std::nullopt},
  });
}

TEST(FormsTest, UmaskIsANumberWhateverItsForm) {
  expectWritten({
      {"Umask", 18, 18},
      {"Umask", 18.0, 18},
      {"Umask", "022", 18},
      {"Umask", "0", 0},
      {"Umask", "18", 18},
      {"Umask", "+18", 18},
      {"Umask", "-1", -1},
      {"Umask", "+-1", std::nullopt},
      {"Umask", "089", std::nullopt},
      {"Umask", "18 ", std::nullopt},
      {"Umask", " 18", std::nullopt},
      {"Umask", "", std::nullopt},
      {"Umask", "9223372036854775808", std::nullopt},
      {"Umask", true, std::nullopt},
      {"Umask", 18.5, std::nullopt},
      {"Umask", tooLarge, std::nullopt},
      {"Umask", Dict{}, std::nullopt},
  });
  EXPECT_TRUE(decoded(fileWith("Umask", "no number")).umask) << "the field is there, and holds nothing";
}

TEST(FormsTest, ResourceLimitsDropWhatTheyDontKnow) {
  Dict all;
  for (const char* key : {"Core", "CPU", "Data", "FileSize", "MemoryLock", "NumberOfFiles", "NumberOfProcesses",
                          "ResidentSetSize", "Stack"})
    all.set(key, static_cast<int>(all.size()));
  expectWritten(unchanged("SoftResourceLimits", {all, Dict{}}));
  expectWritten({{"HardResourceLimits", Dict{{"NumberOfFiles", 1024}, {"Odd", 1}}, Dict{{"NumberOfFiles", 1024}}}});
}

/// A dictionary with one good entry and that one.
propertylist::Value withGood(const propertylist::Value& good, const propertylist::Value& other) {
  return Dict{{"good", good}, {"other", other}};
}

TEST(FormsTest, SocketsKeepTheirFormsAndLoseWhatDoesntFit) {
  const Dict full{{"SockType", "stream"},     {"SockPassive", true},        {"SockNodeName", "host"},
                  {"SockServiceName", "ssh"}, {"SockFamily", "IPv4"},       {"SockProtocol", "TCP"},
                  {"SockPathName", "/s"},     {"SecureSocketWithKey", "K"}, {"SockPathOwner", 1},
                  {"SockPathGroup", 2},       {"SockPathMode", 438},        {"Bonjour", List{"a", "b"}},
                  {"MulticastGroup", "g"}};
  const Dict good{{"SockServiceName", 8080}};
  std::vector<Written> table =
      unchanged("Sockets", {Dict{}, Dict{{"a", full}}, Dict{{"a", Dict{}}}, Dict{{"a", List{full, good}}},
                            Dict{{"a", List{List{good}, good}}}, Dict{{"a", Dict{{"Bonjour", false}}}},
                            Dict{{"a", Dict{{"Bonjour", "name"}}}}, Dict{{"a", Dict{{"Bonjour", List{}}}}}});
  const std::vector<std::pair<propertylist::Value, std::optional<propertylist::Value>>> others = {
      {"a string", std::nullopt},
      {Dict{{"SockPassive", "yes"}}, std::nullopt},
      {Dict{{"SockPathMode", tooLarge}}, std::nullopt},
      {List{good, Dict{{"SockType", 1}}}, std::nullopt},
      {List{good, "a string"}, std::nullopt},
      {List{}, Dict{}},
      {Dict{{"SockType", "dgram"}, {"SockOdd", 1}}, Dict{{"SockType", "dgram"}}},
      {Dict{{"SockServiceName", 80.0}}, Dict{{"SockServiceName", 80}}},
      {Dict{{"SockServiceName", true}}, Dict{}},
      {Dict{{"SockServiceName", Dict{}}}, Dict{}},
      {Dict{{"Bonjour", 1}}, Dict{}},
      {Dict{{"Bonjour", List{"a", 1}}}, Dict{}},
  };
  for (const auto& [read, written] : others) {
    table.push_back({"Sockets", withGood(good, read), written ? withGood(good, *written) : Dict{{"good", good}}});
  }
  expectWritten(table);
}

TEST(FormsTest, MachServicesKeepTheirFormsAndLoseWhatDoesntFit) {
  const Dict full{{"ResetAtClose", true},          {"HideUntilCheckIn", false},
                  {"DrainMessagesOnCrash", "all"}, {"ExceptionServer", Dict{{"a", "b"}}},
                  {"HostSpecialPort", 1},          {"TaskSpecialPort", 2}};
  std::vector<Written> table =
      unchanged("MachServices", {Dict{}, Dict{{"a", true}, {"b", false}, {"c", "x"}, {"d", full}, {"e", Dict{}}}});
  for (const propertylist::Value& dropped : std::vector<propertylist::Value>{
           5, 1.0, List{}, Dict{{"HostSpecialPort", "x"}}, Dict{{"ResetAtClose", 1}}, anyDate}) {
    table.push_back({"MachServices", withGood(full, dropped), Dict{{"good", full}}});
  }
  table.push_back({"MachServices", withGood(true, Dict{{"TaskSpecialPort", 3.0}, {"Odd", 1}}),
                   withGood(true, Dict{{"TaskSpecialPort", 3}})});
  expectWritten(table);
}

TEST(FormsTest, InetdCompatibilityAcceptsBooleansAndIntegers) {
  expectWritten(unchanged("inetdCompatibility", {Dict{}, Dict{{"Wait", true}, {"Instances", 42}}}));
  expectWritten({{"inetdCompatibility", Dict{{"Wait", false}, {"a", "x"}, {"b", 1.0}, {"c", List{}}, {"d", tooLarge}},
                  Dict{{"Wait", false}}}});
}

propertylist::Value event(Dict descriptor) {
  return Dict{{"stream", Dict{{"event", std::move(descriptor)}}}};
}

TEST(FormsTest, LaunchEventsKeepPlainValuesTwoLevelsDeep) {
  const Dict scalars{{"a", true}, {"b", "x"}, {"c", 1}, {"d", 2.0}};
  Dict full = scalars;
  full.set("strings", List{"x", "y"});
  full.set("integers", List{1, 2});
  full.set("doubles", List{1.0, 2.5});
  full.set("empty", List{});
  full.set("dictionary", scalars);
  full.set("data in a dictionary", Dict{{"data", propertylist::Data{"bytes"}}});
  expectWritten(unchanged("LaunchEvents", {Dict{}, Dict{{"stream", Dict{}}}, event(Dict{}), event(full)}));
}

TEST(FormsTest, LaunchEventsLoseWhatFitsNoBucket) {
  const Dict good{{"good", 1}};
  std::vector<Written> table = {
      {"LaunchEvents", withGood(Dict{}, "no stream"), Dict{{"good", Dict{}}}},
      {"LaunchEvents", Dict{{"stream", withGood(good, true)}}, Dict{{"stream", Dict{{"good", good}}}}},
      {"LaunchEvents",
       event(Dict{{"x", Dict{{"third", Dict{{"level", 1}}}, {"array", List{1}}, {"date", anyDate}, {"a", 1}}}}),
       event(Dict{{"x", Dict{{"a", 1}}}})},
  };
  for (const propertylist::Value& lost : std::vector<propertylist::Value>{
           anyDate, propertylist::Data{"bytes"}, tooLarge, List{"mixed", 1}, List{1, 2.0}, List{true}, List{Dict{}}}) {
    table.push_back({"LaunchEvents", event(Dict{{"good", 1}, {"other", lost}}), event(good)});
  }
  expectWritten(table);
}

}  // namespace
}  // namespace mirvel::jobfile
