#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <tuple>

#include "core/catalogue/Launchd.h"
#include "core/commands/TextAsEdited.h"
#include "core/jobfile/JobFile.h"
#include "core/jobfile/PlistKeys.h"
#include "support/RecordingConsole.h"
#include "support/TestData.h"
#include "support/Untouched.h"

namespace mirvel::jobfile {
namespace {

// One change of each type of value, and which entry below the key it is about.
std::string change(std::string& value) {
  value += " changed";
  return {};
}
std::string change(std::optional<bool>& value) {
  value = !value.value_or(false);
  return {};
}
std::string change(std::optional<std::int64_t>& value) {
  value = value == 4711 ? 4712 : 4711;
  return {};
}
std::string change(std::optional<std::string>& value) {
  value = value.value_or("") + " changed";
  return {};
}
template <typename Texts>
std::string addText(Texts& texts) {
  if (!texts) texts.emplace();
  texts->emplace_back("changed");
  return {};
}
std::string change(std::optional<std::vector<std::string>>& value) {
  return addText(value);
}
std::string change(Boxed<std::vector<std::string>>& value) {
  return addText(value);
}
std::string change(std::optional<StringMap<std::string>>& value) {
  if (!value) value.emplace();
  (*value)["Changed"] = "changed";
  return "Changed";
}
template <typename Value>
Value& madePresent(Boxed<Value>& value) {
  return value ? *value : value.emplace();
}
std::string change(Boxed<StringMap<std::vector<std::string>>>& value) {
  madePresent(value)["Changed"] = {"changed"};
  return "Changed";
}
std::string change(Boxed<KeepAlive>& value) {
  KeepAlive& keepAlive = madePresent(value);
  if (keepAlive.bool_) {
    keepAlive.bool_ = !*keepAlive.bool_;
    return {};
  }
  keepAlive.crashed = !keepAlive.crashed.value_or(false);
  return "Crashed";
}
std::string change(Boxed<LimitLoadToSessionType>& value) {
  madePresent(value).types.emplace_back("Changed");
  return {};
}
std::string change(Boxed<Umask>& value) {
  std::optional<std::int64_t>& mask = madePresent(value).int_;
  mask = mask == 63 ? 62 : 63;
  return {};
}
std::string change(std::optional<StartCalendarInterval>& value) {
  if (!value) value.emplace();
  if (value->intervals.empty()) value->intervals.emplace_back();
  value->intervals.back().month = 11;
  return "Month";
}
std::string change(Boxed<ResourceLimits>& value) {
  madePresent(value).stack = 4711;
  return "Stack";
}
std::string change(Boxed<MachServices>& value) {
  madePresent(value).dictionaries["Changed"].hostSpecialPort = 7;
  return "Changed";
}
std::string change(Boxed<Sockets>& value) {
  Sockets& sockets = madePresent(value);
  Sockets::SubDictionary& socket =
      sockets.dictionaries.empty() ? sockets.dictionaries["Changed"] : sockets.dictionaries.begin()->second;
  (socket.array.empty() ? socket : socket.array.front()).sockFamily = "Changed";
  return sockets.dictionaries.count("Changed") != 0 ? "Changed" : "SockFamily";
}
std::string change(Boxed<LaunchEvents>& value) {
  madePresent(value).dictionaries["Changed"].subDictionaries["event"].integers["number"] = 5;
  return "Changed";
}
std::string change(Boxed<InetdCompatibility>& value) {
  madePresent(value).bools["Changed"] = true;
  return "Changed";
}

using K = Plist::CodingKeys;

class UntouchedKeysTest : public testing::Test {
 protected:
  /// Adds a case for every key of the record, each changed alone.
  void addAllKeys(const std::string& name, const std::string& bytes) {
    const auto job = Launchd::read(bytes, URL::file("/job.plist"), Kind::userAgent, {}, console);
    if (!job) return;
    ++jobs;
    untouched.add(name, "", bytes, job->plistData().value_or(""));
    const auto addRow = [&](const auto& row) {
      if (row.key == K::program || row.key == K::programArguments) return;  // they are edited as one command
      Plist before = job->plist().clone();
      const std::string entry = change(job->plist().*row.field);
      untouched.add(name, std::string(row.text) + (entry.empty() ? "" : ":" + entry), bytes,
                    job->plistData().value_or(""));
      job->plist() = std::move(before);
    };
    std::apply([&](const auto&... row) { (addRow(row), ...); }, plistKeys);
    job->plist().run += " 'an argument'";
    takeArgumentsFromRun(job->plist());
    untouched.add(name, "Program|ProgramArguments", bytes, job->plistData().value_or(""));
  }

