#include <benchmark/benchmark.h>
#include <iconv.h>
#include <stdlib.h>

#include <fstream>
#include <map>
#include <string>

#include "core/documents/Iconv.h"
#include "core/documents/ScriptFile.h"

// Opening and saving the largest script. The reference is iconv(3) on the same bytes.

namespace mirvel {
namespace {

/// A script with a few special characters, almost as large as possible.
const std::string& scriptIn(const std::string& encoding) {
  static std::map<std::string, std::string> scripts;
  std::string& script = scripts[encoding];
  if (!script.empty()) return script;
  const auto lines = testdata::byIconv(
      "# räumt größere „alte“ Dateien auf, die älter als 5 Tage sind\n"
      "find \"$folder\" -type f -mtime +5 -print | while read -r file; do\n"
      "\techo \"removing $file\" >>/var/log/cleaning.log\n"
      "done\n",
      encoding);
  script.reserve(largestScript);
  while (script.size() + lines->size() <= largestScript) script += *lines;
  return script;
}

/// A file in a folder of its own, both removed in the end.
class ScriptOnDisk {
 public:
  explicit ScriptOnDisk(const std::string& content) {
    std::string name = std::filesystem::temp_directory_path() / "mirvel-bench-XXXXXX";
    m_folder = ::mkdtemp(name.data());
    std::ofstream(path(), std::ios::binary) << content;
  }
  ~ScriptOnDisk() { std::filesystem::remove_all(m_folder); }
  ScriptOnDisk(const ScriptOnDisk&) = delete;
  ScriptOnDisk& operator=(const ScriptOnDisk&) = delete;

  std::filesystem::path path() const { return m_folder / "script"; }

 private:
  std::filesystem::path m_folder;
};

/// From the path to text, encoding, checksum, form and language.
void openScript(benchmark::State& state, const std::string& encoding) {
  const ScriptOnDisk file(scriptIn(encoding));
  for (auto _ : state) {
    const auto script = loadScript(file.path(), "en_US");
    if (!script || script->encoding.name != encoding) return state.SkipWithError("read as something else");
  }
}

void decodeScript(benchmark::State& state, const std::string& encoding) {
  const std::string& bytes = scriptIn(encoding);
  for (auto _ : state) benchmark::DoNotOptimize(decode(bytes, {.name = encoding}));
}

void encodeScript(benchmark::State& state, const std::string& encoding) {
  const auto text = decode(scriptIn(encoding), {.name = encoding});
  for (auto _ : state) benchmark::DoNotOptimize(encode(*text, {.name = encoding}));
}

/// Converts into memory that is allocated already.
void measureIconv(benchmark::State& state, std::string text, const std::string& from, const std::string& to) {
  std::string result(2 * largestScript, 'x');
  for (auto _ : state) {
    const iconv_t converter = ::iconv_open(to.c_str(), from.c_str());
    char* source = text.data();
    char* target = result.data();
    std::size_t left = text.size();
    std::size_t room = result.size();
    if (::iconv(converter, &source, &left, &target, &room) != 0) state.SkipWithError("can't be converted");
    ::iconv_close(converter);
    benchmark::ClobberMemory();
  }
}

void decodeScriptIconv(benchmark::State& state, const std::string& encoding) {
  measureIconv(state, scriptIn(encoding), encoding, "utf-8");
}

void encodeScriptIconv(benchmark::State& state, const std::string& encoding) {
  measureIconv(state, *decode(scriptIn(encoding), {.name = encoding}), "utf-8", encoding);
}

const bool areRegistered = [] {
  for (const std::string encoding : {"utf-8", "windows-1252", "utf-16le"}) {
    const auto add = [&](const std::string& name, auto* measurement) {
      benchmark::RegisterBenchmark((name + '/' + encoding).c_str(), measurement, encoding)
          ->Iterations(1)
          ->Unit(benchmark::kMillisecond);
    };
    add("openScript", openScript);
    add("decodeScript", decodeScript);
    add("decodeScriptIconv", decodeScriptIconv);
    add("encodeScript", encodeScript);
    add("encodeScriptIconv", encodeScriptIconv);
  }
  return true;
}();

}  // namespace
}  // namespace mirvel
