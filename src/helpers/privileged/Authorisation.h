#pragma once

#include <functional>
#include <optional>
#include <string>

#include "core/base/Result.h"
#include "core/ports/Console.h"
#include "core/propertylist/Value.h"

namespace mirvel {

/// The secret that each request to the privileged helper must contain. The helper creates it and sends it to the
/// application over the connection, or through the elevation tool; it is never in a file, a command line or an
/// environment. So even a process of the same user that got hold of the connection, such as by inheriting its
/// descriptor, can't send requests without reading the memory of the application, which `forbidTracing` prevents.
class Authorisation {
 public:
  static constexpr std::size_t size = 32;  ///< in bytes

  /// Creates a random secret. Fails if the crypto library has no randomness, rather than using a weak one.
  static Result<Authorisation> make();
  explicit Authorisation(std::string bytes) : m_bytes(std::move(bytes)) {}

  const std::string& bytes() const { return m_bytes; }
  /// The body of the helper's first message, which contains the secret.
  propertylist::Dictionary greeting() const;
  /// Returns the secret in a greeting or a request; nullopt if there is none, or if it isn't of type data.
  static std::optional<std::string> dataIn(const propertylist::Dictionary& message);
  /// Whether the request contains this secret. The comparison takes the same time wherever the first difference is, so
  /// the secret can't be guessed byte by byte.
  bool isIn(const propertylist::Dictionary& request) const;

 private:
  std::string m_bytes;
};

/// Returns a function that admits requests with the secret, and logs the others. The console must outlive it.
std::function<bool(const propertylist::Dictionary& request)> admission(Authorisation authorisation, Console& console);

}  // namespace mirvel
