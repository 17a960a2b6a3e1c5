#pragma once

#include <QCache>
#include <QHash>
#include <QIcon>
#include <QMimeDatabase>
#include <QString>
#include <filesystem>
#include <optional>

#include "core/base/Image.h"

namespace mirvel::ui {

/// The icons of files, as shown by the platform's file manager: by type, or by name if there is no such file. Reads at
/// most the first bytes of regular files and nothing of others.
class FileIcons {
 public:
  QIcon icon(const std::filesystem::path& path);
  void clear() { m_icons.clear(); }

 private:
  QString typeOf(const std::filesystem::path& path) const;
  QIcon iconOfType(const QString& type) const;

  QMimeDatabase m_types;
  QHash<QString, QIcon> m_icons;  // by MIME type
};

/// Provides the icons for images of the core; a null icon if an image can't be loaded. Main thread only.
class IconLoader {
 public:
  IconLoader();

  QIcon icon(const Image& image);
  /// The icon of a job or an application; the generic program icon if it has none or it can't be loaded.
  QIcon programIcon(const std::optional<Image>& image);
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
