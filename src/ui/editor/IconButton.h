#pragma once

#include <QToolButton>
#include <filesystem>

#include "ui/editor/EditorContext.h"

namespace mirvel::ui {

/// The icon of the selected job, which can be changed: by its menu, or by a picture that is dropped on it.
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
