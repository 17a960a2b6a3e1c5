#include "core/messages/HelperFailure.h"

#include <cerrno>
#include <utility>

namespace mirvel {

namespace {

constexpr std::string_view domainKey = "domain", codeKey = "code", descriptionKey = "description",
                           suggestionKey = "suggestion", operationKey = "operation", causeKey = "cause",
                           systemKey = "errno", pathKey = "path", lineKey = "line", columnKey = "column",
                           offsetKey = "offset", placeKey = "keyPath", detailKey = "detail", writtenKey = "isWritten";

/// None if the key is absent or has another type, as for all values of an error.
template <typename T>
std::optional<T> valueIn(const propertylist::Dictionary& error, std::string_view key) {
  const T* const value = error.get<T>(key);
  return value ? std::optional(*value) : std::nullopt;
}

std::optional<std::int64_t> numberIn(const propertylist::Dictionary& error, std::string_view key) {
  const auto* const integer = error.get<propertylist::Integer>(key);
  return integer ? integer->toInt64() : std::nullopt;
}

std::string textIn(const propertylist::Dictionary& error, std::string_view key) {
  return valueIn<std::string>(error, key).value_or("");
}

std::size_t countIn(const propertylist::Dictionary& error, std::string_view key) {
  const auto number = numberIn(error, key).value_or(0);
  return number > 0 ? static_cast<std::size_t>(number) : 0;
}

void write(const HelperFailure& failure, propertylist::Dictionary& to) {
  const Error& cause = failure.cause;
  to.set(operationKey, static_cast<int>(failure.operation));
  to.set(causeKey, static_cast<int>(cause.code));
  to.set(detailKey, cause.message);
  if (cause.systemCode != 0) to.set(systemKey, cause.systemCode);
  if (!cause.file.empty()) to.set(pathKey, cause.file);
  if (cause.line != 0) to.set(lineKey, static_cast<std::int64_t>(cause.line));
  if (cause.column != 0) to.set(columnKey, static_cast<std::int64_t>(cause.column));
  if (cause.offset) to.set(offsetKey, static_cast<std::int64_t>(*cause.offset));
  if (!cause.keyPath.empty()) to.set(placeKey, cause.keyPath);
  if (failure.isWritten) to.set(writtenKey, true);
}

std::optional<HelperFailure> readFailure(const propertylist::Dictionary& error) {
  using Operation = HelperFailure::Operation;
  const auto operation = numberIn(error, operationKey), cause = numberIn(error, causeKey);
  if (!operation || *operation < 0 || *operation > static_cast<int>(Operation::Control)) return std::nullopt;
  if (!cause || *cause < 0 || *cause > static_cast<int>(Error::lastCode)) return std::nullopt;
  return HelperFailure{.operation = static_cast<Operation>(*operation),
                       .cause = {.code = static_cast<Error::Code>(*cause),
                                 .message = textIn(error, detailKey),
                                 .file = textIn(error, pathKey),
                                 .line = countIn(error, lineKey),
                                 .column = countIn(error, columnKey),
                                 .offset = numberIn(error, offsetKey),
                                 .keyPath = textIn(error, placeKey),
                                 .systemCode = static_cast<int>(numberIn(error, systemKey).value_or(0))},
                       .isWritten = valueIn<bool>(error, writtenKey).value_or(false)};
}

/// Whether the cause is the name of the file, so that another name can help.
bool isMatterOfName(const Error& cause) {
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

/// The code in `actionErrorDomain`; none for operations other than writing, deleting and querying the log.
std::optional<ActionErrorCode> actionCode(const HelperFailure& failure) {
  switch (failure.operation) {
    case HelperFailure::Operation::Write:
    case HelperFailure::Operation::Delete:
      return isMatterOfName(failure.cause) ? ActionErrorCode::NotChangedTryNewName : ActionErrorCode::NotChanged;
    case HelperFailure::Operation::Log:
      return ActionErrorCode::NoLog;
    default:
      return std::nullopt;
  }
}

}  // namespace

HelperError HelperError::of(ActionErrorCode code) {
  return {.domain = actionErrorDomain, .code = propertylist::Integer(static_cast<int>(code))};
}

HelperError HelperError::of(HelperFailure failure) {
  const auto action = actionCode(failure);
  // 0 would mean success, and `Error::Code` begins with 0.
  const int code = action ? static_cast<int>(*action) : static_cast<int>(failure.cause.code) + 1;
  HelperError error{.domain = action ? actionErrorDomain : helperErrorDomain,
                    .code = propertylist::Integer(code),
                    .description = failure.cause.text()};
  error.failure = std::move(failure);
  return error;
}

propertylist::Dictionary HelperError::dictionary() const {
  propertylist::Dictionary result;
  if (domain) result.set(domainKey, *domain);
  if (code) result.set(codeKey, *code);
  if (description) result.set(descriptionKey, *description);
  if (suggestion) result.set(suggestionKey, *suggestion);
  if (failure) mirvel::write(*failure, result);
  return result;
}

HelperError HelperError::read(const propertylist::Dictionary& dictionary) {
  return {.domain = valueIn<std::string>(dictionary, domainKey),
          .code = valueIn<propertylist::Integer>(dictionary, codeKey),
          .description = valueIn<std::string>(dictionary, descriptionKey),
          .suggestion = valueIn<std::string>(dictionary, suggestionKey),
          .failure = readFailure(dictionary)};
}

}  // namespace mirvel
