#pragma once

#include <filesystem>
#include <string>

#include "core/catalogue/ScanSettings.h"
#include "core/files/Roots.h"
#include "core/locale/Collator.h"
#include "core/locale/Localize.h"
#include "core/process/Commands.h"
#include "core/process/Environment.h"
#include "core/settings/Defaults.h"
#include "core/settings/Store.h"

namespace mirvel {

/// The basis of every program with access to jobs: folders, tools, settings and texts. Exists once per process, and
/// outlives everything that depends on it. For the main thread, except for the const members, which are thread-safe.
struct Foundation {
  /// `catalogues` is the folder with the translations. `locale` is the user's by default; the environment can specify
  /// another one for dates and times (`LC_TIME`). `damaged` says what happens to a damaged settings file: programs that
  /// only read, such as the command-line tool, leave it in place.
  Foundation(Roots theRoots, Environment theEnvironment, const std::filesystem::path& catalogues = {},
             const std::string& locale = Localize::currentLocale(),
             Defaults::Damaged damaged = Defaults::Damaged::SetAside)
      : environment(std::move(theEnvironment)),
        roots(std::move(theRoots)),
        commands(Commands::forThisMachine(environment)),
        defaults(roots.defaultsFile, damaged, &storeTroubles),
        localize(locale, catalogues, Localize::timeLocale(locale, environment)),
        collator(locale) {}

  const Environment environment;  ///< of the process when it started
  const Roots roots;              ///< the folders with jobs and data; tests use temporary ones
  const Commands commands;        ///< paths of system tools
  StoreTroubles storeTroubles;    ///< problems with the property lists that the program keeps for itself
  Defaults defaults;              ///< the settings
  const Localize localize;        ///< the texts in the user's language
  const Collator collator;        ///< the order of texts in the user's language

  /// A snapshot of the settings for a scan, which runs on another thread.
  ScanSettings scanSettings() const {
    const auto folders = defaults.folders();
    return {.roots = roots,
            .osascript = commands.osascript,
            .scriptEditor = {},
            .folders = {folders.begin(), folders.end()},
            .showSystemJobs = defaults.showSystemJobs(),
            .showInternalHelpers = defaults.showInternalHelpers(),
            .editSystemJobs = defaults.editSystemJobs()};
  }
};

}  // namespace mirvel
