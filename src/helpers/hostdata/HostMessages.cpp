#include "helpers/hostdata/HostMessages.h"

#include <utility>

namespace mirvel::hostdata {

using messages::FieldReader;
using messages::FieldWriter;

namespace {

constexpr std::string_view requestKey = "request", errorKey = "error";

/// Reads the alternative of `Request` with that name.
template <std::size_t index = 0>
Result<Request> readNamed(const std::string& name, const propertylist::Dictionary& from) {
  if constexpr (index < std::variant_size_v<Request>) {
    using Candidate = std::variant_alternative_t<index, Request>;
    if (name != Candidate::name) return readNamed<index + 1>(name, from);
    auto request = FieldReader::read<Candidate>(from);
    return request ? Result<Request>(Request(*std::move(request))) : request.error();
  } else {
    return Error{.code = Error::Code::BadArgument, .message = "the job host has no request of that name"};
  }
}

/// An error as it is sent. Its code is a number of `Error::Code`, the same in host and client.
struct SentError {
  std::int64_t code = 0;
  std::string message;
  std::string path;

  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("code", self.code, messages::NumberRange{0, static_cast<int>(Error::lastCode), "is no code"});
    fields("message", self.message);
    fields("path", self.path);
  }
};

struct SentRefusal {
  SentError error;
  bool isEnding = false;

  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields(errorKey, self.error);
    fields("ending", self.isEnding);
  }
};

}  // namespace

propertylist::Dictionary write(const Request& request) {
  return std::visit(
      [](const auto& content) {
        auto dictionary = FieldWriter::write(content);
        dictionary.set(requestKey, content.name);
        return dictionary;
      },
      request);
}

Result<Request> readRequest(const propertylist::Dictionary& dictionary) {
  const auto* const name = dictionary.get<std::string>(requestKey);
  return readNamed(name ? *name : std::string(), dictionary);
}

Refusal Refusal::ending() {
  return {.error = {.code = Error::Code::Io, .message = "the job host is shutting down"}, .isEnding = true};
}

propertylist::Dictionary Refusal::write() const {
  return FieldWriter::write(
      SentRefusal{.error = {.code = static_cast<int>(error.code), .message = error.message, .path = error.file},
                  .isEnding = isEnding});
}

std::optional<Refusal> Refusal::read(const propertylist::Dictionary& answer) {
  if (!answer.find(errorKey)) return std::nullopt;
  auto sent = FieldReader::read<SentRefusal>(answer);
  if (!sent) {
    return Refusal{
        .error = {.code = Error::Code::Io, .message = "the job host replied with an error that can't be read"}};
  }
  return Refusal{.error = {.code = static_cast<Error::Code>(sent->error.code),
                           .message = std::move(sent->error.message),
                           .file = std::move(sent->error.path)},
                 .isEnding = sent->isEnding};
}

}  // namespace mirvel::hostdata
