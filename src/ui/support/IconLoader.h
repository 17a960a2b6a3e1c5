#pragma once

#include <QCache>
#include <QIcon>
#include <QString>
#include <filesystem>

#include "core/base/Image.h"
#include "ui/support/FileIcons.h"

namespace mirvel::ui {

/// Provides the icons for images of the core; a null icon if an image can't be loaded. Main thread only.
class IconLoader {
 public:
  IconLoader();

  QIcon icon(const Image& image);
  /// Discards everything that is cached, so that files and types are read again.
  void clear();

  /// A symbolic icon for a toolbar or button, by its freedesktop name, drawn in the text colour.
  static QIcon symbol(const char* name);

 private:
  struct Picture {
    std::filesystem::file_time_type changed;
    QIcon icon;
  };

  QIcon named(const QString& name) const;
  QIcon picture(const std::filesystem::path& file);

  bool m_isThemed;
  FileIcons m_fileIcons;
  QCache<QString, Picture> m_pictures;  // by path
};

}  // namespace mirvel::ui
