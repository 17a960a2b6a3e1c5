#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "core/jobfile/Plist.h"
#include "core/session/BrowserItem.h"

namespace mirvel {

/// The entries of a dictionary at one depth of the browser: which can be added, and who chooses their names.
struct BrowserLevel {
  /// An item of the menu from which entries are added.
  struct Offer {
    std::string_view title;  ///< also the name of the entry if the level has fixed names; otherwise that of its type
    std::string_view help = {};
    BrowserItem::Type type = BrowserItem::Type::String;  ///< of a new entry
    std::optional<bool> isOn = {};                       ///< the value of a new boolean; without, one must be chosen
    std::span<const BrowserItem::Type> types = {};       ///< the types that the entry can have, if more than one
    std::span<const std::string_view> choices = {};      ///< known values to choose from; others can be typed
    bool isOctal = false;                                ///< the integer is shown and typed in octal
    const BrowserLevel* below = nullptr;                 ///< the level of the entry's own entries, if it is special
  };

  std::span<const Offer> offers;
  bool hasFixedNames = false;              ///< the names are those of the offers; otherwise the job chooses them
  const BrowserLevel* below = nullptr;     ///< of the entries of an entry; null: all deeper levels are like this one
  const BrowserLevel* elements = nullptr;  ///< of an array of dictionaries in place of one; null: not allowed
  bool isArray = false;                    ///< the level is that of such an array: entries have numbers, not names
  bool isTrueIfEmpty = false;              ///< an empty dictionary has the meaning of true

  /// The offer of that name; null if there is none or names are chosen by the job.
  const Offer* fixed(std::string_view name) const;
  /// The level of the children of an item of this level.
  const BrowserLevel& of(const BrowserItem& item) const;
  /// The types that an item of this level can have, including its present one.
  std::span<const BrowserItem::Type> types(const BrowserItem& item) const;
};

/// A key of the job file that is edited in a browser.
struct BrowserSchema {
  jobfile::Plist::CodingKeys key;
  std::string_view help;
  const BrowserLevel* top;

  /// The key as in the file.
  std::string_view text() const { return jobfile::Plist::text(key); }
};

/// The keys with browsers: `Sockets`, `MachServices` and `LaunchEvents`.
std::span<const BrowserSchema> browserSchemas();
/// Null for a key without a browser.
const BrowserSchema* browserSchema(std::string_view key);

}  // namespace mirvel
