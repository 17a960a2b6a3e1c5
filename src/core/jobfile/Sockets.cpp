#include "core/jobfile/Sockets.h"

#include "core/jobfile/Keys.h"

namespace mirvel::jobfile {

namespace {

using Socket = Sockets::SubDictionary;

constexpr auto socketKeys = [] {
  using K = Socket::CodingKeys;
  return std::tuple{
      Key{K::SockType, "SockType", &Socket::sockType},
      Key{K::SockPassive, "SockPassive", &Socket::sockPassive},
      Key{K::SockNodeName, "SockNodeName", &Socket::sockNodeName},
      Key{K::SockServiceName, "SockServiceName", &Socket::sockServiceName},
      Key{K::SockFamily, "SockFamily", &Socket::sockFamily},
      Key{K::SockProtocol, "SockProtocol", &Socket::sockProtocol},
      Key{K::SockPathName, "SockPathName", &Socket::sockPathName},
      Key{K::SecureSocketWithKey, "SecureSocketWithKey", &Socket::secureSocketWithKey},
      Key{K::SockPathOwner, "SockPathOwner", &Socket::sockPathOwner},
      Key{K::SockPathGroup, "SockPathGroup", &Socket::sockPathGroup},
      Key{K::SockPathMode, "SockPathMode", &Socket::sockPathMode},
      Key{K::Bonjour, "Bonjour", &Socket::bonjour},
      Key{K::MulticastGroup, "MulticastGroup", &Socket::multicastGroup},
  };
}();
static_assert(isComplete(socketKeys, Socket::CodingKeys::MulticastGroup));
constexpr auto socketKeyTexts = textsOf(socketKeys);

}  // namespace

std::string_view Socket::text(CodingKeys key) {
  return socketKeyTexts[static_cast<std::size_t>(key)];
}

void decode(const propertylist::Node& node, const Place& place, Sockets& result) {
  for (const auto& socket : membersOf(node, place)) (void)decodeOrDrop(socket, place, result.dictionaries);
}

void decode(const propertylist::Node& node, const Place& place, Socket& result) {
  // launchd.plist(5) allows several sockets under one name.
  if (node.type() == propertylist::Type::Array) {
    decode(node, place, result.array);
  } else {
    decodeKeys(node, place, socketKeys, result);
  }
}

void decode(const propertylist::Node& node, const Place&, Socket::SockServiceName& result) {
  result.string = form<std::string>(node);
  result.int_ = wholeNumber(node, WholeReals::Accepted);
}

void decode(const propertylist::Node& node, const Place&, Socket::Bonjour& result) {
  result.bool_ = form<bool>(node);
  result.string = form<std::string>(node);
  result.stringArray = arrayForm<std::string>(node);
}

std::optional<propertylist::Value> encode(const Sockets& sockets) {
  return encode(sockets.dictionaries);
}

std::optional<propertylist::Value> encode(const Socket& socket) {
  if (!socket.array.empty()) return encode(socket.array);
  return propertylist::Value(encodeKeys(socket, socketKeys));
}

std::optional<propertylist::Value> encode(const Socket::SockServiceName& name) {
  return encodeFirst(name.string, name.int_);
}

std::optional<propertylist::Value> encode(const Socket::Bonjour& bonjour) {
  return encodeFirst(bonjour.bool_, bonjour.string, bonjour.stringArray);
}

void decode(const propertylist::Node& node, const Place& place, InetdCompatibility& result) {
  for (const auto& setting : membersOf(node, place)) {
    (void)(storeForm(setting, result.bools) || storeForm(setting, result.integers));
  }
}

std::optional<propertylist::Value> encode(const InetdCompatibility& inetd) {
  propertylist::Dictionary dictionary;
  encodeInto(dictionary, inetd.bools);
  encodeInto(dictionary, inetd.integers);
  return propertylist::Value(std::move(dictionary));
}

}  // namespace mirvel::jobfile
