#include "helpers/privileged/Authorisation.h"

#include <utility>

#include "core/messages/Requests.h"
#include "core/text/Bytes.h"

namespace mirvel {

Result<Authorisation> Authorisation::make() {
  auto bytes = randomBytes(size);
  if (!bytes) return Error{.code = Error::Code::Io, .message = "can't create a random secret"};
  return Authorisation(*std::move(bytes));
}

propertylist::Dictionary Authorisation::greeting() const {
  return messages::FieldWriter::write(messages::AuthData{propertylist::Data{m_bytes}});
}

std::optional<std::string> Authorisation::dataIn(const propertylist::Dictionary& message) {
  auto read = messages::FieldReader::read<messages::AuthData>(message);
  return read && read->authData ? std::optional(std::move(read->authData->bytes)) : std::nullopt;
}

bool Authorisation::isIn(const propertylist::Dictionary& request) const {
  const auto bytes = dataIn(request);
  return bytes && isSameSecret(*bytes, m_bytes);
}

std::function<bool(const propertylist::Dictionary& request)> admission(Authorisation authorisation, Console& console) {
  return [authorisation = std::move(authorisation), &console](const propertylist::Dictionary& request) {
    const bool isAdmitted = authorisation.isIn(request);
    if (!isAdmitted) console.log("refused: a request without the authorisation");
    return isAdmitted;
  };
}

}  // namespace mirvel
