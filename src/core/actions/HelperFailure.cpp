#include "core/actions/HelperFailure.h"

#include <cerrno>
#include <string>

namespace mirvel {

namespace {

constexpr std::string_view deedKey = "deed", causeKey = "cause", systemKey = "errno", pathKey = "path",
                           lineKey = "line", columnKey = "column", placeKey = "keyPath", detailKey = "detail",
                           writtenKey = "isWritten";

std::optional<std::int64_t> numberIn(const propertylist::Dictionary& error, std::string_view key) {
  const propertylist::Value* const value = error.find(key);
  const auto* const number = value ? value->as<propertylist::Integer>() : nullptr;
  return number ? number->toInt64() : std::nullopt;
}

std::string textIn(const propertylist::Dictionary& error, std::string_view key) {
  const propertylist::Value* const value = error.find(key);
  const auto* const text = value ? value->as<std::string>() : nullptr;
  return text ? *text : std::string();
}

std::size_t countIn(const propertylist::Dictionary& error, std::string_view key) {
  const auto number = numberIn(error, key).value_or(0);
  return number > 0 ? static_cast<std::size_t>(number) : 0;
}

/// The code in the domain of actions, for what has one.
std::optional<ActionErrorCode> actionCodeOf(const HelperFailure& failure) {
  switch (failure.deed) {
    case HelperFailure::Deed::Write:
    case HelperFailure::Deed::Delete:
      return failure.isMatterOfName() ? ActionErrorCode::NotChangedTryNewName : ActionErrorCode::NotChanged;
    case HelperFailure::Deed::Log:
      return ActionErrorCode::NoLog;
    default:
      return std::nullopt;
  }
}

}  // namespace

bool HelperFailure::isMatterOfName() const {
  switch (cause.systemCode) {
    case EEXIST:
    case EISDIR:
    case ENAMETOOLONG:
    case EILSEQ:
    case EINVAL:
      return true;
    default:
      return cause.systemCode == 0 && cause.code == Error::Code::BadArgument;
  }
}

propertylist::Dictionary HelperFailure::dictionary() const {
  const auto action = actionCodeOf(*this);
  // Codes of our own are never 0, which would mean that there is no error.
  const int code = action ? static_cast<int>(*action) : static_cast<int>(cause.code) + 1;
  propertylist::Dictionary result{
      {"domain", action ? actionErrorDomain : helperErrorDomain}, {"code", code}, {"description", cause.text()}};
  result.set(deedKey, static_cast<int>(deed));
  result.set(causeKey, static_cast<int>(cause.code));
  result.set(detailKey, cause.message);
  if (cause.systemCode != 0) result.set(systemKey, cause.systemCode);
  if (!cause.file.empty()) result.set(pathKey, cause.file);
  if (cause.line != 0) result.set(lineKey, static_cast<std::int64_t>(cause.line));
  if (cause.column != 0) result.set(columnKey, static_cast<std::int64_t>(cause.column));
  if (!cause.keyPath.empty()) result.set(placeKey, cause.keyPath);
  if (isWritten) result.set(writtenKey, true);
  return result;
}

std::optional<HelperFailure> HelperFailure::from(const propertylist::Dictionary& error) {
  const auto deed = numberIn(error, deedKey), cause = numberIn(error, causeKey);
  if (!deed || *deed < 0 || *deed > static_cast<int>(Deed::Log)) return std::nullopt;
  if (!cause || *cause < 0 || *cause > static_cast<int>(Error::Code::StillRunning)) return std::nullopt;
  const propertylist::Value* const written = error.find(writtenKey);
  const bool* const isWritten = written ? written->as<bool>() : nullptr;
  return HelperFailure{.deed = static_cast<Deed>(*deed),
                       .cause = {.code = static_cast<Error::Code>(*cause),
                                 .message = textIn(error, detailKey),
                                 .file = textIn(error, pathKey),
                                 .line = countIn(error, lineKey),
                                 .column = countIn(error, columnKey),
                                 .keyPath = textIn(error, placeKey),
                                 .systemCode = static_cast<int>(numberIn(error, systemKey).value_or(0))},
                       .isWritten = isWritten && *isWritten};
}

}  // namespace mirvel
