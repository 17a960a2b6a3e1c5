#include "core/messages/Requests.h"

namespace mirvel::messages {

namespace {

/// The keys that all requests have. They share one dictionary with those of the content.
struct Header {
  std::int64_t kind = 0;
  bool presentError = true;
  bool privileged = false;
  AuthData authorisation = {};

  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    fields("kind", self.kind, NumberRange{0, static_cast<int>(Kind::RestartJob), "is unknown"});
    fields("presentError", self.presentError);
    fields("privileged", self.privileged);
    AuthData::fields(self.authorisation, fields);
  }
};

Control::Order orderOf(Kind kind) {
  if (kind == Kind::StopJob) return Control::Order::Stop;
  return kind == Kind::RestartJob ? Control::Order::Restart : Control::Order::Start;
}

template <typename T>
Result<RequestContent> readAs(const propertylist::Dictionary& from, T initial = {}) {
  auto content = FieldReader::read<T>(from, std::move(initial));
  if (!content) return content.error();
  return RequestContent(*std::move(content));
}

Result<RequestContent> readContent(Kind kind, const propertylist::Dictionary& from) {
  switch (kind) {
    case Kind::Write:
      return readAs<Write>(from);
    case Kind::WriteAndLoad:
      return readAs(from, Write{.path = {}, .string = {}, .loads = true});
    case Kind::Delete:
      return readAs<Delete>(from);
    case Kind::Quit:
      return readAs<Quit>(from);
    case Kind::Unload:
      return readAs<Unload>(from);
    case Kind::Load:
      return readAs<Load>(from);
    case Kind::Test:
      return readAs<Test>(from);
    case Kind::Uninstall:
      return readAs<Uninstall>(from);
    case Kind::Log:
      return readAs<Log>(from);
    case Kind::StartHost:
      return readAs<StartHost>(from);
    case Kind::Subscribe:
      return readAs<Subscribe>(from);
    case Kind::StartJob:
    case Kind::StopJob:
    case Kind::RestartJob:
      return readAs(from, Control{.path = {}, .label = {}, .order = orderOf(kind)});
  }
  return Error{.code = Error::Code::BadArgument, .message = "the key kind is unknown"};
}

}  // namespace

Kind Control::kind() const {
  switch (order) {
    case Order::Start:
      return Kind::StartJob;
    case Order::Stop:
      return Kind::StopJob;
    case Order::Restart:
      break;
  }
  return Kind::RestartJob;
}

Kind Request::kind() const {
  return std::visit([](const auto& request) { return request.kind(); }, content);
}

propertylist::Dictionary Request::write() const {
  const Header header{.kind = static_cast<int>(kind()),
                      .presentError = presentError,
                      .privileged = privileged,
                      .authorisation = authorisation};
  auto result = FieldWriter::write(header);
  const auto fields = std::visit([](const auto& request) { return FieldWriter::write(request); }, content);
  for (const auto& [key, value] : fields) result.set(key, value);
  return result;
}

Result<Request> Request::read(const propertylist::Dictionary& dictionary) {
  auto header = FieldReader::read<Header>(dictionary);
  if (!header) return header.error();
  auto content = readContent(static_cast<Kind>(header->kind), dictionary);
  if (!content) return content.error();
  return Request{.content = *std::move(content),
                 .presentError = header->presentError,
                 .privileged = header->privileged,
                 .authorisation = std::move(header->authorisation)};
}

}  // namespace mirvel::messages
