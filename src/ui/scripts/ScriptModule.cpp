#include "ui/scripts/ScriptModule.h"

#include <QJsonObject>
#include <QPluginLoader>

#include "core/ports/Console.h"
#include "ui/scripts/PlainEditor.h"
#include "ui/scripts/ScriptEditor.h"
#include "ui/support/InstalledFolders.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace fs = std::filesystem;

namespace {

Error unusable(const fs::path& module, const std::string& why) {
  return {.code = Error::Code::BadArgument, .message = why, .file = module.native()};
}

/// Whether the module's metadata names this version of the program; classes of the same name differ in other versions.
bool isOurs(const QPluginLoader& loader) {
  const QJsonObject data = loader.metaData();
  return data.value(QStringLiteral("IID")) == QLatin1String(SCRIPT_EDITOR_FACTORY_ID) &&
         data.value(QStringLiteral("MetaData")).toObject().value(QStringLiteral("version")) ==
             QLatin1String(MIRVEL_VERSION);
}

}  // namespace

fs::path scriptModule() {
  return helpersFolder() / MIRVEL_SCRIPT_MODULE;
}

Result<ScriptEditorFactory*> loadScriptModule(const fs::path& module) {
  const auto file = qtPath(module);
  if (!file) return unusable(module, "the file's name can't be read");
  QPluginLoader loader(*file);  // loads each file once, and doesn't unload it in its destructor
  if (loader.metaData().isEmpty()) return unusable(module, utf8(loader.errorString()));
  if (!isOurs(loader)) return unusable(module, "this is no module of version " MIRVEL_VERSION);
  if (auto* factory = qobject_cast<ScriptEditorFactory*>(loader.instance())) return factory;
  return unusable(module, utf8(loader.errorString()));
}

ScriptText* makeScriptText(Console& console, const Localize& localize, const QString& name, QWidget* parent,
                           const fs::path& module) {
  const auto factory = loadScriptModule(module);
  if (!factory) console.log("Scripts have no colours: " + factory.error().text());
  const auto make = [&factory](QWidget& owner) -> ScriptEditor& {
    if (factory) return (*factory)->make(owner);
    return *new PlainEditor(&owner);
  };
  return new ScriptText(make, localize, name, parent);
}

}  // namespace mirvel::ui