  testdata::RecordingConsole console;
  testdata::Untouched untouched;
  std::size_t jobs = 0;
};

TEST_F(UntouchedKeysTest, APublishedJobKeepsEveryKeyButTheOneThatIsEdited) {
  MIRVEL_REQUIRE_TESTDATA(corpus, "corpus");
  for (const auto& file : testdata::files(corpus, ".plist")) addAllKeys(file.filename(), testdata::bytes(file));
  EXPECT_EQ(jobs, 129U);
  untouched.expectNoComplaints();
}

/// Makes job files of which no key needs to be as it should.
class Generator {
 public:
  explicit Generator(unsigned seed) : m_random(seed) {}

  std::string file() {
    const auto keys = Plist::knownKeys();
    Dict file{{"Label", "org.generated"}, {"Unheard", anything(3)}};
    for (std::size_t count = below(12); count > 0; --count) {
      const std::string key(keys[1 + below(keys.size() - 1)]);
      file.set(key, below(4) == 0 ? anything(3) : likely(key));
    }
    return below(4) == 0 ? propertylist::writeBinary(file) : *propertylist::writeXml(file);
  }

 private:
  std::size_t below(std::size_t count) { return m_random() % count; }

  /// A value of a form that the key may have, with flaws below it.
  propertylist::Value likely(const std::string& key) {
    if (key == "KeepAlive") return entries({"SuccessfulExit", "Crashed", "PathState", "Odd"}, 2);
    if (key == "StartCalendarInterval") return below(2) == 0 ? interval() : List{interval(), interval(), interval()};
    if (key == "Sockets") return Dict{{"A", socket()}, {"B", List{socket(), socket()}}, {"C", anything(1)}};
    if (key == "MachServices") return Dict{{"a", true}, {"b", entries({"ResetAtClose", "HostSpecialPort", "Odd"}, 1)}};
    if (key == "LaunchEvents") return Dict{{"s", Dict{{"e", Dict{{"k", anything(3)}, {"l", anything(3)}}}}}};
    if (key.ends_with("Limits")) return entries({"CPU", "Stack", "Core", "Odd"}, 1);
    if (key == "EnvironmentVariables") return Dict{{"PATH", "/bin"}, {"ODD", anything(1)}};
    if (key == "ProgramArguments") return List{"/bin/sh", "-c", "echo \"a  b\" 'c'\n~/x \\$y", "", "it's"};
    if (key == "Program") return below(2) == 0 ? "/bin/sh" : "/usr/bin/my tool";
    if (key == "Umask") return below(2) == 0 ? propertylist::Value("022") : propertylist::Value(18.0);
    return scalar();
  }
  propertylist::Value interval() { return entries({"Hour", "Minute", "Month", "WeekDay"}, 1); }
  propertylist::Value socket() { return entries({"SockType", "SockPathMode", "SockServiceName", "Bonjour", "Odd"}, 2); }
  Dict entries(std::initializer_list<const char*> keys, std::size_t depth) {
    Dict dictionary;
    for (const char* key : keys) {
      if (below(3) != 0) dictionary.set(key, anything(depth));
    }
    return dictionary;
  }
  propertylist::Value scalar() {
    const propertylist::Value values[] = {
        true,       false, 0, -7, 3.0, 2.5, "", "text", "022", propertylist::Data{"\x01x"}, propertylist::Date{1000},
        "z\u00e4hl"};
    return values[below(std::size(values))];
  }
  propertylist::Value anything(std::size_t depth) {
    const std::size_t kind = depth == 0 ? 0 : below(6);
    if (kind == 1) return List{anything(depth - 1), anything(depth - 1)};
    if (kind == 2) return Dict{{"x", anything(depth - 1)}, {"y", anything(depth - 1)}};
    return scalar();
  }

  std::minstd_rand m_random;
};

TEST_F(UntouchedKeysTest, SoDoesAJobOfAnyOtherContent) {
  Generator generator(16);
  for (int i = 0; i < 150; ++i) addAllKeys("generated " + std::to_string(i), generator.file());
  EXPECT_EQ(jobs, 150U);
  untouched.expectNoComplaints();
}

}  // namespace
}  // namespace mirvel::jobfile
