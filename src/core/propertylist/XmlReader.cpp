#include "core/propertylist/XmlReader.h"

#include <cmath>
#include <iterator>
#include <limits>

#include "core/propertylist/DataText.h"
#include "core/propertylist/DateText.h"
#include "core/propertylist/Encoding.h"
#include "core/propertylist/IntegerText.h"
#include "core/propertylist/ReadFailure.h"
#include "core/propertylist/RealText.h"

namespace mirvel::plist {

namespace {

constexpr std::string_view uidKey = "CF$UID";

[[noreturn]] void fail(std::string message, std::size_t offset, Error::Code code = Error::Code::Malformed) {
  throw ReadFailure{.message = std::move(message), .offset = offset, .code = code};
}

std::string tag(Element element) { return '<' + std::string(elementName(element)) + '>'; }

/// The text of an element as a message quotes it.
std::string quoted(std::string_view text) {
  constexpr std::size_t longest = 40;
  if (text.size() > longest || !isUtf8(text)) return "something";
  return '`' + std::string(text) + '`';
}

/// The low 32 bits of the number, toward zero for a real: what macOS takes as the number of a UID.
std::uint32_t uidNumber(const Value& value) {
  if (const auto* integer = value.as<Integer>()) return static_cast<std::uint32_t>(integer->bits());
  const double real = *value.as<double>();
  constexpr double limit = 9223372036854775808.0;
  if (!(std::abs(real) < limit)) return std::uint32_t{1} << 31U;
  return static_cast<std::uint32_t>(static_cast<std::uint64_t>(static_cast<std::int64_t>(real)));
}

bool isNumber(const Value& value) { return value.as<Integer>() || value.as<double>(); }

}  // namespace

Value XmlReader::read() {
  m_frames.reserve(16);
  m_values.reserve(64);
  m_keys.reserve(32);
  m_scanner.skipProlog();
  takeElement();
  while (!m_isDone) {
    m_scanner.skipToTag();
    if (m_scanner.atCloseTag()) {
      close();
    } else {
      takeElement();
    }
  }
  checkRest();
  return std::move(m_values.front());
}

void XmlReader::takeElement() {
  const std::size_t offset = m_scanner.offset();
  if (m_scanner.atCloseTag()) fail("a closing tag stands where <plist> was expected", offset);
  const XmlScanner::Tag tag = m_scanner.openTag();
  if (tag.element == Element::Key && awaitsKey()) return takeKey(tag.isEmpty, offset);
  checkPlace(tag.element, offset);
  if (m_positions) notePosition(offset);
  switch (tag.element) {
    case Element::Array:
    case Element::Dict:
    case Element::Plist:
      open(tag.element, offset);
      if (tag.isEmpty) finish();
      break;
    default: takeScalar(tag, offset);
  }
}

bool XmlReader::awaitsKey() const {
  if (m_frames.empty() || m_frames.back().element != Element::Dict) return false;
  const Frame& frame = m_frames.back();
  return m_keys.size() - frame.firstKey == m_values.size() - frame.firstValue;
}

void XmlReader::checkPlace(Element element, std::size_t offset) const {
  if (awaitsKey()) fail(tag(element) + " stands in a <dict> where <key> was expected", offset);
  if (!m_frames.empty() && m_frames.back().element == Element::Plist && m_values.size() > m_frames.back().firstValue) {
    fail("a second value stands in <plist>, which holds only one", offset);
  }
}

void XmlReader::takeKey(bool isEmpty, std::size_t offset) {
  std::string_view text;
  if (!isEmpty) {
    bool isPlain = false;
    text = m_scanner.text(isPlain);
    if (!isPlain) text = m_decodedKeys.emplace_back(text);
    m_scanner.closeTag(Element::Key);
  }
  m_keys.push_back({text, offset});
}

void XmlReader::takeScalar(XmlScanner::Tag tag, std::size_t offset) {
  if (tag.isEmpty) return deliver(emptyScalar(tag.element, offset));
  Value value = scalar(tag.element, offset);
  m_scanner.closeTag(tag.element);
  deliver(std::move(value));
}

Value XmlReader::emptyScalar(Element element, std::size_t offset) const {
  switch (element) {
    case Element::True: return true;
    case Element::False: return false;
    case Element::String:
    case Element::Key: return std::string();
    default: fail(tag(element) + " is empty", offset);
  }
}

Value XmlReader::scalar(Element element, std::size_t offset) {
  switch (element) {
    case Element::True: return true;
    case Element::False: return false;
    case Element::Integer: return integer(offset);
    case Element::Real: return real(offset);
    case Element::Date: return date(offset);
    case Element::Data: return data(offset);
    case Element::Key: warn("<key> stands where a value belongs, and is read as a string", offset); return string();
    default: return string();
  }
}

Value XmlReader::string() {
  bool isPlain = false;
  return m_scanner.text(isPlain);
}

Value XmlReader::integer(std::size_t offset) {
  const std::string_view text = m_scanner.rawText();
  if (text.empty()) fail("<integer> is empty", offset);
  const ParsedInteger parsed = parseInteger(text);
  if (!parsed.number) fail("<integer> holds " + quoted(text) + ", which " + parsed.problem, offset);
  return *parsed.number;
}

Value XmlReader::real(std::size_t offset) {
  bool isPlain = false;
  const std::string_view text = m_scanner.text(isPlain);
  if (text.empty()) fail("<real> is empty", offset);
  const auto number = parseReal(text);
  if (!number) fail("<real> holds " + quoted(text) + ", which is no number", offset);
  return *number;
}

Value XmlReader::date(std::size_t offset) {
  const std::string_view text = m_scanner.rawText();
  if (text.empty()) fail("<date> is empty", offset);
  const auto parsed = parseDate(text);
  if (!parsed || !isReadable(parsed->date)) {
    fail("<date> holds " + quoted(text) + ", which is no date such as `2004-10-26T10:33:33Z`", offset);
  }
  if (!parsed->isInRange) warn("the date " + quoted(text) + " doesn't exist, and is read as " + dateText(parsed->date), offset);
  return parsed->date;
}

Value XmlReader::data(std::size_t offset) {
  ParsedData parsed = parseData(m_scanner.rawText());
  if (parsed.hasJunk) warn("<data> holds characters that are no base64, and are passed over", offset);
  if (parsed.isIncomplete) warn("<data> ends within a group of four characters, and its last bytes are lost", offset);
  return Data{std::move(parsed.bytes)};
}

void XmlReader::open(Element element, std::size_t offset) {
  if (element != Element::Plist && ++m_depth > Limits::depth) {
    fail("arrays and dictionaries lie more than " + std::to_string(Limits::depth) + " deep in each other", offset,
         Error::Code::LimitExceeded);
  }
  m_frames.push_back({element, m_values.size(), m_keys.size(), offset});
}

void XmlReader::close() {
  const Frame& frame = m_frames.back();
  if (frame.element == Element::Dict && !awaitsKey()) fail("<key> has no value", m_keys.back().offset);
  m_scanner.closeTag(frame.element);
  finish();
}

/// The container on top of the stack is complete.
void XmlReader::finish() {
  const Frame frame = m_frames.back();
  m_frames.pop_back();
  if (frame.element == Element::Plist) return deliver(finishPlist(frame));
  --m_depth;
  deliver(frame.element == Element::Array ? finishArray(frame) : finishDictionary(frame));
}

Value XmlReader::finishArray(const Frame& frame) {
  const auto first = m_values.begin() + static_cast<std::ptrdiff_t>(frame.firstValue);
  Array array(std::make_move_iterator(first), std::make_move_iterator(m_values.end()));
  m_values.erase(first, m_values.end());
  return array;
}

Value XmlReader::finishDictionary(const Frame& frame) {
  const std::span keys = std::span(m_keys).subspan(frame.firstKey);
  const std::span values = std::span(m_values).subspan(frame.firstValue);
  if (keys.size() == 1 && keys.front().text == uidKey && isNumber(values.front())) {
    const Uid uid{uidNumber(values.front())};
    m_keys.resize(frame.firstKey, {});
    m_values.resize(frame.firstValue);
    return uid;
  }
  Dictionary dictionary = m_builder.build(keys, values);
  for (const ReadKey& key : m_builder.repeatedKeys()) {
    warn("the key " + quoted(key.text) + " is repeated; the last one counts", key.offset);
  }
  m_keys.resize(frame.firstKey, {});
  m_values.resize(frame.firstValue);
  return dictionary;
}

Value XmlReader::finishPlist(const Frame& frame) {
  if (m_values.size() == frame.firstValue) fail("<plist> is empty", frame.offset);
  Value value = std::move(m_values.back());
  m_values.pop_back();
  return value;
}

void XmlReader::deliver(Value value) {
  if (++m_objects > Limits::objects) {
    fail("there are more than " + std::to_string(Limits::objects) + " values", m_scanner.offset(),
         Error::Code::LimitExceeded);
  }
  m_values.push_back(std::move(value));
  m_isDone = m_frames.empty();
}

void XmlReader::notePosition(std::size_t offset) {
  std::string path;
  std::size_t keyOffset = offset;
  for (std::size_t i = 0; i < m_frames.size(); ++i) {
    const bool isTop = i + 1 == m_frames.size();
    if (m_frames[i].element == Element::Dict) {
      const ReadKey& key = m_keys[(isTop ? m_keys.size() : m_frames[i + 1].firstKey) - 1];
      path = childPath(path, key.text);
      keyOffset = key.offset;
    } else if (m_frames[i].element == Element::Array) {
      path = childPath(path, (isTop ? m_values.size() : m_frames[i + 1].firstValue) - m_frames[i].firstValue);
      keyOffset = offset;
    }
  }
  m_positions->add(path, {.key = placeOf(m_text, keyOffset), .value = placeOf(m_text, offset)});
}

void XmlReader::warn(std::string message, std::size_t offset) {
  const Place place = placeOf(m_text, offset);
  m_warnings.push_back({.message = std::move(message), .line = place.line, .column = place.column});
}

void XmlReader::checkRest() {
  const std::size_t end = m_scanner.offset();
  if (!m_scanner.onlyBlankLeft()) warn("something stands behind the end of the list; macOS doesn't read it", end);
}

}  // namespace mirvel::plist
