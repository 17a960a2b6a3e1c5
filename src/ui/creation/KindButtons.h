#pragma once

#include <QWidget>
#include <optional>

#include "core/catalogue/Kind.h"

class QButtonGroup;

namespace mirvel {
class Program;
}

namespace mirvel::ui {

/// The radio buttons for whom a new job is, one below the other. At first none is on. Its focus is
/// that of the button that is on, or of the first one.
class KindButtons final : public QWidget {
  Q_OBJECT

 public:
  explicit KindButtons(Program& program, QWidget* parent = nullptr);

  /// Of one of them, so that a title beside them can stand level with the first.
  int lineHeight() const;
  /// Turns the button of the kind on and the others off; none, or a kind that has no button: all off. Emits nothing.
  void setChosen(std::optional<Kind> kind);

 signals:
  /// The user chose the button with that tag, the number of its kind.
  void kindChosen(int tag);

 private:
  QButtonGroup* m_buttons;
};

}  // namespace mirvel::ui
