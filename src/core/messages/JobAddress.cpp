#include "core/messages/JobAddress.h"

#include <utility>

#include "core/base/Const.h"
#include "core/text/Bytes.h"

namespace mirvel {

namespace {

constexpr std::string_view logFragment = "log", disableFragment = "disable";

JobAddress::Part partOf(std::string_view fragment) {
  if (fragment == logFragment) return JobAddress::Part::Log;
  return fragment == disableFragment ? JobAddress::Part::Disable : JobAddress::Part::Job;
}

std::string fragmentOf(JobAddress::Part part) {
  if (part == JobAddress::Part::Job) return {};
  return "#" + std::string(part == JobAddress::Part::Log ? logFragment : disableFragment);
}

/// Undoes what browsers and launchers add to a URL: an empty path at its end, and escapes of base64's punctuation.
std::string base64Text(std::string host) {
  const auto replaceAll = [&host](std::string_view from, char to) {
    for (auto at = host.find(from); at != std::string::npos; at = host.find(from, at))
      host.replace(at, from.size(), 1, to);
  };
  replaceAll("%3D", '=');
  replaceAll("%3d", '=');
  replaceAll("%2F", '/');
  replaceAll("%2f", '/');
  replaceAll("%2B", '+');
  replaceAll("%2b", '+');
  // The length of base64 is a multiple of 4, so this slash isn't part of it.
  if (host.size() % 4 == 1 && host.ends_with('/')) host.pop_back();
  return host;
}

}  // namespace

std::optional<JobAddress> JobAddress::read(std::string_view url) {
  const std::string prefix = std::string(Const::jobScheme) + "://";
  if (!url.starts_with(prefix)) return std::nullopt;
  url.remove_prefix(prefix.size());
  const auto hash = url.find('#');
  const std::string_view fragment = hash == std::string_view::npos ? std::string_view() : url.substr(hash + 1);
  // Base64 may contain slashes, so the path of the URL belongs to it too.
  auto path = fromBase64(base64Text(std::string(url.substr(0, hash))));
  if (!path || path->empty()) return std::nullopt;
  return JobAddress{.path = *std::move(path), .part = partOf(fragment)};
}

std::string JobAddress::url() const {
  return std::string(Const::jobScheme) + "://" + toBase64(path) + fragmentOf(part);
}

}  // namespace mirvel
