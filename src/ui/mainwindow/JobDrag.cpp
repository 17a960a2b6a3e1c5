#include "ui/mainwindow/JobDrag.h"

#include <QUrl>

#include "ui/support/QtText.h"

namespace mirvel::ui {

QStringList fileDragTypes() {
  return {QStringLiteral("text/uri-list")};
}

QMimeData* fileDrag(const std::optional<URL>& url) {
  const auto path = url ? qtPath(url->path()) : std::nullopt;
  if (!path) return nullptr;
  auto* data = new QMimeData;
  data->setUrls({QUrl::fromLocalFile(*path)});
  return data;
}

}  // namespace mirvel::ui
