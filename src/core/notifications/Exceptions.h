#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "core/catalogue/Kind.h"
#include "core/settings/Store.h"

namespace mirvel {

/// What the user doesn't want to be notified about: the file that the preferences and the background agent share. Each
/// key is read by itself, and each change is applied to what the file has at that moment, so that neither overwrites
/// what the other has changed.
///
/// A key of the wrong type counts as absent: the file is then moved aside and reported like a damaged one, and a new
/// one keeps the other keys. Elements that aren't strings have no effect and stay where they are. A change that can't
/// be written is in effect until the program ends; the store reports it. For one thread.
class Exceptions {
 public:
  struct Key {
    static constexpr std::string_view exceptions = "Exceptions";              ///< names of jobs
    static constexpr std::string_view exceptionsPrefix = "ExceptionsPrefix";  ///< beginnings of names
    static constexpr std::string_view quietFailures = "QuietFailures";        ///< names of jobs
    static constexpr std::string_view tellFailures = "TellFailures";          ///< boolean; absent means true
  };

  /// The beginning of the names of jobs of the operating system.
  static constexpr std::string_view defaultPrefix = "com.apple";

  /// The file in the folder of the program's stores. Reads nothing yet. `troubles`, if there are any, must outlive it.
  explicit Exceptions(const std::filesystem::path& applicationSupport, StoreTroubles* troubles = nullptr);

  const std::filesystem::path& file() const { return m_file; }

  /// Names of jobs whose changes aren't announced.
  std::vector<std::string> names() { return texts(Key::exceptions); }
  /// The prefixes, none of them empty. A file without that key has the default one; without a file there is none.
  std::vector<std::string> prefixes();
  /// Names of jobs whose failures aren't announced.
  std::vector<std::string> quietFailures() { return texts(Key::quietFailures); }
  /// Whether failures are announced at all.
  bool tellsFailures();

  /// Whether a prefix, which isn't empty, excludes a job. The default one counts only for jobs in folders of the
  /// system: a job elsewhere that calls itself so isn't part of it.
  static bool isPrefixOf(std::string_view prefix, std::string_view name, Kind kind) {
    return name.starts_with(prefix) && (prefix != defaultPrefix || kind.isSystem());
  }
  /// Whether one of the prefixes excludes the job.
  bool isExcluded(std::string_view name, Kind kind);
  /// Whether changes of the job are announced.
  bool tellsChanges(std::string_view name, Kind kind);
  /// Whether failures of the job are announced.
  bool tellsFailures(std::string_view name, Kind kind);

  /// Without effect for an empty name. Switching on removes the name as often as it occurs.
  Result<void> setTellsChanges(const std::string& name, bool isOn);
  Result<void> setTellsFailures(const std::string& name, bool isOn);
  Result<void> setTellsFailures(bool isOn);

  /// Replaces one occurrence of a prefix, counted from 0 among those with the same text, by another text; an empty one
  /// removes it. Adds the text if there is no such occurrence, as after a removal by another program, or if `old` is
  /// empty.
  Result<void> replacePrefix(const std::string& old, std::size_t occurrence, const std::string& text);

  /// Writes the default prefix into an existing file that has no prefixes. Returns whether it was missing there.
  bool addMissingPrefixes();

 private:
  std::vector<std::string> texts(std::string_view key);
  bool isListed(std::string_view key, std::string_view name);
  Result<void> setListed(std::string_view key, const std::string& name, bool isListed);
  void ensureKeys();
  void setAsideWrongTypes();

  std::filesystem::path m_file;
  Store m_store;
};

}  // namespace mirvel
