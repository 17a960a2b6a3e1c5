#include <ostream>

#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"
#include "core/support/ReadFile.h"
#include "ctl/Arguments.h"
#include "ctl/Command.h"

namespace mirvel::ctl {

namespace {

Result<std::string> converted(const std::string& file, bool toXml) {
  const auto bytes = readFile(file, plist::Limits::bytes);
  if (!bytes) return bytes.error();
  const auto document = plist::read(*bytes);
  Result<std::string> result = document ? (toXml ? plist::writeXml(document->value())
                                                 : Result<std::string>(plist::writeBinary(document->value())))
                                        : Result<std::string>(document.error());
  if (result) return result;
  Error error = result.error();
  error.file = file;
  return error;
}

}  // namespace

int convert(Arguments arguments, const Streams& streams) {
  const auto parsed = parseArguments(arguments, {{"--to", true}});
  if (!parsed) {
    streams.err << "mirvelctl convert: " << parsed.error().message << '\n';
    return Usage;
  }
  const auto form = parsed->options.find("--to");
  const bool isKnownForm = form != parsed->options.end() && (form->second == "xml" || form->second == "binary");
  if (!isKnownForm || parsed->operands.size() != 1) {
    streams.err << "usage: mirvelctl convert FILE --to xml|binary\n";
    return Usage;
  }
  const auto result = converted(parsed->operands.front(), form->second == "xml");
  if (!result) {
    streams.err << result.error().text() << '\n';
    return Failed;
  }
  streams.out << *result;
  return streams.out.flush() ? Success : Failed;
}

}  // namespace mirvel::ctl
