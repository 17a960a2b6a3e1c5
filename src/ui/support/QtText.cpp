#include "ui/support/QtText.h"

#include <QFile>

namespace mirvel::ui {

QString qt(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string utf8(const QString& text) {
  return text.toStdString();
}

QString displayText(const std::filesystem::path& path) {
  return qt(path.native());
}

std::optional<QString> qtPath(const std::filesystem::path& path) {
  const QByteArray bytes = QByteArray::fromStdString(path.native());
  const QString text = QFile::decodeName(bytes);
  // Older macOS file systems return decomposed names, which Qt composes; that spelling refers to the same file, so only
  // replacement characters are a loss.
  if (QFile::encodeName(text) != bytes && text.contains(QChar::ReplacementCharacter)) return std::nullopt;
  return text;
}

std::filesystem::path path(const QString& qtPath) {
  return QFile::encodeName(qtPath).toStdString();
}

}  // namespace mirvel::ui
