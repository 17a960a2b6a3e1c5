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

std::optional<Theme> themeFrom(const QString& name) {
  const Theme theme = Themes::named(ui::utf8(name));
  return theme == Theme::Automatic ? std::nullopt : std::optional(theme);
}

[[noreturn]] void refuse(const QString& value) {
  std::cerr << "mirvel-demo: invalid value " << ui::utf8(value) << "; try mirvel-demo --help\n";
  std::exit(2);
}

struct Known {
  QCommandLineOption picture{QStringLiteral("picture"), QStringLiteral("Write a picture of the window and exit."),
                             QStringLiteral("file")};
  QCommandLineOption size{QStringLiteral("size"), QStringLiteral("Size of the window, such as 900x600."),
                          QStringLiteral("size")};
  QCommandLineOption scheme{QStringLiteral("scheme"), QStringLiteral("Colours: light or dark."),
                            QStringLiteral("scheme")};
  QCommandLineOption locale{QStringLiteral("locale"), QStringLiteral("Locale, such as de."), QStringLiteral("locale")};
  QCommandLineOption select{QStringLiteral("select"), QStringLiteral("Select the job with this label."),
                            QStringLiteral("label")};
  QCommandLineOption edit{QStringLiteral("edit"), QStringLiteral("Open the selected job in the editor.")};
  QCommandLineOption find{QStringLiteral("find"), QStringLiteral("Find this key in the editor."),
                          QStringLiteral("key")};
  QCommandLineOption info{QStringLiteral("info"), QStringLiteral("Open the information sheet of the selected job.")};
  QCommandLineOption log{QStringLiteral("log"), QStringLiteral("Open the log of the selected job.")};
  QCommandLineOption test{QStringLiteral("test"), QStringLiteral("Test the selected job.")};
  QCommandLineOption filter{QStringLiteral("filter"), QStringLiteral("Text of the search field."),
                            QStringLiteral("text")};
  QCommandLineOption script{QStringLiteral("script"), QStringLiteral("Open the script that the selected job runs.")};
  QCommandLineOption preferences{
      QStringLiteral("preferences"),
      QStringLiteral("Show this pane of the preferences: %1.").arg(DemoOptions::paneNames().join(QStringLiteral(", "))),
      QStringLiteral("pane")};
  QCommandLineOption theme{QStringLiteral("theme"), QStringLiteral("Colours of scripts: Light, Dark or HighContrast."),
                           QStringLiteral("theme")};
  QCommandLineOption newJob{
      QStringLiteral("new"),
      QStringLiteral("Show this page of the sheet for new jobs: %1.").arg(newPageNames().join(QStringLiteral(", "))),
      QStringLiteral("page")};
  QCommandLineOption mode{QStringLiteral("mode"), QStringLiteral("View: grid, tree, list or timeline."),
                          QStringLiteral("mode")};
};

constexpr QLatin1String light("light");
constexpr QLatin1String dark("dark");

/// Exits with a message if an option that was given has an invalid value.
void check(const QCommandLineParser& parser, const Known& known) {
  const auto require = [&parser](const QCommandLineOption& option, const auto& isValid) {
    if (parser.isSet(option) && !isValid(parser.value(option))) refuse(parser.value(option));
  };
  require(known.scheme, [](const QString& name) { return name == light || name == dark; });
  require(known.size, [](const QString& text) { return sizeFrom(text).isValid(); });
  require(known.mode, [](const QString& name) { return modeFrom(name).has_value(); });
  require(known.preferences, [](const QString& pane) { return DemoOptions::paneNames().contains(pane); });
  require(known.theme, [](const QString& theme) { return themeFrom(theme).has_value(); });
  require(known.newJob, [](const QString& page) { return newPageNames().contains(page); });
}

}  // namespace

QStringList DemoOptions::paneNames() {
  return {QStringLiteral("general"), QStringLiteral("advanced"), QStringLiteral("notifications"),
          QStringLiteral("themes"), QStringLiteral("folders")};
}

DemoOptions DemoOptions::read(const QStringList& arguments) {
  const Known known;
  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral("Runs Mirvel on a temporary folder full of sample jobs."));
  parser.addHelpOption();
  parser.addVersionOption();
  parser.addOptions({known.picture, known.size, known.scheme, known.locale, known.mode, known.select, known.edit,
                     known.find, known.info, known.log, known.test, known.filter, known.newJob, known.script,
                     known.preferences, known.theme});
  parser.process(arguments);
  check(parser, known);

  DemoOptions options;
  if (parser.isSet(known.picture)) options.picture = parser.value(known.picture);
  if (parser.isSet(known.scheme)) options.isDark = parser.value(known.scheme) == dark;
  options.size = sizeFrom(parser.value(known.size));
  options.locale = parser.isSet(known.locale) ? ui::utf8(parser.value(known.locale)) : Localize::currentLocale();
  options.mode = modeFrom(parser.value(known.mode)).value_or(Mode::Grid);
  options.selected = parser.value(known.select);
  options.isEdited = parser.isSet(known.edit);
  options.key = parser.value(known.find);
  options.hasInfo = parser.isSet(known.info);
  options.hasLog = parser.isSet(known.log);
  options.hasTest = parser.isSet(known.test);
  options.filter = parser.value(known.filter);
  options.newPage = parser.value(known.newJob);
  options.hasScript = parser.isSet(known.script);
  options.pane = parser.value(known.preferences);
  options.theme = themeFrom(parser.value(known.theme));
  return options;
}

}  // namespace mirvel::demo
