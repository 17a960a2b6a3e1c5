#include <ostream>

#include "core/explain/Occasions.h"
#include "core/process/Arguments.h"
#include "core/propertylist/Reader.h"
#include "ctl/Input.h"
#include "ctl/JobJson.h"
#include "ctl/Printable.h"
#include "ctl/Style.h"
#include "ctl/Subcommand.h"
#include "ctl/WriteValue.h"

namespace mirvel::ctl {

namespace {

Result<propertylist::Document> readDocument(const std::string& file, const Context& context) {
  const auto bytes = readInput(file, context);
  return bytes ? propertylist::read(*bytes) : Result<propertylist::Document>(bytes.error());
}

int showJson(const Result<propertylist::Document>& document, const Context& context) {
  Json json{{"ok", static_cast<bool>(document)}};
  if (!document) {
    json.update(errorObject(document.error()));
  } else {
    json["format"] = document->format() == propertylist::Format::Xml ? "xml" : "binary";
    json["value"] = typedTree(document->root());
    jobfile::Plist job;
    if (jobfile::Plist::decodeTolerantly(document->root(), job)) json["job"] = jobObject(job);
  }
  context.out << text(json) << '\n';
  return document ? Success : Failed;
}

void writeLines(const std::string& title, const std::vector<std::string>& lines, std::ostream& out) {
  const std::string margin(title.size() + 2, ' ');
  std::string before = title + ": ";
  for (const std::string& line : lines) {
    out << "  " << before << printable(line) << '\n';
    before = margin;
  }
}

void writeJob(const jobfile::Plist& job, const Context& context) {
  context.out << bold(printable(job.name), context.hasColour) << '\n';
  if (!job.run.empty()) writeLines(context.localize.command(), {job.run}, context.out);
  writeLines(context.localize.when(), explain::occasions(job, context.localize), context.out);
  context.out << '\n';
}

int showWords(const std::string& file, const Result<propertylist::Document>& document, const Context& context) {
  if (!document) {
    context.err << errorLine(file, document.error()) << '\n';
    return Failed;
  }
  jobfile::Plist job;
  const auto decoded = jobfile::Plist::decodeTolerantly(document->root(), job);
  if (decoded) writeJob(job, context);
  writeValue(document->root(), context.out);
  const auto members = document->root().dictionary();
  if (!decoded && members && members->find("Label")) {
    context.out << "\nnot a job: " << printable(decoded.error().text()) << '\n';
  }
  return Success;
}

}  // namespace

int show(Arguments arguments, const Context& context) {
  const auto parsed = parseArguments(arguments, {{"--json"}});
  if (!parsed) return usageError("show", parsed.error().message, context);
  if (parsed->operands.size() != 1) return usageError("show", "expected one file", context);
  const std::string& file = parsed->operands.front();
  const auto document = readDocument(file, context);
  return parsed->has("--json") ? showJson(document, context) : showWords(file, document, context);
}

}  // namespace mirvel::ctl
