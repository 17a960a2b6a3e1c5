#include <gmock/gmock.h>

#include <random>
#include <tuple>

#include "core/catalogue/Launchd.h"
#include "core/jobfile/JobFile.h"
#include "core/jobfile/PlistKeys.h"
#include "core/jobfile/RunString.h"
#include "support/RecordingConsole.h"
#include "support/TestData.h"
#include "support/Untouched.h"

namespace mirvel::jobfile {
namespace {

/// Changes a value, absent or not, and returns the entry below its key that is affected, if it isn't the whole value.
struct Change {
  std::string operator()(std::string& value) const { return value += " changed", ""; }
  std::string operator()(bool& value) const { return value = !value, ""; }
  std::string operator()(std::int64_t& value) const { return value = value == 4711 ? 4712 : 4711, ""; }
  std::string operator()(std::vector<std::string>& value) const { return value.emplace_back("changed"), ""; }
  std::string operator()(LimitLoadToSessionType& value) const { return (*this)(value.types); }
  std::string operator()(Umask& value) const { return value.int_ = value.int_ == 63 ? 62 : 63, ""; }
  std::string operator()(ResourceLimits& value) const { return value.stack = 4711, "Stack"; }
  template <typename Element>
  std::string operator()(StringMap<Element>& value) const {
    return (*this)(value["Changed"]), "Changed";
  }
  std::string operator()(MachServices& value) const {
    return value.dictionaries["Changed"].hostSpecialPort = 7, "Changed";
  }
  std::string operator()(InetdCompatibility& value) const { return (*this)(value.bools); }
  std::string operator()(LaunchEvents& value) const {
    return value.dictionaries["Changed"].subDictionaries["event"].integers["number"] = 5, "Changed";
  }
  std::string operator()(KeepAlive& value) const {
    if (value.bool_) return (*this)(*value.bool_);
    return (*this)(value.crashed), "Crashed";
  }
  std::string operator()(StartCalendarInterval& value) const {
    if (value.intervals.empty()) value.intervals.emplace_back();
    return value.intervals.back().month = 11, "Month";
  }
  std::string operator()(Sockets& sockets) const {
    const bool isNew = sockets.dictionaries.empty();
    auto& socket = isNew ? sockets.dictionaries["Changed"] : sockets.dictionaries.begin()->second;
    (socket.array.empty() ? socket : socket.array.front()).sockFamily = "Changed";
    return isNew ? "Changed" : "SockFamily";
  }
  template <typename Value>
  std::string operator()(std::optional<Value>& field) const {
    return (*this)(field ? *field : field.emplace());
  }
  template <typename Value>
  std::string operator()(Boxed<Value>& field) const {
    return (*this)(field ? *field : field.emplace());
  }
};

using K = Plist::CodingKeys;

class UntouchedKeysTest : public testing::Test {
 protected:
  /// Adds a case for each key of the record, with only this key changed.
  void addAllKeys(const std::string& name, const std::string& bytes) {
    const auto job = Launchd::read(bytes, URL::file("/job.plist"), Kind::userAgent, {}, console);
    if (!job) return;
    ++jobs;
    untouched.add(name, "", bytes, job->plistData().value_or(""));
    const auto addRow = [&](const auto& row) {
      if (row.key == K::Program || row.key == K::ProgramArguments) return;  // edited as one command
      Plist before = job->plist().clone();
      const std::string entry = Change()(job->plist().*row.field);
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

/// Generates job files in which any key can have a value of a wrong form.
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

  /// A value of a form that the key allows, with flaws below it.
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
