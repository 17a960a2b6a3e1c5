#include "core/lint/OctalLint.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "core/jobfile/DecodingFailure.h"

namespace mirvel::lint {

namespace {

constexpr std::int64_t allPermissions = 0777;
constexpr std::int64_t ownersPermissions = 0700;

std::string octal(std::int64_t number) {
  std::array<char, 24> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number, 8).ptr;
  return std::string("0").append(digits.data(), end);
}

/// The number whose octal digits are the decimal digits of this one, if it consists of permissions: 600 yields 384.
std::optional<std::int64_t> readAsOctal(std::int64_t number) {
  const std::string digits = std::to_string(number);
  std::int64_t result = 0;
  const char* const end = digits.data() + digits.size();
  const auto parsed = std::from_chars(digits.data(), end, result, 8);
  const bool isRead = parsed.ec == std::errc() && parsed.ptr == end;
  return isRead && result >= 0 && result <= allPermissions ? std::optional(result) : std::nullopt;
}

Clause octalClause(std::int64_t found, std::int64_t meant) {
  return clause("%@ is a decimal number, in octal %@; the permissions %@ are written as %@",
                {std::to_string(found), octal(found), octal(meant), std::to_string(meant)});
}

Fix numberFix(jobfile::OpaqueValue::Path path, std::int64_t from, std::int64_t to) {
  return Fix::replace(std::move(path), from, to, std::to_string(to));
}

void checkUmask(const Subject& subject, Findings& findings) {
  const auto& umask = subject.record.umask;
  if (!umask || !umask->int_ || (*umask->int_ & ownersPermissions) == 0) return;
  const std::int64_t mask = *umask->int_;
  const auto meant = readAsOctal(mask);
  // Text is octal if it is written so.
  const bool isNumber = subject.file.get<propertylist::Integer>("Umask") != nullptr;
  if (isNumber && meant && (*meant & ownersPermissions) == 0) {
    return findings.warning("Umask", octalClause(mask, *meant), numberFix({"Umask"}, mask, *meant));
  }
  findings.warning("Umask",
                   clause("the mask (octal %@) takes permissions from the owner of new files, too", {octal(mask)}));
}

/// `path` leads to the socket. It is shared by all sockets, since a hostile file can have many of them below a long
/// key.
void checkSocketMode(const jobfile::Place& place, jobfile::OpaqueValue::Path& path,
                     const jobfile::Sockets::SubDictionary& socket, Findings& findings) {
  for (std::size_t i = 0; i < socket.array.size(); ++i) {
    path.push_back(propertylist::childPath({}, i));
    checkSocketMode(place.index(i), path, socket.array[i], findings);
    path.pop_back();
  }
  const auto mode = socket.sockPathMode;
  const auto meant = mode && *mode > allPermissions ? readAsOctal(*mode) : std::nullopt;
  if (!meant) return;
  if (findings.isFull(Severity::Warning)) return findings.addUnreported(Severity::Warning, 1);
  auto whole = path;
  whole.emplace_back("SockPathMode");
  findings.warning(place.key("SockPathMode").text(), octalClause(*mode, *meant),
                   numberFix(std::move(whole), *mode, *meant));
}

}  // namespace

void checkOctals(const Subject& subject, Findings& findings) {
  checkUmask(subject, findings);
  if (!subject.record.sockets) return;
  const jobfile::Place top;
  const jobfile::Place sockets = top.key("Sockets");
  for (const auto& [name, socket] : subject.record.sockets->dictionaries) {
    jobfile::OpaqueValue::Path path{"Sockets", name};
    checkSocketMode(sockets.key(name), path, socket, findings);
  }
}

}  // namespace mirvel::lint
