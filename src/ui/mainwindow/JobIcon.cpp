#include "ui/mainwindow/JobIcon.h"

namespace mirvel::ui {

QIcon jobIcon(IconLoader& icons, const std::optional<Image>& image) {
  const QIcon icon = image ? icons.icon(*image) : QIcon();
  return icon.isNull() ? icons.icon(Image::named("application-x-executable")) : icon;
}

}  // namespace mirvel::ui
