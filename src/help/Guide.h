#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/base/Result.h"

namespace mirvel::help {

struct Heading {
  int level = 1;
  std::string id;     ///< given by `<a id="…"></a>` in the paragraph before it, otherwise made from the title
  std::string title;  ///< plain text
};

/// The guide as it is shown: CommonMark, converted by cmark.
struct Guide {
  std::string html;  ///< the body of a page, in which each heading follows an anchor with its ID
  std::vector<Heading> headings;
  std::vector<std::string> images;  ///< as the guide refers to them
};

/// Converts the guide. `Malformed`, with the line, if two headings have the same ID, or a link leads to none.
Result<Guide> readGuide(std::string_view markdown);

/// The page with everything, and a table of contents.
std::string pageOf(const Guide& guide);
/// A page that leads to a heading of that page.
std::string pageLeadingTo(const Heading& heading);

}  // namespace mirvel::help
