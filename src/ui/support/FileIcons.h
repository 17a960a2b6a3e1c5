#pragma once

#include <QHash>
#include <QIcon>
#include <QMimeDatabase>
#include <QString>
#include <filesystem>

namespace mirvel::ui {

/// The icons of files as the platform's file viewer shows them: by what a file is, or would be by its name. Reads no
/// more than the first bytes of a regular file, and nothing of any other.
class FileIcons {
 public:
  QIcon icon(const std::filesystem::path& path);
  void clear() { m_icons.clear(); }

 private:
  QString typeOf(const std::filesystem::path& path) const;
  QIcon iconOfType(const QString& type) const;

  QMimeDatabase m_types;
  QHash<QString, QIcon> m_icons;  // by type
};

}  // namespace mirvel::ui
