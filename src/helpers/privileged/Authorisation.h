#pragma once

#include <functional>
#include <optional>
#include <string>

#include "core/propertylist/Value.h"
#include "core/support/Console.h"
#include "core/support/Result.h"

namespace mirvel {

/// The secret that every request to the privileged helper carries, so that a user's other programs can't send any.
class Authorisation {
 public:
  static constexpr std::size_t size = 32;

  /// A new random one.
  static Result<Authorisation> make();
  explicit Authorisation(std::string bytes) : m_bytes(std::move(bytes)) {}

  const std::string& bytes() const { return m_bytes; }
  /// What the helper says first, which hands the secret over.
  plist::Dictionary greeting() const;
  /// The secret in a greeting or a request; none if it holds none.
  static std::optional<std::string> dataIn(const plist::Dictionary& message);
  /// Whether the request carries it. Takes as long for a wrong one as for the right one.
  bool isIn(const plist::Dictionary& request) const;

 private:
  std::string m_bytes;
};

/// Lets requests through that carry the secret, and answers the others with an error and a line in the log.
std::function<plist::Dictionary(const plist::Dictionary&)> guarded(
    Authorisation authorisation, Console& console, std::function<plist::Dictionary(const plist::Dictionary&)> handle);

}  // namespace mirvel
