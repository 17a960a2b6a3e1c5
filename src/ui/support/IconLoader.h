#pragma once

#include <QCache>
#include <QIcon>
#include <QString>
#include <filesystem>

#include "core/base/Image.h"
#include "ui/support/FileIcons.h"

namespace mirvel::ui {

/// Draws the core's images. A picture that can't be had is a null icon. Main thread only.
class IconLoader {
 public:
  IconLoader();

  QIcon icon(const Image& image);
  /// Looks at files and types anew from now on.
  void clear();

  /// A symbol for a tool bar or button, by its freedesktop name, in the colour of the text around it.
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
