#pragma once

#include <QScrollArea>

namespace mirvel::ui {

/// Shows a stack of sections that scrolls up and down only: it can't be made narrower than they are.
class StackScrollView : public QScrollArea {
 public:
  explicit StackScrollView(const QString& accessibleName);

  QSize minimumSizeHint() const override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace mirvel::ui
