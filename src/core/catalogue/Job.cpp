#include "core/catalogue/Job.h"

#include <algorithm>
#include <cstring>

#include "core/text/Bytes.h"
#include "core/text/Strings.h"

namespace mirvel {

namespace {

/// Separates the searched texts, so that no match spans two of them. No typed text contains it.
constexpr char boundary = '\0';

/// `memmem` is many times faster than `string_view::find` for texts of this size.
bool holds(std::string_view text, std::string_view part) {
  return ::memmem(text.data(), text.size(), part.data(), part.size()) != nullptr;
}

}  // namespace

Job::Job(Kind theKind, std::string theName, std::string theSummary, Checksum theChecksum, URL theURL)
    : kind(theKind),
      originalKind(theKind),
      name(std::move(theName)),
      summary(std::move(theSummary)),
      checksum(std::move(theChecksum)),
      url(std::move(theURL)) {}

std::optional<Image> Job::displayIcon(const Localize& localize) const {
  if (customIcon) return customIcon;
  if (isDisabled()) return statusImage(false, localize);
  return icon;
}

std::optional<std::string> iconStoreName(const URL& url) {
  const auto digest = sha256(url.text());
  return digest ? std::optional(toHex(*digest)) : std::nullopt;
}

void Job::updateCustomIconDigest() {
  if (customIcon) customIconDigest = iconStoreName();
}

bool Job::contains(std::string_view folded) const {
  return folded.find(boundary) == std::string_view::npos && holds(searchText(), folded);
}

const std::string& Job::searchText() const {
  if (m_searchText.empty()) {
    for (const std::string_view text : {textContent.view(), std::string_view(name), std::string_view(url.text())}) {
      m_searchText.append(String::fold(text)) += boundary;
    }
  }
  return m_searchText;
}

const std::string& Job::sortKey(SortText text, const Collator& collator) const {
  std::string& key = m_sortKeys.at(static_cast<std::size_t>(text));
  if (text == SortText::Run) {
    if (std::string current = run(); key.empty() || current != m_sortedRun) {
      m_sortedRun = std::move(current);
      key = collator.sortKey(m_sortedRun);
    }
  } else if (key.empty()) {
    key = collator.sortKey(text == SortText::Name ? name : summary);
  }
  return key;
}

bool areEqual(const Jobs& a, const Jobs& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const auto& x, const auto& y) {
    return *x == *y && x->kind == y->kind && x->url.equalTo(y->url) && x->linkedFrom == y->linkedFrom;
  });
}

Image statusImage(bool isEnabled, const Localize& localize) {
  Image image = Image::named(isEnabled ? "mirvel-available" : "mirvel-unavailable");
  image.accessibilityDescription = isEnabled ? localize.enabled() : localize.disabled();
  return image;
}

Image notRunImage(const Localize& localize) {
  Image image = Image::named("mirvel-partially-available");
  image.accessibilityDescription = localize.enabledButCantRun();
  return image;
}

}  // namespace mirvel
