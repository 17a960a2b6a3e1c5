#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/base/Result.h"

namespace mirvel::help {

/// A section of the guide.
struct Heading {
  int level = 1;
  std::string id;     ///< its fragment
  std::string title;  ///< HTML
};

/// The guide as HTML.
struct Guide {
  std::string html;  ///< the content of the page's body, without title and contents
  std::vector<Heading> headings = {};
  std::vector<std::string> images = {};  ///< the files that it shows, as they are named in the text
};

/// Converts the Markdown of the guide: headings, paragraphs, lists within lists, images, links, bold, italic and code.
/// A heading has the id of an `<a id="..."></a>` on the line before it, or one that is made from its words. Everything
/// else is plain text. Fails with the line of an id that occurs twice, a mark that isn't closed, a link to a missing
/// section, a code block, a table or other HTML, so that the pages can't differ from what the guide shows elsewhere.
Result<Guide> readGuide(std::string_view markdown);

/// The page with the whole guide, with a table of contents.
std::string pageOf(const Guide& guide);
/// A page that leads to a section of that page.
std::string pageLeadingTo(const Heading& heading);

}  // namespace mirvel::help
