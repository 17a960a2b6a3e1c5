#pragma once

class QWidget;

namespace mirvel {
class Program;
}

namespace mirvel::ui {

class IconLoader;

/// Offers the commands that bring jobs into the catalogue and out of it, as long as it lives: new jobs, import, by the
/// menu and by files that are dropped on the window, duplicate, export and restoring deleted ones.
class CreationSheets final {
 public:
  /// All outlive it.
  CreationSheets(Program& program, IconLoader& icons, QWidget& window);
  ~CreationSheets();
  CreationSheets(const CreationSheets&) = delete;
  CreationSheets& operator=(const CreationSheets&) = delete;

 private:
  template <typename Sheet, typename... More>
  void show(More&... more);

  Program& m_program;
  QWidget& m_window;
};

}  // namespace mirvel::ui
