#include <ostream>

#include "core/propertylist/Reader.h"
#include "core/support/ReadFile.h"
#include "ctl/Arguments.h"
#include "ctl/Command.h"
#include "ctl/Json.h"

namespace mirvel::ctl {

namespace {

int showJson(const std::string& file, const Streams& streams) {
  const auto bytes = readFile(file, plist::Limits::bytes);
  const auto document = bytes ? plist::read(*bytes) : Result<plist::Document>(bytes.error());
  if (!document) {
    Json json{{"ok", false}};
    json.update(errorObject(document.error()));
    streams.out << text(json) << '\n';
    return Failed;
  }
  const Json json{{"ok", true},
                  {"format", document->format() == plist::Format::Xml ? "xml" : "binary"},
                  {"value", typedTree(document->root())}};
  streams.out << text(json) << '\n';
  return Success;
}

}  // namespace

int show(Arguments arguments, const Streams& streams) {
  const auto parsed = parseArguments(arguments, {{"--json"}});
  if (!parsed || parsed->operands.size() != 1) {
    streams.err << "usage: mirvelctl show FILE [--json]\n";
    return Usage;
  }
  return showJson(parsed->operands.front(), streams);
}

}  // namespace mirvel::ctl
