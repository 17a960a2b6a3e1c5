#include "help/Guide.h"

#include <cmark.h>

#include <cctype>
#include <cstdlib>
#include <functional>
#include <memory>
#include <set>

namespace mirvel::help {

namespace {

template <auto destroy>
struct Destroy {
  void operator()(auto* object) const { destroy(object); }
};
using Document = std::unique_ptr<cmark_node, Destroy<cmark_node_free>>;
using Iterator = std::unique_ptr<cmark_iter, Destroy<cmark_iter_free>>;
using Text = std::unique_ptr<char, Destroy<std::free>>;

std::string textOf(const char* text) {
  return text ? text : "";
}

void forEachBelow(cmark_node* node, const std::function<void(cmark_node*)>& act) {
  const Iterator iterator(cmark_iter_new(node));
  for (auto event = cmark_iter_next(iterator.get()); event != CMARK_EVENT_DONE;
       event = cmark_iter_next(iterator.get())) {
    if (event == CMARK_EVENT_ENTER) act(cmark_iter_get_node(iterator.get()));
  }
}

std::string escaped(std::string_view text) {
  std::string result;
  for (const char c : text) {
    const bool isPlain = std::string_view("&<>\"").find(c) == std::string_view::npos;
    result += isPlain ? std::string(1, c) : "&#" + std::to_string(static_cast<int>(c)) + ";";
  }
  return result;
}

std::string titleOf(cmark_node* heading) {
  std::string title;
  forEachBelow(heading, [&](cmark_node* node) { title += textOf(cmark_node_get_literal(node)); });
  return title;
}

/// "Find a Key" → "find-a-key"
std::string idFrom(std::string_view title) {
  std::string id;
  for (const char c : title) {
    const auto byte = static_cast<unsigned char>(c);
    if (std::isalnum(byte)) id += static_cast<char>(std::tolower(byte));
    if (c == ' ') id += '-';
  }
  return id;
}

/// The ID in a paragraph of one anchor; empty for anything else.
std::string anchorIn(cmark_node* paragraph) {
  cmark_node* const first = paragraph ? cmark_node_first_child(paragraph) : nullptr;
  if (!first || cmark_node_get_type(first) != CMARK_NODE_HTML_INLINE) return {};
  constexpr std::string_view open = "<a id=\"", close = "\">";
  const std::string tag = textOf(cmark_node_get_literal(first));
  if (!tag.starts_with(open) || !tag.ends_with(close)) return {};
  return tag.substr(open.size(), tag.size() - open.size() - close.size());
}

Error faultAt(cmark_node* node, std::string message) {
  return {.code = Error::Code::Malformed,
          .message = std::move(message),
          .line = static_cast<std::size_t>(cmark_node_get_start_line(node))};
}

/// Finds the headings, and puts an anchor before each that has none.
Result<std::vector<Heading>> readHeadings(cmark_node* document) {
  std::vector<Heading> headings;
  std::set<std::string> ids;
  for (cmark_node* node = cmark_node_first_child(document); node; node = cmark_node_next(node)) {
    if (cmark_node_get_type(node) != CMARK_NODE_HEADING) continue;
    Heading heading{cmark_node_get_heading_level(node), anchorIn(cmark_node_previous(node)), titleOf(node)};
    if (heading.id.empty()) {
      heading.id = idFrom(heading.title);
      cmark_node* const anchor = cmark_node_new(CMARK_NODE_HTML_BLOCK);
      cmark_node_set_literal(anchor, ("<a id=\"" + heading.id + "\"></a>").c_str());
      cmark_node_insert_before(node, anchor);
    }
    if (!ids.insert(heading.id).second) return faultAt(node, "the section " + heading.id + " occurs twice");
    headings.push_back(std::move(heading));
  }
  return headings;
}

/// Collects the images, and checks the links within the guide.
Result<void> readReferences(cmark_node* document, Guide& guide) {
  std::set<std::string> ids;
  for (const Heading& heading : guide.headings) ids.insert(heading.id);
  Result<void> result;
  forEachBelow(document, [&](cmark_node* node) {
    const std::string target = textOf(cmark_node_get_url(node));
    if (cmark_node_get_type(node) == CMARK_NODE_IMAGE) guide.images.push_back(target);
    const bool isBroken = target.starts_with('#') && !ids.contains(target.substr(1));
    if (isBroken && result) result = faultAt(node, "there is no section " + target);
  });
  return result;
}

constexpr std::string_view style = R"(
:root { color-scheme: light dark; }
body { font: 1rem/1.55 system-ui, sans-serif; max-width: 46rem; margin: 2rem auto; padding: 0 1rem; }
h1, h2, h3 { line-height: 1.25; margin-top: 2em; }
h1 { margin-top: 0; }
img { max-width: 100%; height: auto; }
code { font-family: ui-monospace, monospace; }
nav ul { padding-left: 1.2em; }
nav .level3 { margin-left: 1.5em; }
)";

std::string head(const std::string& title, const std::string& more) {
  return "<!DOCTYPE html>\n<html lang=\"en\" dir=\"ltr\">\n<head>\n<meta charset=\"utf-8\">\n<title>" + escaped(title) +
         "</title>\n" + more + "</head>\n";
}

}  // namespace

Result<Guide> readGuide(std::string_view markdown) {
  const Document document(cmark_parse_document(markdown.data(), markdown.size(), CMARK_OPT_DEFAULT));
  auto headings = readHeadings(document.get());
  if (!headings) return headings.error();
  Guide guide;
  guide.headings = *std::move(headings);
  if (auto checked = readReferences(document.get(), guide); !checked) return checked.error();
  guide.html = textOf(Text(cmark_render_html(document.get(), CMARK_OPT_UNSAFE)).get());  // anchors are HTML
  return guide;
}

std::string pageOf(const Guide& guide) {
  std::string contents;
  for (const Heading& heading : guide.headings) {
    if (heading.level < 2) continue;
    contents += "<li class=\"level" + std::to_string(heading.level) + "\"><a href=\"#" + escaped(heading.id) + "\">" +
                escaped(heading.title) + "</a></li>\n";
  }
  const std::string more =
      "<meta name=\"viewport\" content=\"width=device-width\">\n<style>" + std::string(style) + "</style>\n";
  return head("Mirvel Help", more) + "<body>\n<nav aria-label=\"Contents\">\n<ul>\n" + contents +
         "</ul>\n</nav>\n<main>\n" + guide.html + "</main>\n</body>\n</html>\n";
}

std::string pageLeadingTo(const Heading& heading) {
  const std::string target = "index.html#" + escaped(heading.id);
  return head(heading.title, "<meta http-equiv=\"refresh\" content=\"0; url=" + target + "\">\n") +
         "<body><p><a href=\"" + target + "\">" + escaped(heading.title) + "</a></p></body>\n</html>\n";
}

}  // namespace mirvel::help
