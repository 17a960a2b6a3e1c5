#pragma once

#include <QWidget>
#include <string>

namespace mirvel::ui {

/// The title above a section.
class HeaderSection final : public QWidget {
 public:
  explicit HeaderSection(const std::string& title, QWidget* parent = nullptr);
};

}  // namespace mirvel::ui
