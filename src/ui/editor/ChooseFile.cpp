#include "ui/editor/ChooseFile.h"

#include <QPointer>
#include <QWidget>

#include "core/session/Platform.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

std::optional<std::filesystem::path> chooseFile(const QWidget& control, const Platform& platform,
                                                const OpenPanel& panel) {
  const QPointer<const QWidget> self(&control);
  auto chosen = platform.interface.openPanel(panel);
  // A discarded control is hidden and may not have been deleted yet.
  if (!chosen || !self || !self->isVisible()) return std::nullopt;
  if (qtPath(*chosen)) return chosen;
  platform.workspace.beep();
  return std::nullopt;
}

}  // namespace mirvel::ui
