#include "core/messages/Replies.h"

#include "core/messages/Fields.h"

namespace mirvel::messages {

namespace {

constexpr std::string_view errorKey = "error";

propertylist::Dictionary writeContent(const Done&) {
  return {};
}

template <HasFields T>
propertylist::Dictionary writeContent(const T& content) {
  return FieldWriter::write(content);
}

propertylist::Dictionary writeContent(const HelperError& error) {
  propertylist::Dictionary result;
  result.set(errorKey, error.dictionary());
  return result;
}

Error malformed(std::string_view key, const char* why) {
  return {.code = Error::Code::WrongType, .message = "the key " + std::string(key) + " of the reply " + why};
}

template <typename T>
Result<Reply> readContent(const propertylist::Dictionary& dictionary) {
  auto content = FieldReader::read<T>(dictionary);
  return content ? Result<Reply>(*std::move(content)) : content.error();
}

}  // namespace

propertylist::Dictionary write(const Reply& reply) {
  return std::visit([](const auto& content) { return writeContent(content); }, reply);
}

Result<Reply> readReply(Kind request, const propertylist::Dictionary& dictionary) {
  if (const auto* const value = dictionary.find(errorKey)) {
    const auto* const error = value->as<propertylist::Dictionary>();
    return error ? Result<Reply>(HelperError::read(*error)) : malformed(errorKey, "isn't a dictionary");
  }
  if (request == Kind::Test) return readContent<TestResult>(dictionary);
  if (request == Kind::Log) return readContent<LogLines>(dictionary);
  return Reply(Done());
}

}  // namespace mirvel::messages
