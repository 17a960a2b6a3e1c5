#include "ui/mainwindow/JobDrag.h"

#include <QUrl>

#include "ui/support/QtText.h"

namespace mirvel::ui {

QMimeData* fileDrag(const std::optional<URL>& url) {
  const auto path = url ? qtPath(url->path()) : std::nullopt;
  if (!path) return nullptr;
  auto* data = new QMimeData;
  data->setUrls({QUrl::fromLocalFile(*path)});
  return data;
}

}  // namespace mirvel::ui
