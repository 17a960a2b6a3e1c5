#pragma once

#include <QLabel>
#include <string>

namespace mirvel::ui {

/// The label of a value: a key and a colon, in the column of labels. A wider key is broken between its words.
class KeyLabel final : public QLabel {
 public:
  /// The text has the direction of its parent.
  explicit KeyLabel(const std::string& key, QWidget* parent);
};

}  // namespace mirvel::ui
