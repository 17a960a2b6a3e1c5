#include "helpers/action/Request.h"

#include <string_view>
#include <vector>

#include "core/text/Digits.h"
#include "helpers/jobfiles/JobFiles.h"

namespace mirvel {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t longestPath = 4096;

Error bad(Error::Code code, std::string_view key, std::string_view why) {
  return {.code = code, .message = "the request's key " + std::string(key) + " " + std::string(why), .keyPath = {}};
}

Result<void> readText(const propertylist::Dictionary& from, const char* key, std::optional<std::string>& to) {
  const auto* value = from.find(key);
  if (!value) return {};
  const auto* text = value->as<std::string>();
  if (!text) return bad(Error::Code::WrongType, key, "is no text");
  to = *text;
  return {};
}

Result<void> readMode(const propertylist::Dictionary& from, std::optional<mode_t>& to) {
  const auto* value = from.find("mode");
  if (!value) return {};
  const auto* integer = value->as<propertylist::Integer>();
  const auto number = integer ? integer->toInt64() : std::nullopt;
  if (!number || *number < 0 || *number > 0777) return bad(Error::Code::BadArgument, "mode", "is no mode of a file");
  to = static_cast<mode_t>(*number);
  return {};
}

Result<void> readPath(const propertylist::Dictionary& from, const char* key, std::optional<fs::path>& to) {
  std::optional<std::string> text;
  auto result = readText(from, key, text);
  if (!result || !text) return result;
  if (!text->starts_with('/')) return bad(Error::Code::BadArgument, key, "is no absolute path");
  if (text->find('\0') != std::string::npos) return bad(Error::Code::BadArgument, key, "holds a null character");
  if (text->size() > longestPath) return bad(Error::Code::LimitExceeded, key, "is too long");
  to = *text;
  return {};
}

Result<Request::LogQuery> readLogQuery(const propertylist::Dictionary& query) {
  std::optional<std::string> seconds, text;
  if (auto result = readText(query, "lastSeconds", seconds); !result) return result.error();
  if (auto result = readText(query, "searchString", text); !result) return result.error();
  constexpr std::int64_t longest = std::int64_t{100} * 366 * 86400;
  const std::int64_t number = Decimal::toInt(seconds.value_or("")).value_or(0);
  if (number <= 0 || number > longest) {
    return bad(Error::Code::BadArgument, "lastSeconds", "is no number of seconds");
  }
  if (!text || text->empty()) return bad(Error::Code::MissingKey, "searchString", "is missing");
  if (text->size() > longestPath) return bad(Error::Code::LimitExceeded, "searchString", "is too long");
  return Request::LogQuery{.period = std::chrono::seconds(number), .text = *text};
}

Result<Request::Kind> readKind(const propertylist::Dictionary& from) {
  const auto* value = from.find("kind");
  const auto* integer = value ? value->as<propertylist::Integer>() : nullptr;
  const auto number = integer ? integer->toInt64() : std::nullopt;
  if (!number) return bad(Error::Code::MissingKey, "kind", "is missing");
  const bool isOurs = *number == static_cast<int>(Request::Kind::startHost);
  if (!isOurs && (*number < 0 || *number > 9 || *number == 7))
    return bad(Error::Code::BadArgument, "kind", "is unknown");
  return static_cast<Request::Kind>(*number);
}

std::vector<const char*> missingKeys(const Request& request) {
  using Kind = Request::Kind;
  const bool writes = request.kind == Kind::write || request.kind == Kind::writeAndLoad;
  const bool tests = request.kind == Kind::test;
  std::vector<const char*> missing;
  if (!request.path && (writes || request.kind == Kind::load || request.kind == Kind::unload))
    missing.push_back("path");
  if (!request.deletePath && request.kind == Kind::delete_) missing.push_back("deletePath");
  if (!request.testPath && tests) missing.push_back("testPath");
  if (!request.testOutputPath && tests) missing.push_back("testOutputPath");
  if (!request.string && (writes || tests)) missing.push_back("string");
  if (!request.logQuery && request.kind == Kind::log) missing.push_back("logQuery");
  return missing;
}

Result<void> readFields(const propertylist::Dictionary& from, Request& request) {
  if (auto result = readPath(from, "path", request.path); !result) return result;
  if (auto result = readPath(from, "deletePath", request.deletePath); !result) return result;
  if (auto result = readPath(from, "testPath", request.testPath); !result) return result;
  if (auto result = readPath(from, "testOutputPath", request.testOutputPath); !result) return result;
  if (auto result = readText(from, "string", request.string); !result) return result;
  if (auto result = readMode(from, request.mode); !result) return result;
  if (auto result = readText(from, "label", request.label); !result || !request.label) return result;
  return checkLabel(*request.label);
}

}  // namespace

Result<Request> Request::read(const propertylist::Dictionary& dictionary) {
  const auto kind = readKind(dictionary);
  if (!kind) return kind.error();
  Request request{.kind = *kind};
  if (auto result = readFields(dictionary, request); !result) return result.error();
  if (const auto* value = dictionary.find("logQuery")) {
    const auto* query = value->as<propertylist::Dictionary>();
    if (!query) return bad(Error::Code::WrongType, "logQuery", "is no dictionary");
    const auto read = readLogQuery(*query);
    if (!read) return read.error();
    request.logQuery = *read;
  }
  const auto missing = missingKeys(request);
  if (!missing.empty()) return bad(Error::Code::MissingKey, missing.front(), "is missing");
  return request;
}

}  // namespace mirvel
