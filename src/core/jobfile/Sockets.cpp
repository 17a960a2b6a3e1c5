#include "core/jobfile/Sockets.h"

#include "core/jobfile/Forms.h"
#include "core/jobfile/Keys.h"

namespace mirvel::jobfile {

namespace {

using SubDictionary = Sockets::SubDictionary;
using K = SubDictionary::CodingKeys;

constexpr auto keys = std::tuple{
    Key{K::sockType, "SockType", &SubDictionary::sockType},
    Key{K::sockPassive, "SockPassive", &SubDictionary::sockPassive},
    Key{K::sockNodeName, "SockNodeName", &SubDictionary::sockNodeName},
    Key{K::sockServiceName, "SockServiceName", &SubDictionary::sockServiceName},
    Key{K::sockFamily, "SockFamily", &SubDictionary::sockFamily},
    Key{K::sockProtocol, "SockProtocol", &SubDictionary::sockProtocol},
    Key{K::sockPathName, "SockPathName", &SubDictionary::sockPathName},
    Key{K::secureSocketWithKey, "SecureSocketWithKey", &SubDictionary::secureSocketWithKey},
    Key{K::sockPathOwner, "SockPathOwner", &SubDictionary::sockPathOwner},
    Key{K::sockPathGroup, "SockPathGroup", &SubDictionary::sockPathGroup},
    Key{K::sockPathMode, "SockPathMode", &SubDictionary::sockPathMode},
    Key{K::bonjour, "Bonjour", &SubDictionary::bonjour},
    Key{K::multicastGroup, "MulticastGroup", &SubDictionary::multicastGroup},
};
static_assert(isComplete(keys, K::multicastGroup));
constexpr auto keyTexts = textsOf(keys);

}  // namespace

std::string_view SubDictionary::text(CodingKeys key) {
  return keyTexts[static_cast<std::size_t>(key)];
}

std::optional<K> SubDictionary::codingKey(std::string_view text) {
  return codingKeyIn<CodingKeys>(keyTexts, text);
}

void decode(const propertylist::Node& node, const Place& place, Sockets& result) {
  for (const auto& socket : membersOf(node, place)) {
    (void)decodeOrDrop(socket, place, result.dictionaries);  // a bad socket is dropped on purpose
  }
}

void decode(const propertylist::Node& node, const Place& place, SubDictionary& result) {
  if (node.type() == propertylist::Type::Array) {
    decode(node, place, result.array);
  } else {
    decodeKeys(node, place, keys, result);
  }
}

void decode(const propertylist::Node& node, const Place&, SubDictionary::SockServiceName& result) {
  result.string = form<std::string>(node);
  result.int_ = wholeNumber(node, WholeReals::Count);
}

void decode(const propertylist::Node& node, const Place&, SubDictionary::Bonjour& result) {
  result.bool_ = form<bool>(node);
  result.string = form<std::string>(node);
  result.stringArray = arrayForm<std::string>(node);
}

std::optional<propertylist::Value> encode(const Sockets& sockets) {
  return encode(sockets.dictionaries);
}

std::optional<propertylist::Value> encode(const SubDictionary& socket) {
  if (!socket.array.empty()) return encode(socket.array);
  return propertylist::Value(encodeKeys(socket, keys));
}

std::optional<propertylist::Value> encode(const SubDictionary::SockServiceName& name) {
  return encodeFirst(name.string, name.int_);
}

std::optional<propertylist::Value> encode(const SubDictionary::Bonjour& bonjour) {
  return encodeFirst(bonjour.bool_, bonjour.string, bonjour.stringArray);
}

}  // namespace mirvel::jobfile
