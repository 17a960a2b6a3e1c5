#pragma once

#include <functional>
#include <optional>
#include <string>

#include "core/base/Result.h"
#include "core/ports/Console.h"
#include "core/propertylist/Value.h"

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
  propertylist::Dictionary greeting() const;
  /// The secret in a greeting or a request; none if it holds none.
  static std::optional<std::string> dataIn(const propertylist::Dictionary& message);
  /// Whether the request carries it. Takes as long for a wrong one as for the right one.
  bool isIn(const propertylist::Dictionary& request) const;

 private:
  std::string m_bytes;
};

/// Admits requests that carry the secret, and logs the others.
std::function<bool(const propertylist::Dictionary& request)> admission(Authorisation authorisation, Console& console);

}  // namespace mirvel
