#pragma once

#include <QObject>

namespace mirvel::ui {

/// Keeps the keys that delete text in an editable field from triggering menu shortcuts of the same keys, which would
/// delete jobs.
class TextKeys final : public QObject {
 public:
  /// Filters the events of all widgets of the application for as long as it exists.
  explicit TextKeys(QObject* parent);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace mirvel::ui
