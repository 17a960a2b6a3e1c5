#include "demo/DemoOptions.h"

#include <QCommandLineParser>
#include <cstdlib>
#include <iostream>

#include "core/locale/Localize.h"
#include "demo/ShowNewPage.h"
#include "ui/support/QtText.h"

namespace mirvel::demo {

namespace {

/// Parses a size such as "800x600"; invalid if malformed.
QSize sizeFrom(const QString& text) {
  const QStringList parts = text.split(QLatin1Char('x'));
  if (parts.size() != 2) return {};
  const QSize size(parts.at(0).toInt(), parts.at(1).toInt());
  return size.isEmpty() ? QSize() : size;
}

/// The mode named grid, tree, list or timeline.
std::optional<Mode> modeFrom(const QString& name) {
  const QStringList names{QStringLiteral("grid"), QStringLiteral("tree"), QStringLiteral("list"),
                          QStringLiteral("timeline")};
  const auto number = names.indexOf(name);
  return number < 0 ? std::nullopt : std::optional(static_cast<Mode>(number));
}

[[noreturn]] void refuse(const QString& value) {
  std::cerr << "mirvel-demo: invalid value " << ui::utf8(value) << "; try mirvel-demo --help\n";
  std::exit(2);
}

}  // namespace

DemoOptions DemoOptions::read(const QStringList& arguments) {
  const QCommandLineOption picture(QStringLiteral("picture"), QStringLiteral("Write a picture of the window and exit."),
                                   QStringLiteral("file"));
  const QCommandLineOption size(QStringLiteral("size"), QStringLiteral("Size of the window, such as 900x600."),
                                QStringLiteral("size"));
  const QCommandLineOption scheme(QStringLiteral("scheme"), QStringLiteral("Colours: light or dark."),
                                  QStringLiteral("scheme"));
  const QCommandLineOption locale(QStringLiteral("locale"), QStringLiteral("Locale, such as de."),
                                  QStringLiteral("locale"));
  const QCommandLineOption select(QStringLiteral("select"), QStringLiteral("Select the job with this label."),
                                  QStringLiteral("label"));
  const QCommandLineOption edit(QStringLiteral("edit"), QStringLiteral("Open the selected job in the editor."));
  const QCommandLineOption filter(QStringLiteral("filter"), QStringLiteral("Text of the search field."),
                                  QStringLiteral("text"));
  const QCommandLineOption newJob(
      QStringLiteral("new"),
      QStringLiteral("Show this page of the sheet for new jobs: %1.").arg(newPageNames().join(QStringLiteral(", "))),
      QStringLiteral("page"));
  const QCommandLineOption mode(QStringLiteral("mode"), QStringLiteral("View: grid, tree, list or timeline."),
                                QStringLiteral("mode"));
  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral("Runs Mirvel on a temporary folder full of sample jobs."));
  parser.addHelpOption();
  parser.addVersionOption();
  parser.addOptions({picture, size, scheme, locale, mode, select, edit, filter, newJob});
  parser.process(arguments);
  const QString schemeName = parser.value(scheme);
  const bool isKnownScheme = schemeName == QLatin1String("light") || schemeName == QLatin1String("dark");
  if (parser.isSet(scheme) && !isKnownScheme) refuse(schemeName);
  if (parser.isSet(size) && !sizeFrom(parser.value(size)).isValid()) refuse(parser.value(size));
  if (parser.isSet(mode) && !modeFrom(parser.value(mode))) refuse(parser.value(mode));
  if (parser.isSet(newJob) && !newPageNames().contains(parser.value(newJob))) refuse(parser.value(newJob));

  DemoOptions options;
  if (parser.isSet(picture)) options.picture = parser.value(picture);
  if (parser.isSet(scheme)) options.isDark = schemeName == QLatin1String("dark");
  options.size = sizeFrom(parser.value(size));
  options.locale = parser.isSet(locale) ? ui::utf8(parser.value(locale)) : Localize::currentLocale();
  options.mode = modeFrom(parser.value(mode)).value_or(Mode::Grid);
  options.selected = parser.value(select);
  options.isEdited = parser.isSet(edit);
  options.filter = parser.value(filter);
  options.newPage = parser.value(newJob);
  return options;
}

}  // namespace mirvel::demo
