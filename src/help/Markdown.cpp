#include "help/Markdown.h"

#include <algorithm>
#include <cctype>
#include <set>
#include <span>

namespace mirvel::help {

namespace {

/// Ends the conversion; caught in `readGuide`.
struct Fault {
  std::string message;
  std::size_t line;
};

struct Line {
  std::string_view text;
  std::size_t number;

  bool isBlank() const { return text.find_first_not_of(' ') == std::string_view::npos; }
  bool isItem() const { return text.starts_with("- "); }
  bool isHeading() const { return text.starts_with('#'); }
};

using Lines = std::vector<Line>;

Lines linesOf(std::string_view text) {
  Lines lines;
  for (std::size_t number = 1; !text.empty(); ++number) {
    const auto end = std::min(text.find('\n'), text.size());
    lines.push_back({text.substr(0, end), number});
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

std::string escaped(std::string_view text) {
  std::string result;
  for (const char c : text) {
    switch (c) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      case '>':
        result += "&gt;";
        break;
      case '"':
        result += "&quot;";
        break;
      default:
        result += c;
    }
  }
  return result;
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

class Converter {
 public:
  Guide convert(std::string_view markdown) {
    m_guide.html = blocks(linesOf(markdown));
    for (const auto& [id, line] : m_links) {
      if (!m_ids.contains(id)) throw Fault{"there is no section `" + id + "`", line};
    }
    return std::move(m_guide);
  }

 private:
  std::string blocks(std::span<const Line> lines) {
    std::string html;
    while (!lines.empty()) {
      const Line& first = lines.front();
      if (first.isBlank()) {
        lines = lines.subspan(1);
      } else if (first.text.starts_with("<a id=\"")) {
        readAnchor(first);
        lines = lines.subspan(1);
      } else if (first.isHeading()) {
        html += heading(first);
        lines = lines.subspan(1);
      } else if (first.isItem()) {
        html += list(lines);
      } else {
        html += paragraph(lines);
      }
    }
    return html;
  }

  void readAnchor(const Line& line) {
    constexpr std::string_view open = "<a id=\"", close = "\"></a>";
    if (!line.text.ends_with(close)) throw Fault{"the anchor isn't closed", line.number};
    m_anchor = line.text.substr(open.size(), line.text.size() - open.size() - close.size());
  }

  std::string heading(const Line& line) {
    const auto level = line.text.find_first_not_of('#');
    if (level == std::string_view::npos || line.text[level] != ' ') throw Fault{"the heading is empty", line.number};
    const std::string_view text = line.text.substr(level + 1);
    const std::string id = m_anchor.empty() ? idFrom(text) : m_anchor;
    m_anchor.clear();
    if (!m_ids.insert(id).second) throw Fault{"the section `" + id + "` occurs twice", line.number};
    const std::string title = inlines(text, line.number);
    m_guide.headings.push_back({static_cast<int>(level), id, title});
    const std::string tag = "h" + std::to_string(level);
    return "<" + tag + " id=\"" + escaped(id) + "\">" + title + "</" + tag + ">\n";
  }

  /// Consumes the list at the beginning.
  std::string list(std::span<const Line>& lines) {
    std::string html = "<ul>\n";
    while (!lines.empty() && lines.front().isItem()) {
      Lines item{{lines.front().text.substr(2), lines.front().number}};
      lines = lines.subspan(1);
      while (!lines.empty() && (lines.front().isBlank() || lines.front().text.starts_with("  "))) {
        const Line& line = lines.front();
        item.push_back({line.isBlank() ? std::string_view() : line.text.substr(2), line.number});
        lines = lines.subspan(1);
      }
      html += "<li>" + blocks(item) + "</li>\n";
    }
    return html + "</ul>\n";
  }

  /// Consumes the paragraph at the beginning.
  std::string paragraph(std::span<const Line>& lines) {
    const std::size_t number = lines.front().number;
    std::string text;
    while (!lines.empty() && !lines.front().isBlank() && !lines.front().isItem() && !lines.front().isHeading()) {
      const std::string_view line = lines.front().text;
      for (const char* mark : {"|", "```", "<", "    "}) {
        if (line.starts_with(mark)) throw Fault{"this isn't supported in the guide", lines.front().number};
      }
      text.append(text.empty() ? "" : "\n").append(line);
      lines = lines.subspan(1);
    }
    return "<p>" + inlines(text, number) + "</p>\n";
  }

  std::string inlines(std::string_view text, std::size_t line) {
    std::string html;
    while (!text.empty()) {
      if (text.starts_with("![")) {
        html += image(text, line);
      } else if (text.starts_with('[')) {
        html += link(text, line);
      } else if (text.starts_with('`')) {
        html += "<code>" + escaped(enclosed(text, "`", line)) + "</code>";
      } else if (text.starts_with("**")) {
        html += "<strong>" + inlines(enclosed(text, "**", line), line) + "</strong>";
      } else if (text.starts_with('*')) {
        html += "<em>" + inlines(enclosed(text, "*", line), line) + "</em>";
      } else {
        const auto end = std::min(text.find_first_of("![`*", 1), text.size());
        html += escaped(text.substr(0, end));
        text.remove_prefix(end);
      }
    }
    return html;
  }

  /// Consumes what is between two marks at the beginning, and the marks.
  static std::string_view enclosed(std::string_view& text, std::string_view mark, std::size_t line) {
    const auto end = text.find(mark, mark.size());
    if (end == std::string_view::npos) throw Fault{"a `" + std::string(mark) + "` isn't closed", line};
    const auto inner = text.substr(mark.size(), end - mark.size());
    text.remove_prefix(end + mark.size());
    return inner;
  }

  struct Reference {
    std::string_view text, target;
  };

  /// Consumes `[text](target)` at the beginning.
  static Reference reference(std::string_view& text, std::size_t line) {
    const auto middle = text.find("](");
    const auto end = middle == std::string_view::npos ? middle : text.find(')', middle);
    if (end == std::string_view::npos) throw Fault{"a link isn't closed", line};
    const Reference result{text.substr(1, middle - 1), text.substr(middle + 2, end - middle - 2)};
    text.remove_prefix(end + 1);
    return result;
  }

  std::string image(std::string_view& text, std::size_t line) {
    text.remove_prefix(1);
    const auto [alternative, file] = reference(text, line);
    m_guide.images.emplace_back(file);
    return "<img src=\"" + escaped(file) + "\" alt=\"" + escaped(alternative) + "\">";
  }

  std::string link(std::string_view& text, std::size_t line) {
    const auto [title, target] = reference(text, line);
    if (target.starts_with('#')) m_links.emplace_back(target.substr(1), line);
    return "<a href=\"" + escaped(target) + "\">" + inlines(title, line) + "</a>";
  }

  Guide m_guide;
  std::string m_anchor;  // for the next heading
  std::set<std::string> m_ids;
  std::vector<std::pair<std::string, std::size_t>> m_links;  // to sections, with their lines
};

constexpr std::string_view style = R"(
:root { color-scheme: light dark; }
body { font: 1rem/1.55 system-ui, sans-serif; max-width: 46rem; margin: 2rem auto; padding: 0 1rem; }
h1, h2, h3 { line-height: 1.25; margin-top: 2em; }
h1 { margin-top: 0; }
:target { outline: 0.15em solid; outline-offset: 0.3em; }
img { max-width: 100%; height: auto; }
code { font-family: ui-monospace, monospace; }
nav ul { padding-left: 1.2em; }
nav .level3 { margin-left: 1.5em; }
)";

std::string head(const std::string& title, const std::string& more) {
  return "<!DOCTYPE html>\n<html lang=\"en\" dir=\"ltr\">\n<head>\n<meta charset=\"utf-8\">\n<title>" + title +
         "</title>\n" + more + "</head>\n";
}

}  // namespace

Result<Guide> readGuide(std::string_view markdown) {
  try {
    return Converter().convert(markdown);
  } catch (const Fault& fault) {
    return Error{.code = Error::Code::Malformed, .message = fault.message, .line = fault.line};
  }
}

std::string pageOf(const Guide& guide) {
  std::string contents;
  for (const Heading& heading : guide.headings) {
    if (heading.level < 2) continue;
    contents += "<li class=\"level" + std::to_string(heading.level) + "\"><a href=\"#" + escaped(heading.id) + "\">" +
                heading.title + "</a></li>\n";
  }
  const std::string more =
      "<meta name=\"viewport\" content=\"width=device-width\">\n<style>" + std::string(style) + "</style>\n";
  return head("Mirvel Help", more) + "<body>\n<nav aria-label=\"Contents\">\n<ul>\n" + contents +
         "</ul>\n</nav>\n<main>\n" + guide.html + "</main>\n</body>\n</html>\n";
}

std::string pageLeadingTo(const Heading& heading) {
  const std::string target = "index.html#" + escaped(heading.id);
  return head(heading.title, "<meta http-equiv=\"refresh\" content=\"0; url=" + target + "\">\n") +
         "<body><p><a href=\"" + target + "\">" + heading.title + "</a></p></body>\n</html>\n";
}

}  // namespace mirvel::help
