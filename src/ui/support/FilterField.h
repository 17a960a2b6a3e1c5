#pragma once

class QLineEdit;

namespace mirvel {
class Localize;
}

namespace mirvel::ui {

/// A field for a text to look for, with a button that clears it.
QLineEdit* filterField(const Localize& localize);

}  // namespace mirvel::ui
