#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "Check.h"
#include "core/files/ReadFile.h"
#include "core/notifications/Exceptions.h"

using namespace mirvel;

namespace {

/// A folder of this process, removed when it ends.
class Folder {
 public:
  Folder() { std::filesystem::create_directories(m_path); }
  ~Folder() { clear(); }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  const std::filesystem::path& path() const { return m_path; }
  void clear() const {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }

 private:
  /// In memory if possible, since each change is flushed to the device.
  static std::filesystem::path place() {
    const std::filesystem::path memory = "/dev/shm";
    return std::filesystem::exists(memory) ? memory : std::filesystem::temp_directory_path();
  }

  const std::filesystem::path m_path = place() / ("mirvel-fuzz-" + std::to_string(::getpid()));
};

bool contains(const std::vector<std::string>& texts, std::string_view text) {
  return std::find(texts.begin(), texts.end(), text) != texts.end();
}

}  // namespace

/// The exceptions file: a change is read back, keeps what other keys have, and can be taken back. A file that can't be
/// changed stays as it is.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Folder folder;
  const std::string name = "org.example.fuzz";
  folder.clear();
  std::filesystem::create_directories(folder.path());
  Exceptions exceptions(folder.path());
  std::ofstream(exceptions.file(), std::ios::binary)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));

  const auto before = exceptions.names();
  const auto prefixes = exceptions.prefixes();
  const auto quiet = exceptions.quietFailures();
  const bool tells = exceptions.tellsFailures();
  FUZZ_CHECK(!contains(prefixes, ""));
  if (!exceptions.setTellsChanges(name, false)) {
    const auto left = readFile(exceptions.file(), size + 1);
    FUZZ_CHECK(left && *left == std::string_view(reinterpret_cast<const char*>(data), size));
    return 0;
  }

  Exceptions again(folder.path());
  FUZZ_CHECK(contains(again.names(), name));
  FUZZ_CHECK(again.quietFailures() == quiet && again.prefixes() == prefixes && again.tellsFailures() == tells);
  FUZZ_CHECK(again.setTellsChanges(name, true));
  auto others = before;
  std::erase(others, name);
  FUZZ_CHECK(Exceptions(folder.path()).names() == others);
  return 0;
}
