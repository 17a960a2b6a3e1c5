#include "helpers/privileged/Authorisation.h"

#include <sys/random.h>
#include <unistd.h>

#include <cerrno>

#include "core/messages/Requests.h"

namespace mirvel {

Result<Authorisation> Authorisation::make() {
  std::string bytes(size, '\0');
  if (::getentropy(bytes.data(), bytes.size()) != 0) return systemError(errno, "make a random secret", {});
  return Authorisation(std::move(bytes));
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
  if (!bytes || bytes->size() != m_bytes.size()) return false;
  unsigned difference = 0;
  for (std::size_t i = 0; i < m_bytes.size(); ++i) {
    const auto ours = static_cast<unsigned char>(m_bytes[i]), theirs = static_cast<unsigned char>((*bytes)[i]);
    difference |= static_cast<unsigned>(ours ^ theirs);
  }
  return difference == 0;
}

std::function<bool(const propertylist::Dictionary& request)> admission(Authorisation authorisation, Console& console) {
  return [authorisation = std::move(authorisation), &console](const propertylist::Dictionary& request) {
    const bool isAdmitted = authorisation.isIn(request);
    if (!isAdmitted) console.log("refused: a request without the authorisation");
    return isAdmitted;
  };
}

}  // namespace mirvel
