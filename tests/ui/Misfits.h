#pragma once

#include <QWidget>
#include <string>

namespace mirvel::testdata {

/// Expects that what the visible widgets below `root` show fits into them, and they into their parents, so that no text
/// is cut off. What can be scrolled fits, and so does what is elided on purpose: an `ElidedLabel`, and the last column
/// of a list. Failures name the widget and the `place`. Returns how many widgets were checked.
int expectAllFits(const QWidget& root, const std::string& place);

}  // namespace mirvel::testdata
