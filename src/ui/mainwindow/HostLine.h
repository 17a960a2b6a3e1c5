#pragma once

#include <QWidget>
#include <optional>
#include <string>

#include "core/base/Signal.h"

class QLabel;

namespace mirvel {
class HostStart;
class Localize;
struct Notifications;
}  // namespace mirvel

namespace mirvel::ui {

/// A line at the bottom of the window with the reason why jobs can't run. Hidden while they can.
class HostLine final : public QWidget {
  Q_OBJECT

 public:
  /// All arguments must outlive the widget.
  HostLine(const Localize& localize, const HostStart& hostStart, Notifications& notifications);

 private:
  void show(const std::optional<std::string>& failure);

  const Localize& m_localize;
  QLabel* m_text;
  Subscription m_hostChanged;
};

}  // namespace mirvel::ui
