#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/jobfile/StringMap.h"
#include "core/propertylist/Node.h"
#include "core/propertylist/Value.h"

// The sockets that launchd opens on behalf of the job: a connection or message starts the job.

namespace mirvel::jobfile {

class Place;

/// The key `Sockets`: descriptions of sockets, under names by which the job retrieves them. See launchd.plist(5).
struct Sockets {
  /// A socket or, if `array` isn't empty, several sockets; the other members are ignored then.
  struct SubDictionary {
    enum class CodingKeys {
      SockType,
      SockPassive,
      SockNodeName,
      SockServiceName,
      SockFamily,
      SockProtocol,
      SockPathName,
      SecureSocketWithKey,
      SockPathOwner,
      SockPathGroup,
      SockPathMode,
      Bonjour,
      MulticastGroup
    };
    /// The key as in the file.
    static std::string_view text(CodingKeys key);

    /// A service name of services(5) or a port number; at most one member is present, and none for any other type.
    struct SockServiceName {
      std::optional<std::string> string;
      std::optional<std::int64_t> int_;

      bool operator==(const SockServiceName&) const = default;
    };

    /// Whether the service is announced by Bonjour, or the names under which it is; at most one member is present.
    struct Bonjour {
      std::optional<bool> bool_;
      std::optional<std::string> string;
      std::optional<std::vector<std::string>> stringArray;

      bool operator==(const Bonjour&) const = default;
    };

    std::vector<SubDictionary> array = {};
    std::optional<std::string> sockType = {};      ///< "stream" (default), "dgram" or "seqpacket"
    std::optional<bool> sockPassive = {};          ///< true (default): listen(2); false: connect(2)
    std::optional<std::string> sockNodeName = {};  ///< the host to bind or connect to
    std::optional<SockServiceName> sockServiceName = {};
    std::optional<std::string> sockFamily = {};    ///< "IPv4", "IPv6", "IPv4v6" or "Unix"
    std::optional<std::string> sockProtocol = {};  ///< "TCP" or "UDP"
    std::optional<std::string> sockPathName = {};  ///< of a Unix domain socket; implies `SockFamily` "Unix"
    /// The environment variable that gets the path of a Unix domain socket at a location that launchd chooses.
    std::optional<std::string> secureSocketWithKey = {};
    std::optional<std::int64_t> sockPathOwner = {};  ///< user ID of the owner of the Unix domain socket
    std::optional<std::int64_t> sockPathGroup = {};  ///< group ID, likewise
    std::optional<std::int64_t> sockPathMode = {};   ///< its permissions as a plain number: 438 for octal 666
    std::optional<Bonjour> bonjour = {};             ///< default: not announced
    std::optional<std::string> multicastGroup = {};  ///< the group that a datagram socket joins

    bool operator==(const SubDictionary&) const = default;
  };

  StringMap<SubDictionary> dictionaries = {};

  bool operator==(const Sockets&) const = default;
};

/// Fails only if the value isn't a dictionary. Names whose sockets aren't dictionaries or (nested) arrays of them are
/// skipped, and so are those of which a key has the wrong type, except at a tolerant place, which skips the key.
void decode(const propertylist::Node& node, const Place& place, Sockets& result);
void decode(const propertylist::Node& node, const Place& place, Sockets::SubDictionary& result);
/// These two never fail.
void decode(const propertylist::Node& node, const Place& place, Sockets::SubDictionary::SockServiceName& result);
void decode(const propertylist::Node& node, const Place& place, Sockets::SubDictionary::Bonjour& result);

/// A dictionary, possibly empty; an array for several sockets of one name.
std::optional<propertylist::Value> encode(const Sockets& sockets);
std::optional<propertylist::Value> encode(const Sockets::SubDictionary& socket);
/// None if no member is present.
std::optional<propertylist::Value> encode(const Sockets::SubDictionary::SockServiceName& name);
std::optional<propertylist::Value> encode(const Sockets::SubDictionary::Bonjour& bonjour);

/// The key `inetdCompatibility` (with a lower-case i): the job expects its sockets as a program started by inetd(8)
/// does. Deprecated. launchd knows `Wait`, a boolean, and `Instances`, an integer; other keys are kept.
struct InetdCompatibility {
  StringMap<bool> bools = {};
  StringMap<std::int64_t> integers = {};

  bool operator==(const InetdCompatibility&) const = default;
};

/// Fails only if the value isn't a dictionary. Entries that are neither booleans nor integers are skipped.
void decode(const propertylist::Node& node, const Place& place, InetdCompatibility& result);
/// A dictionary, possibly empty.
std::optional<propertylist::Value> encode(const InetdCompatibility& inetd);

}  // namespace mirvel::jobfile
