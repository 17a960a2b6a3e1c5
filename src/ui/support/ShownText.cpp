#include "ui/support/ShownText.h"

#include <QTextDocument>
#include <QWidget>

#include "core/text/Strings.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

QString shownText(std::string_view text) {
  constexpr std::size_t longest = 4000;
  const auto beginning = String::firstCharacters(text, longest);
  return beginning.size() < text.size() ? qt(beginning) + QChar(0x2026) : qt(beginning);
}

QString shownToolTip(std::string_view text) {
  const QString shown = shownText(text);
  if (!Qt::mightBeRichText(shown)) return shown;
  return QStringLiteral("<qt>") + shown.toHtmlEscaped() + QStringLiteral("</qt>");
}

QString helpText(std::string_view help) {
  if (help.empty()) return {};
  QString text = qt(help).toHtmlEscaped();
  text.replace(QLatin1Char('\n'), QLatin1String("<br/>"));
  return QStringLiteral("<qt>") + text + QStringLiteral("</qt>");
}

void setHelp(QWidget& control, std::string_view help) {
  control.setToolTip(helpText(help));
  control.setAccessibleDescription(qt(help));
}

QString leftToRight(const QString& path) {
  return QChar(0x2066) + path + QChar(0x2069);
}

}  // namespace mirvel::ui
