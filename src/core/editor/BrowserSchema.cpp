#include "core/editor/BrowserSchema.h"

#include <algorithm>
#include <array>

namespace mirvel {

namespace {

using Offer = BrowserLevel::Offer;
using Type = BrowserItem::Type;

constexpr std::array freeTypes = {Type::Boolean, Type::String,  Type::Integer,
                                  Type::Real,    Type::Strings, Type::Dictionary};
constexpr std::array dictionaryOrArray = {Type::Dictionary, Type::Array};
constexpr std::array booleanOrDictionary = {Type::Boolean, Type::Dictionary};
constexpr std::array onlyString = {Type::String};
constexpr std::array onlyDictionary = {Type::Dictionary};
constexpr std::array stringOrInteger = {Type::String, Type::Integer};
constexpr std::array booleanStringOrStrings = {Type::Boolean, Type::String, Type::Strings};

constexpr std::array<std::string_view, 3> socketTypes = {"stream", "dgram", "seqpacket"};
constexpr std::array<std::string_view, 4> socketFamilies = {"IPv4", "IPv6", "IPv4v6", "Unix"};
constexpr std::array<std::string_view, 2> socketProtocols = {"TCP", "UDP"};

constexpr std::array freeOffers = {
    Offer{.title = "Boolean", .type = Type::Boolean},        Offer{.title = "String", .type = Type::String},
    Offer{.title = "Integer", .type = Type::Integer},        Offer{.title = "Double", .type = Type::Real},
    Offer{.title = "Array (String)", .type = Type::Strings}, Offer{.title = "Dictionary", .type = Type::Dictionary},
};
constexpr BrowserLevel freeLevel{.offers = freeOffers};

constexpr std::array socketOffers = {
    Offer{.title = "SockType",
          .help = "This optional key tells launchd what type of socket to create. The default is ’stream’ and other "
                  "valid values for this key are ’dgram’ and ’seqpacket’ respectively.",
          .choices = socketTypes},
    Offer{.title = "SockPassive",
          .help = "This optional key specifies whether listen(2) or connect(2) should be called on the created file "
                  "descriptor. The default is true, to listen for new connections.",
          .type = Type::Boolean,
          .isOn = true},
    Offer{.title = "SockNodeName", .help = "This optional key specifies the node to connect(2) or bind(2) to."},
    Offer{.title = "SockServiceName",
          .help = "This optional key specifies the service on the node to connect(2) or bind(2) to. It may be a port "
                  "number represented as an integer or a service name represented as a string (’ssh’, ’telnet’, etc.)",
          .types = stringOrInteger},
    Offer{.title = "SockFamily",
          .help = "This optional key can be used to specifically request that ’IPv4’ or ’IPv6’ socket(s) be created. "
                  "An additional option, ’IPv4v6’ indicates that a single socket that listens for both IPv4 and IPv6 "
                  "connections should be created.",
          .choices = socketFamilies},
    Offer{.title = "SockProtocol",
          .help = "This optional key specifies the protocol to be passed to socket(2). The only values understood by "
                  "this key at the moment are ’TCP’ and ’UDP’.",
          .choices = socketProtocols},
    Offer{.title = "SockPathName",
          .help = "This optional key implies SockFamily is set to ’Unix’. It specifies the path to connect(2) or "
                  "bind(2) to."},
    Offer{.title = "SecureSocketWithKey",
          .help = "This optional key is a variant of SockPathName. Instead of binding to a known path, a securely "
                  "generated socket is created and the path is assigned to the environment variable that is inherited "
                  "by all jobs spawned in the job’s context."},
    Offer{.title = "SockPathOwner",
          .help = "This optional key specifies the user ID that should be the domain socket’s owner.",
          .type = Type::Integer},
    Offer{.title = "SockPathGroup",
          .help = "This optional key specifies the group ID that should be set as the domain socket’s group.",
          .type = Type::Integer},
    Offer{.title = "SockPathMode",
          .help = "This optional key specifies the mode of the socket. Known bug: Property lists don’t support octal, "
                  "so please convert the value to decimal.",
          .type = Type::Integer,
          .isOctal = true},
    Offer{.title = "Bonjour",
          .help = "This optional key can be used to request that the service be registered with the the Bonjour "
                  "subsystem. If the value is boolean, the service name is inferred from the SockServiceName.",
          .type = Type::Boolean,
          .types = booleanStringOrStrings},
    Offer{.title = "MulticastGroup",
          .help = "This optional key can be used to request that the datagram socket join a multicast group. If the "
                  "value is a hostname, then getaddrinfo(3) will be used to join the correct multicast address for a "
                  "given socket family. If an explicit IPv4 or IPv6 address is given, it is required that the "
                  "SockFamily family also be set, otherwise the results are undefined."},
};
constexpr BrowserLevel socketKeysLevel{.offers = socketOffers, .hasFixedNames = true, .below = &freeLevel};
constexpr std::array socketOffer = {Offer{.title = "Socket", .type = Type::Dictionary, .types = dictionaryOrArray}};
constexpr std::array elementOffer = {Offer{.title = "Socket", .type = Type::Dictionary, .types = onlyDictionary}};
constexpr BrowserLevel socketElements{
    .offers = elementOffer, .below = &socketKeysLevel, .elements = &socketElements, .isArray = true};
constexpr BrowserLevel socketsLevel{.offers = socketOffer, .below = &socketKeysLevel, .elements = &socketElements};

constexpr std::array stringOffer = {Offer{.title = "String", .types = onlyString}};
constexpr BrowserLevel stringsLevel{.offers = stringOffer, .below = &freeLevel};
constexpr std::array serviceKeyOffers = {
    Offer{.title = "ResetAtClose",
          .help =
              "The default value for this key is false, and so the port is recycled, thus leaving clients to remain "
              "oblivious to the demand nature of the job. If the value is set to true, clients receive port death "
              "notifications when the job lets go of the receive right.",
          .type = Type::Boolean,
          .isOn = false},
    Offer{.title = "HideUntilCheckIn",
          .help = "Reserve the name in the namespace, but cause bootstrap_look_up() to fail until the job has checked "
                  "in with launchd.",
          .type = Type::Boolean,
          .isOn = false},
    Offer{.title = "DrainMessagesOnCrash"},
    Offer{.title = "ExceptionServer", .type = Type::Dictionary, .below = &stringsLevel},
    Offer{.title = "HostSpecialPort", .type = Type::Integer},
    Offer{.title = "TaskSpecialPort", .type = Type::Integer},
};
constexpr BrowserLevel serviceKeysLevel{.offers = serviceKeyOffers, .hasFixedNames = true, .below = &freeLevel};
constexpr std::array serviceOffers = {
    Offer{.title = "Boolean", .type = Type::Boolean, .isOn = true, .types = booleanOrDictionary},
    Offer{.title = "Dictionary", .type = Type::Dictionary},
};
constexpr BrowserLevel servicesLevel{.offers = serviceOffers, .below = &serviceKeysLevel, .isTrueIfEmpty = true};

constexpr std::array dictionaryOffer = {
    Offer{.title = "Dictionary", .type = Type::Dictionary, .types = onlyDictionary}};
constexpr BrowserLevel eventsLevel{.offers = dictionaryOffer, .below = &freeLevel};
constexpr BrowserLevel streamsLevel{.offers = dictionaryOffer, .below = &eventsLevel};

constexpr std::array schemas = {
    BrowserSchema{
        .key = jobfile::Plist::CodingKeys::Sockets,
        .help = "This optional key is used to specify launch on demand sockets that can be used to let launchd know "
                "when to run the job. The job must check-in to get a copy of the file descriptors using the "
                "launch_activate_socket(3) API. The keys of the top level Sockets dictionary can be anything. These "
                "keys are meant for the application developer to associate which socket descriptors correspond to "
                "which application level protocols (e.g. http vs. ftp vs. DNS...).",
        .top = &socketsLevel},
    BrowserSchema{
        .key = jobfile::Plist::CodingKeys::MachServices,
        .help = "This optional key is used to specify Mach services to be registered with the Mach bootstrap "
                "namespace. Each key in this dictionary should be the name of a service to be advertised. The value "
                "of the key must be a boolean and set to true or a dictionary in order for the service to be "
                "advertised.",
        .top = &servicesLevel},
    BrowserSchema{
        .key = jobfile::Plist::CodingKeys::LaunchEvents,
        .help = "Specifies higher-level event types to be used as launch-on-demand event sources. Each sub-dictionary "
                "defines events for a particular event subsystem, such as ’com.apple.iokit.matching’, which can be "
                "used to launch jobs based on the appearance of nodes in the IORegistry. Each dictionary within the "
                "sub-dictionary specifies an event descriptor that is specified to each event subsystem.",
        .top = &streamsLevel},
};

}  // namespace

const BrowserLevel::Offer* BrowserLevel::fixed(std::string_view name) const {
  if (!hasFixedNames) return nullptr;
  const auto found =
      std::find_if(offers.begin(), offers.end(), [name](const Offer& offer) { return offer.title == name; });
  return found == offers.end() ? nullptr : &*found;
}

const BrowserLevel& BrowserLevel::of(const BrowserItem& item) const {
  if (elements && item.type() == Type::Array) return *elements;
  const Offer* const offer = fixed(item.name);
  if (offer && offer->below) return *offer->below;
  return below ? *below : *this;
}

std::span<const Type> BrowserLevel::types(const BrowserItem& item) const {
  const Offer* const offer = hasFixedNames ? fixed(item.name) : &offers.front();
  if (!offer) return freeTypes;
  if (!offer->types.empty()) return offer->types;
  return hasFixedNames ? std::span(&offer->type, 1) : std::span<const Type>(freeTypes);
}

std::span<const BrowserSchema> browserSchemas() {
  return schemas;
}

const BrowserSchema* browserSchema(std::string_view key) {
  const auto found =
      std::find_if(schemas.begin(), schemas.end(), [key](const BrowserSchema& schema) { return schema.text() == key; });
  return found == schemas.end() ? nullptr : &*found;
}

}  // namespace mirvel
