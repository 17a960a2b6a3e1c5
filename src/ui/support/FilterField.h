#pragma once

class QLineEdit;

namespace mirvel {
class Localize;
}

namespace mirvel::ui {

/// Creates a text field for searching, with a clear button.
QLineEdit* filterField(const Localize& localize);

}  // namespace mirvel::ui
