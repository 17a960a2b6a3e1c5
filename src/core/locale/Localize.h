#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/locale/MessageCatalog.h"
#include "core/process/Environment.h"

namespace mirvel {

/// Marks an English text for translators where it is only looked up later, for example in a table. Returns the text.
constexpr const char* translatable(const char* english) {
  return english;
}

/// All texts that the user reads, translated into the user's language, one member each. The source language is English:
/// the text in a member is what translators see, and the fallback where no translation exists. Buttons, menus and
/// titles use title case, messages sentence case. No member ends in a colon; callers append it.
///
/// Texts may be read from any thread, `int_` only from the main thread.
class Localize {
 public:
  class Lowercase;
  class Ellipsis;

  /// Loads the translations from `<catalogues>/<language>/LC_MESSAGES/mirvel.mo`, trying first the language with the
  /// locale's region ("pt_BR"), then the language ("pt"). If neither exists, or a file is damaged, texts are English.
  /// Numbers follow `locale`, dates and times `timeLocale`, which defaults to `locale`.
  explicit Localize(const std::string& locale = currentLocale(), const std::filesystem::path& catalogues = {},
                    const std::string& timeLocale = {});
  ~Localize();
  Localize(const Localize&) = delete;
  Localize& operator=(const Localize&) = delete;

  /// The user's locale, such as "de_AT"; "en" if the process has none.
  static std::string currentLocale();
  /// The locale for dates and times: `LC_TIME` of the environment unless `LC_ALL` overrides it, otherwise `locale`.
  static std::string timeLocale(const std::string& locale, const Environment& environment);
  const std::string& locale() const { return m_locale; }
  /// The locale for dates and times.
  const std::string& timeLocale() const { return m_timeLocale; }
  /// Whether there are translations and their language is written from right to left.
  bool isRightToLeft() const;

  /// Formats a number with the digits and the grouping of the locale: "86.400". `Scheduled::NumberText` parses it.
  std::string int_(std::int64_t number) const;

  /// The translation of an English text; the text itself where there is none.
  std::string text(const char* english) const;
  /// The translation of `key`, with each "%@" replaced by the next argument, "%2$@" by the second, and "%%" by a
  /// percent sign. Specifiers without an argument are kept.
  std::string format(const char* key, const std::vector<std::string>& arguments) const;
  /// The same for a pattern that isn't to be translated.
  static std::string filled(std::string_view pattern, const std::vector<std::string>& arguments);

  Lowercase lowercase() const;
  Ellipsis ellipsis() const;

  std::string anErrorOccurredWhileSaving() const { return text("An error occurred while saving"); }
  std::string anUnknownErrorOccurred() const { return text("An unknown error occurred"); }
  std::string application() const { return text("Application"); }
  std::string atStartupAndWhenSaving() const { return text("At startup and when saving"); }
  std::string cancel() const { return text("Cancel"); }
  std::string command() const { return text("Command"); }
  std::string dayOfMonth() const { return text("Day of Month"); }
  std::string dayOfWeek() const { return text("Day of Week"); }
  std::string delete_() const { return text("Delete"); }
  std::string disabled() const { return text("Disabled"); }
  std::string discardChanges() const { return text("Discard Changes"); }
  std::string enterAWholeNumber() const { return text("Enter a whole number."); }
  std::string enabled() const { return text("Enabled"); }
  std::string enabledButCantRun() const { return text("Enabled, but can’t run at present"); }
  std::string everyone() const { return text("Everyone"); }
  std::string filter() const { return text("Filter"); }
  std::string folders() const { return text("Folders"); }
  std::string forString() const { return text("For"); }
  std::string kind() const { return text("Kind"); }
  std::string launchAgainIfItCrashes() const { return text("Launch again if it crashes"); }
  std::string later() const { return text("Later"); }
  std::string loginItems() const { return text("Login Items"); }
  std::string name() const { return text("Name"); }
  std::string new_() const { return text("New"); }
  std::string noItems() const { return text("No Items"); }
  std::string theCommandRunsWithoutAShell(const std::string& sign) const {
    return format("The command runs without a shell, so the program would get “%@” as an ordinary argument.", {sign});
  }
  std::string off() const { return text("Off"); }
  std::string ok() const { return text("OK"); }
  std::string on() const { return text("On"); }
  std::string onlyWhenStartedManually() const { return text("Only when it is started manually"); }
  std::string pleaseTryAgain() const { return text("Please try again."); }
  std::string renameTheItemAndTryAgain() const { return text("Rename the item and try again"); }
  std::string repeatInterval() const { return text("Repeat Interval"); }
  std::string revealInFinder() const;
  std::string run() const { return text("Run"); }
  std::string save() const { return text("Save"); }
  std::string scheduled() const { return text("Scheduled"); }
  std::string show() const { return text("Show"); }
  std::string summary() const { return text("Summary"); }
  std::string system() const { return text("System"); }
  std::string when() const { return text("When"); }

 private:
  class Numbers;

  std::string m_locale;
  std::string m_timeLocale;
  std::optional<MessageCatalog> m_catalog;
  std::unique_ptr<Numbers> m_numbers;
};

/// Lower-case forms for the middle of a line.
class Localize::Lowercase {
 public:
  explicit Lowercase(const Localize& localize) : m_localize(localize) {}

  std::string atEveryLogin() const { return m_localize.text("at every login"); }
  std::string atEverySystemStart() const { return m_localize.text("at every system start"); }
  std::string days() const { return m_localize.text("days"); }
  std::string hours() const { return m_localize.text("hours"); }
  std::string minute() const { return m_localize.text("minute"); }
  std::string minutes() const { return m_localize.text("minutes"); }
  std::string onceWhenSaved() const { return m_localize.text("once when it is saved"); }
  std::string seconds() const { return m_localize.text("seconds"); }

 private:
  const Localize& m_localize;
};

/// Titles of commands that ask for more input before they act.
class Localize::Ellipsis {
 public:
  explicit Ellipsis(const Localize& localize) : m_localize(localize) {}

  std::string edit() const { return m_localize.text("Edit…"); }
  std::string save() const { return m_localize.text("Save…"); }
  std::string choose() const { return m_localize.text("Choose…"); }
  std::string loading() const { return m_localize.text("Loading…"); }
  std::string createNew() const { return m_localize.text("Create New…"); }

 private:
  const Localize& m_localize;
};

/// Base of the classes that hold the texts of one part of the program, one member each.
class Texts {
 public:
  explicit Texts(const Localize& localize) : m_localize(localize) {}

 protected:
  std::string text(const char* english) const { return m_localize.text(english); }
  std::string format(const char* key, const std::vector<std::string>& arguments) const {
    return m_localize.format(key, arguments);
  }
  std::string int_(std::int64_t number) const { return m_localize.int_(number); }

 private:
  const Localize& m_localize;
};

inline Localize::Lowercase Localize::lowercase() const {
  return Lowercase(*this);
}

inline Localize::Ellipsis Localize::ellipsis() const {
  return Ellipsis(*this);
}

}  // namespace mirvel
