#pragma once

#include <QObject>

class QDropEvent;
class QWidget;

namespace mirvel {
class Program;
}

namespace mirvel::ui {

/// Imports the job files that are dropped on a window, wherever no control in it takes them itself.
class ImportDrop final : public QObject {
 public:
  /// Belongs to the window. The program outlives it.
  ImportDrop(Program& program, QWidget& window);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool accept(QDropEvent& event) const;
  void drop(QDropEvent& event);

  Program& m_program;
  QWidget& m_window;
};

}  // namespace mirvel::ui
