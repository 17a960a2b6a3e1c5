#include <ostream>

#include "core/process/Arguments.h"
#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"
#include "ctl/Input.h"
#include "ctl/Printable.h"
#include "ctl/Subcommand.h"

namespace mirvel::ctl {

namespace {

Result<std::string> converted(const std::string& file, bool toXml, const Context& context) {
  const auto bytes = readInput(file, context);
  if (!bytes) return bytes.error();
  const auto document = propertylist::read(*bytes);
  if (!document) return document.error();
  if (toXml) return propertylist::writeXml(document->value());
  return propertylist::writeBinary(document->value());
}

}  // namespace

int convert(Arguments arguments, const Context& context) {
  const auto parsed = parseArguments(arguments, {{"--to", true}});
  if (!parsed) return usageError("convert", parsed.error().message, context);
  if (parsed->operands.size() != 1) return usageError("convert", "expected one file", context);
  const auto format = parsed->value("--to");
  if (format != "xml" && format != "binary") return usageError("convert", "--to must be xml or binary", context);
  const bool toXml = format == "xml";
  // Binary data can contain escape sequences.
  if (!toXml && context.isTerminal) {
    return usageError("convert", "can't write binary data to a terminal; redirect the output", context);
  }
  const std::string& file = parsed->operands.front();
  const auto result = converted(file, toXml, context);
  if (!result) {
    context.err << errorLine(file, result.error()) << '\n';
    return Failed;
  }
  context.out << (context.isTerminal ? printable(*result, LineFeeds::Keep) : *result);
  return Success;
}

}  // namespace mirvel::ctl
