#pragma once

#include "core/propertylist/Value.h"

namespace mirvel::jobfile {

/// The content of a file after an edit: a three-way merge. `read` is what the record made of `file`, and `edited` what
/// it makes of it now; either may hold less than the file does, where the record can't represent a value.
///
/// What is the same in `read` and `edited` stays as the file has it. A dictionary that differs is merged entry by
/// entry, so that entries which the record doesn't know survive beside those that were edited; a list is merged element
/// by element, around those that were added or removed. A value alone and a list of it are taken for each other.
/// Anything else is taken from `edited`.
propertylist::Dictionary mergeIntoFile(const propertylist::Dictionary& file, const propertylist::Dictionary& read,
                                       const propertylist::Dictionary& edited);

}  // namespace mirvel::jobfile
