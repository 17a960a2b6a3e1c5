#pragma once

#include <QScrollArea>

namespace mirvel::ui {

/// A stack of sections that scrolls vertically only, and so can't be made narrower than its sections.
class StackScrollView : public QScrollArea {
 public:
  explicit StackScrollView(const QString& accessibleName);

  QSize minimumSizeHint() const override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace mirvel::ui
