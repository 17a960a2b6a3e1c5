#pragma once

class QWidget;

namespace mirvel {
class MenuController;
struct CreationContext;
}  // namespace mirvel

namespace mirvel::ui {

class IconLoader;

/// Registers the sheets that create, import, duplicate, export and restore jobs with the shell, and unregisters them in
/// its destructor. Also imports job files that are dropped on the window.
class CreationSheets final {
 public:
  /// All must outlive this object.
  CreationSheets(const CreationContext& context, const MenuController& menus, IconLoader& icons, QWidget& window);
  ~CreationSheets();
  CreationSheets(const CreationSheets&) = delete;
  CreationSheets& operator=(const CreationSheets&) = delete;

 private:
  template <typename Sheet, typename... More>
  void show(More&... more);

  const CreationContext& m_context;
  QWidget& m_window;
};

}  // namespace mirvel::ui
