#include "demo/DemoOptions.h"

#include <QCommandLineParser>

#include "core/support/Localize.h"
#include "ui/support/QtText.h"

namespace mirvel::demo {

namespace {

/// "800x600" as a size; invalid for anything else.
QSize sizeFrom(const QString& text) {
  const QStringList parts = text.split(QLatin1Char('x'));
  if (parts.size() != 2) return {};
  return {parts.at(0).toInt(), parts.at(1).toInt()};
}

}  // namespace

DemoOptions DemoOptions::read(const QStringList& arguments) {
  const QCommandLineOption picture(QStringLiteral("picture"), QStringLiteral("Write a picture of the window, and end."),
                                   QStringLiteral("file"));
  const QCommandLineOption size(QStringLiteral("size"), QStringLiteral("Size of the window, such as 900x600."),
                                QStringLiteral("size"));
  const QCommandLineOption scheme(QStringLiteral("scheme"), QStringLiteral("Colours: light or dark."),
                                  QStringLiteral("scheme"));
  const QCommandLineOption locale(QStringLiteral("locale"), QStringLiteral("Language, such as de."),
                                  QStringLiteral("locale"));
  const QCommandLineOption select(QStringLiteral("select"), QStringLiteral("Select the job with this label."),
                                  QStringLiteral("label"));
  const QCommandLineOption filter(QStringLiteral("filter"), QStringLiteral("Text of the search field."),
                                  QStringLiteral("text"));
  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral("Mirvel on a throw-away folder full of sample jobs."));
  parser.addHelpOption();
  parser.addVersionOption();
  parser.addOptions({picture, size, scheme, locale, select, filter});
  parser.process(arguments);

  DemoOptions options;
  if (parser.isSet(picture)) options.picture = parser.value(picture);
  if (parser.isSet(scheme)) options.isDark = parser.value(scheme) == QLatin1String("dark");
  options.size = sizeFrom(parser.value(size));
  options.locale = parser.isSet(locale) ? ui::utf8(parser.value(locale)) : Localize::currentLocale();
  options.selected = parser.value(select);
  options.filter = parser.value(filter);
  return options;
}

}  // namespace mirvel::demo
