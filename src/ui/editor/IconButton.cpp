#include "ui/editor/IconButton.h"

#include <QBuffer>
#include <QDragEnterEvent>
#include <QImageReader>
#include <QMenu>
#include <QMimeData>
#include <QPointer>
#include <QUrl>
#include <optional>

#include "core/editor/EditorTexts.h"
#include "core/editor/IconEditing.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "core/session/Selection.h"
#include "ui/editor/SectionGrid.h"
#include "ui/support/Controls.h"
#include "ui/support/IconLoader.h"
#include "ui/support/QtText.h"
#include "ui/support/ReadPicture.h"

namespace mirvel::ui {

namespace fs = std::filesystem;

namespace {

/// A picture file as PNG, scaled down to the size of icons; empty if it can't be read.
std::string pngOf(const fs::path& file) {
  constexpr int side = 512;
  auto picture = readPicture(file);
  if (!picture) return {};
  if (picture->width() > side || picture->height() > side) {
    picture = picture->scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
  }
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  return picture->save(&buffer, "PNG") ? bytes.toStdString() : std::string();
}

std::optional<fs::path> localFile(const QMimeData& data) {
  const auto urls = data.urls();
  if (urls.size() != 1 || !urls.front().isLocalFile()) return std::nullopt;
  return path(urls.front().toLocalFile());
}

std::vector<std::string> pictureTypes() {
  std::vector<std::string> types;
  for (const QByteArray& format : QImageReader::supportedImageFormats()) types.push_back(format.toStdString());
  return types;
}

}  // namespace

IconButton::IconButton(const EditorContext& context) : m_context(context) {
  const Localize& localize = context.foundation.localize;
  setIconSize({SectionGrid::iconSide, SectionGrid::iconSide});
  setAutoRaise(true);
  setAcceptDrops(true);
  setPopupMode(InstantPopup);
  setAccessibleName(qt(EditorTexts(localize).icon()));
  setToolTip(qt(EditorTexts(localize).icon()));
  auto* menu = new QMenu(this);
  menu->addAction(IconLoader::symbol("document-open"), qt(EditorTexts(localize).chooseIcon()), this,
                  [this] { choose(); });
  QAction* remove =
      menu->addAction(IconLoader::symbol("edit-delete"), qt(EditorTexts(localize).removeIcon()), this, [this] {
        if (const auto job = m_context.selection.job()) m_context.iconEditing.removeIcon(job);
      });
  connect(menu, &QMenu::aboutToShow, remove, [this, remove] {
    const auto job = m_context.selection.job();
    remove->setEnabled(job && job->customIcon);
  });
  setMenu(menu);
}

void IconButton::choose() {
  const OpenPanel panel{.showsHiddenFiles = optionHeld(), .allowedTypes = pictureTypes()};
  const QPointer<IconButton> self(this);  // may be discarded while the panel is open; see `chooseFile`
  const auto picture = m_context.platform.interface.openPanel(panel);
  if (picture && self && isVisible()) use(*picture);
}

void IconButton::use(const fs::path& picture) {
  const auto job = m_context.selection.job();
  if (!job) return;
  const std::string png = pngOf(picture);
  if (!png.empty()) return m_context.iconEditing.setIcon(job, png);
  const Localize& localize = m_context.foundation.localize;
  m_context.platform.interface.error(EditorTexts(localize).thePictureCouldntBeRead(), picture.string());
}

void IconButton::dragEnterEvent(QDragEnterEvent* event) {
  if (localFile(*event->mimeData())) event->acceptProposedAction();
}

void IconButton::dropEvent(QDropEvent* event) {
  const auto picture = localFile(*event->mimeData());
  if (!picture) return;
  event->acceptProposedAction();
  use(*picture);
}

}  // namespace mirvel::ui
