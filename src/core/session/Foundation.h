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

/// What every program of the family stands on: folders, tools, settings and texts.
struct Foundation {
  /// `catalogues` holds the translations; `locale` is the user's by default; the environment may name
  /// another one for dates and times. A program that only reads leaves a damaged
  /// file of settings where it is.
  Foundation(Roots theRoots, Environment theEnvironment, const std::filesystem::path& catalogues = {},
             const std::string& locale = Localize::currentLocale(),
             Defaults::Damaged damaged = Defaults::Damaged::SetAside)
      : environment(std::move(theEnvironment)),
        roots(std::move(theRoots)),
        commands(Commands::forThisMachine(environment)),
        defaults(roots.defaultsFile, damaged, &storeTroubles),
        localize(locale, catalogues, Localize::timeLocale(locale, environment)),
        collator(locale) {}

  const Environment environment;
  const Roots roots;
  const Commands commands;
  StoreTroubles storeTroubles;  ///< of all files that the program keeps for itself
  Defaults defaults;
  const Localize localize;
  const Collator collator;

  /// For a scan that starts now.
  ScanSettings scanSettings() const {
    return {.roots = roots,
            .osascript = commands.osascript,
            .scriptEditor = {},
            .showSystemJobs = defaults.showSystemJobs(),
            .showInternalHelpers = defaults.showInternalHelpers(),
            .editSystemJobs = defaults.editSystemJobs()};
  }
};

}  // namespace mirvel
