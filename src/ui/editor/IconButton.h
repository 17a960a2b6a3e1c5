#pragma once

#include <QToolButton>
#include <filesystem>

#include "ui/editor/EditorContext.h"

namespace mirvel::ui {

/// A button with the icon of the selected job. Its menu, or a picture dropped on it, sets a custom icon.
class IconButton final : public QToolButton {
 public:
  explicit IconButton(const EditorContext& context);

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void choose();
  void use(const std::filesystem::path& picture);

  const EditorContext m_context;
};

}  // namespace mirvel::ui
