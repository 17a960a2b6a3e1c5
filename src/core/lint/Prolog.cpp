#include "core/lint/Prolog.h"

#include <array>
#include <cstddef>
#include <utility>

#include "core/propertylist/Positions.h"
#include "core/text/Strings.h"

namespace mirvel::lint {

namespace {

constexpr std::string_view blanks = " \t\r\n";
constexpr std::array<std::string_view, 4> typographicQuotes = {"“", "”", "„", "″"};

/// Scans the prolog: declarations, comments, the DOCTYPE and the first tag.
class PrologCheck {
 public:
  PrologCheck(std::string_view text, Findings& findings)
      : m_text(String::chop(text, "\xEF\xBB\xBF", String::Edge::Start)), m_findings(findings) {}

  void run() {
    checkStart();
    std::size_t at = m_text.find('<');
    while (at != std::string_view::npos) {
      const std::string_view rest = m_text.substr(at);
      if (rest.starts_with("<!--")) {
        at = next(at, "-->");
        continue;
      }
      const std::string_view tag = rest.substr(0, rest.find('>'));
      checkQuotes(tag, at);
      if (!tag.starts_with("<?") && !tag.starts_with("<!")) return;
      if (tag.starts_with("<!DOCTYPE")) checkDoctype(tag, at);
      at = next(at, ">");
    }
  }

 private:
  std::size_t next(std::size_t at, std::string_view end) const {
    const std::size_t close = m_text.find(end, at);
    return close == std::string_view::npos ? close : m_text.find('<', close);
  }

  void checkStart() {
    const std::size_t declaration = m_text.find("<?xml");
    const std::size_t root = m_text.find("<plist");
    if (declaration == std::string_view::npos || declaration == 0 || declaration > root) return;
    const std::string_view before = m_text.substr(0, declaration);
    const bool isBlank = before.find_first_not_of(blanks) == std::string_view::npos;
    const bool isInComment =
        before.rfind("<!--") != std::string_view::npos && before.find("-->") == std::string_view::npos;
    if (isInComment) return;
    warn(declaration,
         isBlank ? clause("white space before the XML declaration; macOS accepts this, other programs may not")
                 : clause("the XML declaration isn’t at the start of the file; macOS accepts this, other programs may "
                          "not"));
  }

  void checkQuotes(std::string_view tag, std::size_t at) {
    for (const std::string_view quote : typographicQuotes) {
      if (const std::size_t found = tag.find(quote); found != std::string_view::npos) {
        return warn(at + found, clause("typographic quotes instead of straight ones; macOS accepts this, other "
                                       "programs may not"));
      }
    }
  }

  void checkDoctype(std::string_view tag, std::size_t at) {
    std::size_t quotes = 0;
    for (const char c : tag) quotes += c == '"' || c == '\'' ? 1U : 0U;
    const bool hasTypographic = tag.find("“") != std::string_view::npos || tag.find("”") != std::string_view::npos;
    const bool namesIdentifier =
        tag.find("PUBLIC") != std::string_view::npos || tag.find("SYSTEM") != std::string_view::npos;
    if (quotes != 0 || !namesIdentifier || hasTypographic) return;
    warn(at, clause("the identifiers of the DOCTYPE aren’t quoted; macOS accepts this, other programs may not"));
  }

  void warn(std::size_t at, Clause clause) {
    if (m_findings.isFull(Severity::Warning)) return m_findings.addUnreported(Severity::Warning, 1);
    const propertylist::Position place = propertylist::positionOf(m_text, at);
    m_findings.add(
        {.severity = Severity::Warning, .line = place.line, .column = place.column, .clause = std::move(clause)});
  }

  std::string_view m_text;
  Findings& m_findings;
};

}  // namespace

void checkProlog(std::string_view bytes, Findings& findings) {
  PrologCheck(bytes, findings).run();
}

}  // namespace mirvel::lint
