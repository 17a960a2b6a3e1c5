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
  bool takes(const QDropEvent& event) const;
  void answer(QDropEvent& event) const;
  void drop(QDropEvent& event);

  Program& m_program;
  QWidget& m_window;
  bool m_isTaken = false;  ///< what is being dragged; its files aren't looked at again with each move
};

}  // namespace mirvel::ui
