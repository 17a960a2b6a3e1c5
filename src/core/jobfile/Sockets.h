#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/jobfile/StringMap.h"
#include "core/propertylist/Node.h"
#include "core/propertylist/Value.h"

namespace mirvel::jobfile {

class Place;

/// The sockets that launchd opens for the job, by names of the job's choosing.
struct Sockets {
  /// One socket, or the several of one name: if `array` isn't empty, it alone counts.
  struct SubDictionary {
    enum class CodingKeys {
      sockType,
      sockPassive,
      sockNodeName,
      sockServiceName,
      sockFamily,
      sockProtocol,
      sockPathName,
      secureSocketWithKey,
      sockPathOwner,
      sockPathGroup,
      sockPathMode,
      bonjour,
      multicastGroup
    };
    static std::string_view text(CodingKeys key);
    static std::optional<CodingKeys> codingKey(std::string_view text);

    /// The name or the number of a port; one of the two, or neither where the file held something else.
    struct SockServiceName {
      std::optional<std::string> string;
      std::optional<std::int64_t> int_;

      bool operator==(const SockServiceName&) const = default;
    };

    /// Whether the service is announced by Bonjour, or under which names; at most one of the three.
    struct Bonjour {
      std::optional<bool> bool_;
      std::optional<std::string> string;
      std::optional<std::vector<std::string>> stringArray;

      bool operator==(const Bonjour&) const = default;
    };

    std::vector<SubDictionary> array = {};
    std::optional<std::string> sockType = {};
    std::optional<bool> sockPassive = {};
    std::optional<std::string> sockNodeName = {};
    std::optional<SockServiceName> sockServiceName = {};
    std::optional<std::string> sockFamily = {};
    std::optional<std::string> sockProtocol = {};
    std::optional<std::string> sockPathName = {};
    std::optional<std::string> secureSocketWithKey = {};
    std::optional<std::int64_t> sockPathOwner = {};
    std::optional<std::int64_t> sockPathGroup = {};
    std::optional<std::int64_t> sockPathMode = {};  ///< a plain number: 438 is octal 666
    std::optional<Bonjour> bonjour = {};
    std::optional<std::string> multicastGroup = {};

    bool operator==(const SubDictionary&) const = default;
  };

  StringMap<SubDictionary> dictionaries = {};

  bool operator==(const Sockets&) const = default;
};

/// A name whose socket can't be read is dropped; only a value that isn't a dictionary is a failure.
void decode(const propertylist::Node& node, const Place& place, Sockets& result);
void decode(const propertylist::Node& node, const Place& place, Sockets::SubDictionary& result);
/// These two never fail.
void decode(const propertylist::Node& node, const Place& place, Sockets::SubDictionary::SockServiceName& result);
void decode(const propertylist::Node& node, const Place& place, Sockets::SubDictionary::Bonjour& result);

std::optional<propertylist::Value> encode(const Sockets& sockets);
std::optional<propertylist::Value> encode(const Sockets::SubDictionary& socket);
std::optional<propertylist::Value> encode(const Sockets::SubDictionary::SockServiceName& name);
std::optional<propertylist::Value> encode(const Sockets::SubDictionary::Bonjour& bonjour);

}  // namespace mirvel::jobfile
