#pragma once

#include <QObject>

namespace mirvel::ui {

/// Leaves the keys that delete text to the field in which one types, where the menu has shortcuts of the same keys:
/// those delete jobs.
class TextKeys final : public QObject {
 public:
  /// Looks after all fields of the application as long as it lives.
  explicit TextKeys(QObject* parent);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace mirvel::ui
