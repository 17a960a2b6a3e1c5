#pragma once

#include <QHash>
#include <QIcon>
#include <QMimeDatabase>
#include <QString>
#include <filesystem>

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

}  // namespace mirvel::ui
