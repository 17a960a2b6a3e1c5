#include "core/propertylist/XmlReader.h"

#include <cmath>
#include <utility>

#include "core/propertylist/DataText.h"
#include "core/propertylist/DateText.h"
#include "core/propertylist/Encoding.h"
#include "core/propertylist/Numbers.h"
#include "core/propertylist/ReadFailure.h"
#include "core/propertylist/RepeatedKeys.h"

namespace mirvel::propertylist {

namespace {

constexpr std::string_view uidKey = "CF$UID";

std::string tag(Element element) {
  return '<' + std::string(elementName(element)) + '>';
}

/// What macOS makes of the value of `CF$UID`: the low 32 bits of an integer, or of a real rounded toward zero.
std::optional<std::uint32_t> uidNumber(const Node& node) {
  if (const auto integer = node.integer()) return static_cast<std::uint32_t>(integer->bits());
  const auto real = node.real();
  if (!real) return std::nullopt;
  constexpr double limit = 9223372036854775808.0;
  // NaN and numbers beyond 64 bits.
  if (!(std::abs(*real) < limit)) return std::uint32_t{1} << 31U;
  return static_cast<std::uint32_t>(static_cast<std::uint64_t>(static_cast<std::int64_t>(*real)));
}

}  // namespace

Node XmlReader::read() {
  m_scanner.skipProlog();
  if (m_scanner.atCloseTag()) fail("expected <plist>, found a closing tag", m_scanner.offset());
  takeValue();
  while (!m_isDone) {
    m_scanner.skipToTag();
    if (m_scanner.atCloseTag()) {
      close();
    } else if (m_awaitsKey) {
      takeKey();
    } else {
      takeValue();
    }
  }
  checkRest();
  return m_nodes.back();
}

void XmlReader::takeKey() {
  const std::size_t offset = m_scanner.offset();
  const auto [element, isEmpty] = m_scanner.openTag();
  if (element != Element::Key) fail("expected <key> in a <dict>, found " + tag(element), offset);
  m_keyOffset = offset;
  std::string_view key;
  if (!isEmpty) {
    key = stableText();
    m_scanner.closeTag(Element::Key);
  }
  m_nodes.push(Node::string(key));
  m_awaitsKey = false;
}

void XmlReader::takeValue() {
  const std::size_t offset = m_scanner.offset();
  const auto [element, isEmpty] = m_scanner.openTag();
  if (m_positions) notePosition(offset);
  if (element == Element::Array || element == Element::Dict || element == Element::Plist) {
    open(element, offset);
    if (isEmpty) finish();
  } else if (isEmpty) {
    deliver(emptyScalar(element, offset), offset);
  } else {
    const Node node = scalar(element, offset);
    m_scanner.closeTag(element);
    deliver(node, offset);
  }
}

std::string_view XmlReader::stableText() {
  const auto [text, isStable] = m_scanner.text();
  return isStable ? text : m_arena.copy(text);
}

Node XmlReader::emptyScalar(Element element, std::size_t offset) const {
  switch (element) {
    case Element::True:
      return Node::boolean(true);
    case Element::False:
      return Node::boolean(false);
    case Element::String:
    case Element::Key:
      return Node::string({});
    default:
      fail(tag(element) + " is empty", offset);
  }
}

Node XmlReader::scalar(Element element, std::size_t offset) {
  switch (element) {
    case Element::True:
      return Node::boolean(true);
    case Element::False:
      return Node::boolean(false);
    case Element::Integer:
      return integer(offset);
    case Element::Real:
      return real(offset);
    case Element::Date:
      return date(offset);
    case Element::Data:
      return data(offset);
    case Element::Key:
      m_warnings.add(offset, [] { return "<key> in place of a value; it is read as a string"; });
      [[fallthrough]];
    default:
      return Node::string(stableText());
  }
}

Node XmlReader::integer(std::size_t offset) {
  const std::string_view text = m_scanner.rawText();
  if (text.empty()) fail("<integer> is empty", offset);
  const ParsedInteger parsed = parseInteger(text);
  if (!parsed.number) fail("<integer> contains " + quoted(text) + ", which " + parsed.problem, offset);
  return Node::integer(*parsed.number);
}

Node XmlReader::real(std::size_t offset) {
  const std::string_view text = m_scanner.text().text;
  if (text.empty()) fail("<real> is empty", offset);
  const auto number = parseReal(text);
  if (!number) fail("<real> contains " + quoted(text) + ", which isn't a number", offset);
  return Node::real(*number);
}

Node XmlReader::date(std::size_t offset) {
  const std::string_view text = m_scanner.rawText();
  if (text.empty()) fail("<date> is empty", offset);
  const auto parsed = parseDate(text);
  if (!parsed || !isReadable(parsed->date)) {
    fail("<date> contains " + quoted(text) + ", which isn't a date like `2004-10-26T10:33:33Z`", offset);
  }
  if (!parsed->isInRange) {
    m_warnings.add(
        offset, [&] { return "the date " + quoted(text) + " doesn't exist; it is read as " + dateText(parsed->date); });
  }
  return Node::date(parsed->date);
}

Node XmlReader::data(std::size_t offset) {
  const ParsedData parsed = parseData(m_scanner.rawText());
  if (parsed.hasJunk) {
    m_warnings.add(offset, [] { return "<data> contains characters that aren't base64; they are skipped"; });
  }
  if (parsed.isIncomplete) {
    m_warnings.add(offset,
                   [] { return "<data> ends with an incomplete group of four characters; its last bytes are lost"; });
  }
  return Node::data(m_arena.copy(parsed.bytes));
}

void XmlReader::open(Element element, std::size_t offset) {
  if (element != Element::Plist && ++m_depth > Limits::depth) {
    failTooDeep(offset);
  }
  m_frames.push({element, m_nodes.size(), offset});
  if (m_positions) m_trails.push_back(m_trail);
  m_awaitsKey = element == Element::Dict;
}

void XmlReader::close() {
  const Frame& frame = m_frames.back();
  if (frame.element == Element::Dict && !m_awaitsKey) {
    fail("<key> has no value", offsetOfKey(*m_nodes.back().string(), frame));
  }
  m_scanner.closeTag(frame.element);
  finish();
}

/// Completes the innermost element.
void XmlReader::finish() {
  const Frame& frame = m_frames.pop();
  if (m_positions) m_trails.pop_back();
  if (frame.element == Element::Plist) {
    if (m_nodes.size() == frame.firstNode) fail("<plist> is empty", frame.offset);
    const Node value = m_nodes.back();
    m_nodes.shrinkTo(frame.firstNode);
    return deliver(value, frame.offset);
  }
  --m_depth;
  deliver(frame.element == Element::Dict ? dictionary(frame) : array(frame), frame.offset);
}

Node XmlReader::array(const Frame& frame) {
  const std::size_t count = m_nodes.size() - frame.firstNode;
  const Node* const elements = m_arena.copy(m_nodes.begin() + frame.firstNode, count);
  m_nodes.shrinkTo(frame.firstNode);
  return Node::array({elements, count});
}

Node XmlReader::dictionary(const Frame& frame) {
  const std::span entries(&m_nodes[frame.firstNode], m_nodes.size() - frame.firstNode);
  m_nodes.shrinkTo(frame.firstNode);  // `entries` stays readable until the next push
  const std::size_t count = dropRepeatedKeys(entries, Repeated::LastWins, [&](std::string_view key) {
    m_warnings.add(offsetOfKey(key, frame),
                   [&] { return "the key " + quoted(key) + " is repeated; the last one counts"; });
  });
  // After dropping repeated keys: macOS decides by the finished dictionary.
  if (count == 1 && entries[0].string() == uidKey) {
    if (const auto number = uidNumber(entries[1])) return Node::uid({*number});
  }
  return Node::dictionary(m_arena.copy(entries.data(), 2 * count), count);
}

/// Adds a value, whose element starts at `offset`, to the enclosing element, or ends the list.
void XmlReader::deliver(Node node, std::size_t offset) {
  if (++m_objects > Limits::objects) {
    fail("there are more than " + std::to_string(Limits::objects) + " values", offset, Error::Code::LimitExceeded);
  }
  m_nodes.push(node);
  if (m_frames.empty()) {
    m_isDone = true;
    return;
  }
  const Frame& frame = m_frames.back();
  m_awaitsKey = frame.element == Element::Dict;
  if (frame.element == Element::Plist && m_nodes.size() - frame.firstNode > 1) {
    fail("a second value in <plist>, which may contain only one", offset);
  }
}

/// Of the <key> element. A key with references or CDATA sections isn't in the text as such: then of its dictionary.
std::size_t XmlReader::offsetOfKey(std::string_view key, const Frame& frame) const {
  if (!m_scanner.contains(key.data())) return frame.offset;
  return m_text.rfind('<', m_scanner.offsetOf(key.data()));
}

/// Records the position of the value whose element starts at `offset`. A <plist> adds nothing to the path.
void XmlReader::notePosition(std::size_t offset) {
  if (m_frames.empty()) {
    m_trail = {};
  } else {
    const Frame& frame = m_frames.back();
    const Trail& outer = m_trails.back();
    if (frame.element == Element::Dict) {
      m_trail = {.path = outer.path.child(*m_nodes.back().string()), .hasKey = true};
    } else if (frame.element == Element::Array) {
      m_trail = {.path = outer.path.child(m_nodes.size() - frame.firstNode), .hasKey = false};
    } else {
      m_trail = outer;
    }
  }
  m_positions->add(m_trail.path, m_trail.hasKey ? m_keyOffset : offset, offset);
}

Warnings XmlReader::takeWarnings() {
  if (m_warnings.list.empty()) return {};  // without searching the text for line ends
  const LineStarts lines(m_text);
  for (Warning& warning : m_warnings.list) {
    const Position position = lines.positionOf(static_cast<std::size_t>(*std::exchange(warning.offset, std::nullopt)));
    warning.line = position.line;
    warning.column = position.column;
  }
  return std::move(m_warnings);
}

void XmlReader::checkRest() {
  const std::size_t end = m_scanner.offset();
  if (!m_scanner.onlyBlankLeft()) {
    m_warnings.add(end, [] { return dataAfterList; });
  }
}

}  // namespace mirvel::propertylist
