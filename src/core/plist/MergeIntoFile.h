#pragma once

#include "core/propertylist/Value.h"

namespace mirvel::launchd {

/// The content of a file after an edit: a three-way merge. `read` is what the record made of `file`, and `edited` what
/// it makes of it now; either may hold less than the file does, where the record can't represent a value.
///
/// What is the same in `read` and `edited` stays as the file has it. A dictionary that differs is merged entry by
/// entry, so that entries which the record doesn't know survive beside those that were edited; a list is merged element
/// by element, around those that were added or removed. A value alone and a list of it are taken for each other.
/// Anything else is taken from `edited`.
plist::Dictionary mergeIntoFile(const plist::Dictionary& file, const plist::Dictionary& read,
                                const plist::Dictionary& edited);

}  // namespace mirvel::launchd
