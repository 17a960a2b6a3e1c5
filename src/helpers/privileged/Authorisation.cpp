#include "helpers/privileged/Authorisation.h"

#include <utility>

#include "core/text/Bytes.h"
#include "helpers/action/ErrorReply.h"

namespace mirvel {

namespace {

constexpr const char* key = "authData";

}  // namespace

Result<Authorisation> Authorisation::make() {
  auto bytes = randomBytes(size);
  if (!bytes) return Error{.code = Error::Code::Io, .message = "can't make a random secret"};
  return Authorisation(*std::move(bytes));
}

propertylist::Dictionary Authorisation::greeting() const {
  return {{key, propertylist::Data{m_bytes}}};
}

std::optional<std::string> Authorisation::dataIn(const propertylist::Dictionary& message) {
  const auto* const data = message.get<propertylist::Data>(key);
  return data ? std::optional(data->bytes) : std::nullopt;
}

bool Authorisation::isIn(const propertylist::Dictionary& request) const {
  const auto bytes = dataIn(request);
  return bytes && isSameSecret(*bytes, m_bytes);
}

std::function<propertylist::Dictionary(const propertylist::Dictionary&)> guarded(
    Authorisation authorisation, Console& console,
    std::function<propertylist::Dictionary(const propertylist::Dictionary&)> handle) {
  return [authorisation = std::move(authorisation), &console,
          handle = std::move(handle)](const propertylist::Dictionary& request) {
    if (authorisation.isIn(request)) return handle(request);
    console.log("refused: a request without the authorisation");
    return errorReply(ActionErrorCode::NotConnected);
  };
}

}  // namespace mirvel
