#pragma once

#include <QLabel>

namespace mirvel::ui {

/// A label in the palette's quieter text colour, whatever the palette becomes.
class SecondaryLabel final : public QLabel {
 public:
  explicit SecondaryLabel(const QString& text, QWidget* parent = nullptr) : QLabel(text, parent) {
    setTextFormat(Qt::PlainText);
    setForegroundRole(QPalette::PlaceholderText);
  }
};

}  // namespace mirvel::ui
