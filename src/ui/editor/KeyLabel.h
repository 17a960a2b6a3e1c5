#pragma once

#include <QLabel>
#include <string>

namespace mirvel::ui {

/// A key and a colon before a value, in a column as wide as in all sections. A key that is wider is broken between its
/// words.
class KeyLabel final : public QLabel {
 public:
  /// Reads in the direction that its parent has now.
  explicit KeyLabel(const std::string& key, QWidget* parent);
};

}  // namespace mirvel::ui
