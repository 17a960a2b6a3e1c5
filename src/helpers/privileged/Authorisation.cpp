#include "helpers/privileged/Authorisation.h"

#include <sys/random.h>
#include <unistd.h>

#include <cerrno>

#include "helpers/action/ErrorReply.h"

namespace mirvel {

namespace {

constexpr const char* key = "authData";

}  // namespace

Result<Authorisation> Authorisation::make() {
  std::string bytes(size, '\0');
  if (::getentropy(bytes.data(), bytes.size()) != 0) return systemError(errno, "make a random secret", {});
  return Authorisation(std::move(bytes));
}

propertylist::Dictionary Authorisation::greeting() const {
  return {{key, propertylist::Data{m_bytes}}};
}

std::optional<std::string> Authorisation::dataIn(const propertylist::Dictionary& message) {
  const auto* value = message.find(key);
  const auto* data = value ? value->as<propertylist::Data>() : nullptr;
  return data ? std::optional(data->bytes) : std::nullopt;
}

bool Authorisation::isIn(const propertylist::Dictionary& request) const {
  const auto bytes = dataIn(request);
  if (!bytes || bytes->size() != m_bytes.size()) return false;
  unsigned difference = 0;
  for (std::size_t i = 0; i < m_bytes.size(); ++i) {
    const auto ours = static_cast<unsigned char>(m_bytes[i]), theirs = static_cast<unsigned char>((*bytes)[i]);
    difference |= static_cast<unsigned>(ours ^ theirs);
  }
  return difference == 0;
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
